#pragma once

#include "app/Kestrin/program/LogWindow.h"
#include "app/Kestrin/program/Protection.h"
#include "app/Kestrin/program/ProtectionWindow.h"
#include "app/Kestrin/program/QuitNotices.h"
#include "app/Kestrin/program/TrayCommands.h"
#include "app/Kestrin/program/UseNotices.h"
#include "desktop/session/DesktopNotices.h"
#include "desktop/session/RunningInstance.h"
#include "desktop/session/SaveDialog.h"
#include "desktop/session/TrayHost.h"
#include "runtime/DesktopPermission.h"
#include "runtime/FirstStart.h"

#include <QQmlEngine>
#include <QTimer>

#include <memory>
#include <optional>

namespace kestrin::app {

/// The running program: the protection, the window when it is wanted, the tray's icon where there is a tray,
/// and what the desktop asks of it.
///
/// Where a tray offers a way back, closing the window hides it or ends the program, as its user has answered
/// once; elsewhere it ends the program. Needs a QGuiApplication, and the renderer to be chosen already.
class KestrinApplication : public QObject {
    Q_OBJECT

  public:
    enum class Start { withWindow, inBackground };

    /// All of these outlive this object.
    KestrinApplication(Start start, runtime::UserDefaults &defaults, engine::DeviceUses &deviceUses,
                       runtime::LoginItem &loginItem, runtime::DesktopPermission &permission,
                       runtime::InstalledApplications &installed);
    ~KestrinApplication() override;

    /// Starts to protect. The caller has the right to (MonitoringClaim).
    void protect(const QString &supportFolder, runtime::MacProtectionSurroundings surroundings);

    bool eventFilter(QObject *watched, QEvent *event) override;

  private:
    void joinDesktop();
    void openWindow(const QString &activationToken);
    void explainFirstStart();
    void takeWindowClosed();
    void endTelling();
    void openLog();
    void closeLog();
    void offerFileDialog();
    void followTray();
    void tell(const engine::MacProtectionEvent &event);
    void tellSwitch(bool privacyModeOn, const QString &message);
    void startLiveUse();
    void tellBegun(const engine::DeviceUse &use);
    void tellGoingOn(const engine::DeviceUse &use);
    void protectApp(const engine::DeviceUse &use, const QString &activationToken);
    bool isLookedAt() const { return m_window && m_window->window().isActive(); }
    desktop::DesktopNotices &notices();
    void showSentence(const QString &sentence, const desktop::DesktopNotices::Offer &offer = {});
    void helpSight();
    void showNotice(const QString &text);

    const Start m_start;
    runtime::UserDefaults &m_defaults;
    engine::DeviceUses &m_deviceUses;
    runtime::DesktopPermission &m_permission;
    runtime::InstalledApplications &m_installed;
    desktop::RunningInstance m_instance;
    QuitNotices m_quitNotices;
    std::optional<desktop::DesktopNotices> m_notices;
    std::optional<desktop::TrayHost> m_trayHost;
    std::optional<desktop::SaveDialog> m_saveDialog;
    TrayCommands m_commands;
    std::optional<runtime::FirstStart> m_firstStart;
    bool m_isQuitting = false;
    /// Runs out when a program that nobody sees any more is to end.
    QTimer m_end;
    // Destroyed from below: what is seen goes first.
    std::optional<Protection> m_protection;
    std::optional<UseNotices> m_useNotices;
    std::unique_ptr<QQmlEngine> m_engine;
    std::unique_ptr<ProtectionWindow> m_window;
    std::unique_ptr<LogWindow> m_log;
    std::unique_ptr<QObject> m_tray;
    std::unique_ptr<QObject> m_notice;
    std::unique_ptr<QObject> m_closingQuestion;
};

} // namespace kestrin::app
