#pragma once

#include "app/Kestrin/program/Protection.h"
#include "app/Kestrin/program/ProtectionWindow.h"
#include "app/Kestrin/program/QuitNotices.h"
#include "app/Kestrin/program/TrayCommands.h"
#include "desktop/session/DesktopNotices.h"
#include "desktop/session/RunningInstance.h"
#include "desktop/session/TrayHost.h"
#include "runtime/DesktopPermission.h"

#include <QQmlEngine>

#include <memory>
#include <optional>

namespace kestrin::app {

/// The running program: the protection, the window when it is wanted, the tray's icon where there is a tray,
/// and what the desktop asks of it.
///
/// Started with its window it ends with it. Started in the background it goes on when its window is closed,
/// as long as the tray offers a way back. Needs a QGuiApplication, and the renderer to be chosen already.
class KestrinApplication : public QObject {
    Q_OBJECT

  public:
    enum class Start { withWindow, inBackground };

    /// All of these outlive this object.
    KestrinApplication(Start start, runtime::LoginItem &loginItem, runtime::DesktopPermission &permission,
                       runtime::InstalledApplications &installed);
    ~KestrinApplication() override;

    /// Starts to protect. The caller has the right to (MonitoringClaim); `defaults` outlives this object.
    void protect(runtime::UserDefaults &defaults, runtime::MacProtectionSurroundings surroundings);

  private:
    void joinDesktop();
    void openWindow(const QString &activationToken);
    void takeWindowClosed();
    void followTray();
    void tell(const engine::MacProtectionEvent &event);
    void tellSwitch(bool privacyModeOn, const QString &message);
    desktop::DesktopNotices &notices();
    void showSentence(const QString &sentence, const desktop::DesktopNotices::Offer &offer = {});
    void helpSight();
    void showNotice(const QString &text);

    const Start m_start;
    runtime::DesktopPermission &m_permission;
    runtime::InstalledApplications &m_installed;
    desktop::RunningInstance m_instance;
    QuitNotices m_quitNotices;
    std::optional<desktop::DesktopNotices> m_notices;
    std::optional<desktop::TrayHost> m_trayHost;
    TrayCommands m_commands;
    // Destroyed from below: what is seen goes first.
    std::optional<Protection> m_protection;
    std::unique_ptr<QQmlEngine> m_engine;
    std::unique_ptr<ProtectionWindow> m_window;
    std::unique_ptr<QObject> m_tray;
    std::unique_ptr<QObject> m_notice;
};

} // namespace kestrin::app
