#pragma once

#include "app/Kestrin/log/MacLog.h"
#include "runtime/UserDefaults.h"

#include <QQuickWindow>

#include <memory>

class QQmlEngine;

namespace kestrin::app {

/// The window in which the whole log is read. All that it needs goes with it. Main thread.
class LogWindow {
  public:
    /// Makes and shows the window. All of these outlive this object.
    LogWindow(QQmlEngine &engine, runtime::MacProtectionRuntime &runtime,
              runtime::InstalledApplications &installed, runtime::UserDefaults &defaults);
    /// Closes the window, which is as large the next time.
    ~LogWindow();

    QQuickWindow &window() const { return *m_window; }
    MacLog &log() { return m_log; }

  private:
    void rememberSize();

    runtime::UserDefaults &m_defaults;
    MacLog m_log;
    std::unique_ptr<QQuickWindow> m_window;
    const QSize m_size;                 ///< with which it was made
    std::unique_ptr<QObject> m_content; ///< goes before the window that it is in
};

} // namespace kestrin::app
