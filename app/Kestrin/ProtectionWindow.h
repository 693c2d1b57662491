#pragma once

#include "runtime/MacProtectionRuntime.h"

#include <memory>

class QQmlApplicationEngine;
class QQuickWindow;

namespace kestrin {

class MacProtectionState;
class PrivacyModeFlag;

/// The window, with the runtime that it owns: made and started with the window, released with this object.
/// Needs a QGuiApplication, and the renderer to be chosen already. Main thread.
class ProtectionWindow {
  public:
    /// Shows the window. `defaults` outlives this object.
    explicit ProtectionWindow(UserDefaults &defaults, MacProtectionSurroundings surroundings = {});
    ~ProtectionWindow();

    MacProtectionRuntime &runtime() const { return *m_runtime; }
    PrivacyModeFlag &privacyMode() const { return *m_privacyMode; }
    MacProtectionState &state() const { return *m_state; }
    QQuickWindow &window() const { return *m_window; }

  private:
    // Destroyed from below: what is seen goes first.
    std::unique_ptr<MacProtectionRuntime> m_runtime;
    std::unique_ptr<PrivacyModeFlag> m_privacyMode;
    std::unique_ptr<MacProtectionState> m_state;
    std::unique_ptr<QQmlApplicationEngine> m_engine;
    QQuickWindow *m_window = nullptr; ///< the engine's
};

/// Shows a small window that says `text`, until it is closed. Needs a QGuiApplication.
void showNotice(const QString &text);

} // namespace kestrin
