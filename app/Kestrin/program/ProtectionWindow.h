#pragma once

#include <QFont>
#include <QList>
#include <QQuickWindow>
#include <QString>
#include <QTimer>

#include <memory>

class QQmlComponent;
class QQmlEngine;

namespace kestrin::app {

class MacProtectionState;

/// The program's window. The descriptions of what is in it are read on a thread of the engine's, from the
/// beginning on, so that they are at hand when it is wanted. Needs a QGuiApplication, and the renderer to be
/// chosen already. Main thread.
class ProtectionWindow {
  public:
    /// The engine outlives this object.
    explicit ProtectionWindow(QQmlEngine &engine);
    /// Closes the window.
    ~ProtectionWindow();

    /// Makes and shows the window, which starts the runtime. `state` outlives this object.
    void open(MacProtectionState &state);
    /// What the first page and the sidebar are written in. Made ready while the descriptions are read; what
    /// is missing here takes its time later.
    static QList<QFont> firstFonts();
    /// Null before it is opened.
    QQuickWindow *window() const { return m_window.get(); }

  private:
    std::unique_ptr<QQmlComponent> m_description;
    std::unique_ptr<QQmlComponent> m_firstPage; ///< read while the rest is made already
    std::unique_ptr<QQuickWindow> m_window;
    std::unique_ptr<QObject> m_content; ///< goes before the window that it is in
    QTimer m_rest;                      ///< runs out when nothing has been drawn for a while
};

/// Shows a small window that says `text`, until it is closed. Needs a QGuiApplication.
void showNotice(const QString &text);

} // namespace kestrin::app
