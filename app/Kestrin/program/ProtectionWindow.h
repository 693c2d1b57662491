#pragma once

#include "engine/MacRiskCategory.h"

#include <QQuickWindow>
#include <QString>

#include <memory>

class QQmlEngine;

namespace kestrin::app {

class MacProtectionState;
class TrayCommands;

/// The program's window. Needs a QGuiApplication, and the renderer to be chosen already. Main thread.
class ProtectionWindow {
  public:
    /// Makes and shows the window, which starts the runtime. Both outlive this object.
    ProtectionWindow(QQmlEngine &engine, MacProtectionState &state);
    /// Closes the window.
    ~ProtectionWindow();

    QQuickWindow &window() const { return *m_window; }
    /// Shows the dialog of the first start over everything. `commands` outlives this object.
    void explainFirstStart(TrayCommands &commands);
    /// Shows the dialog for adding an application with this one chosen.
    void protectApp(const QString &name, const QString &identifier,
                    const QList<engine::MacRiskCategory> &categories);

  private:
    std::unique_ptr<QQuickWindow> m_window;
    std::unique_ptr<QObject> m_content; ///< goes before the window that it is in
};

/// Shows a small window that says `text`, until it is closed. Needs a QGuiApplication.
void showNotice(const QString &text);

} // namespace kestrin::app
