// The window's program: reads its options, makes sure that nobody else watches, and shows the window.

#include "app/Kestrin/program/KestrinApplication.h"
#include "app/Kestrin/program/LaunchOptions.h"
#include "design/KestrinAppearance.h"
#include "desktop/Platform.h"
#include "desktop/appearance/Appearance.h"
#include "foundation/BaseDirectories.h"
#include "foundation/PrivateFolder.h"
#include "foundation/VisibleText.h"
#include "runtime/FileStores.h"
#include "runtime/MonitoringClaim.h"

#include <QGuiApplication>
#include <QQuickWindow>

#include <cstdio>
#include <memory>
#include <thread>

using namespace Qt::StringLiterals;
using namespace kestrin;
using namespace kestrin::app;
using namespace kestrin::foundation;
using namespace kestrin::runtime;
using namespace kestrin::design;
using namespace kestrin::desktop;

namespace {

constexpr int claimLost = 1;
constexpr int wrongUsage = 2;

QStringList argumentsOf(int argc, char **argv) {
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    return arguments;
}

void print(std::FILE *stream, const QString &line) {
    std::fprintf(stream, "%s\n", qPrintable(line));
}

/// docs/decisions/0012-renderer.md tells why. The environment may say otherwise.
void chooseRenderer() {
    if (!qEnvironmentVariableIsSet("QT_QUICK_BACKEND") && !qEnvironmentVariableIsSet("QSG_RHI_BACKEND"))
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
}

/// Plasma's plugin for Qt 6 makes the tray's menu of widgets, and a program without QApplication ends at
/// once. Qt's own theme tells the menu over the bus. Colours and fonts are not the theme's in any case.
void avoidWidgets() {
    const bool isPlasma = qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(u':').contains("KDE"_L1) ||
                          qEnvironmentVariableIsSet("KDE_FULL_SESSION");
    if (isPlasma)
        QGuiApplication::setDesktopSettingsAware(false);
    if (qEnvironmentVariable("QT_QPA_PLATFORMTHEME") == "kde"_L1)
        qunsetenv("QT_QPA_PLATFORMTHEME");
}

/// What the desktop tells about a start. Qt takes some of it away, so it is read before the application is
/// made.
struct Launch {
    /// For the window that the start is to bring.
    QString activationToken =
        qEnvironmentVariable("XDG_ACTIVATION_TOKEN", qEnvironmentVariable("DESKTOP_STARTUP_ID"));
    /// Then nobody reads standard error.
    bool isFromMenu = !activationToken.isEmpty() || qEnvironmentVariableIsSet("GIO_LAUNCHED_DESKTOP_FILE");

    void refuse(const QString &sentence) const {
        // It may name a process, which can be called anything.
        const QString reason = visibleText(sentence);
        print(stderr, reason);
        if (isFromMenu)
            showNotice(reason);
    }
};

/// Somebody else watches. If that is another start of this program, its window is what the user wants.
int giveWay(const QString &holder, const LaunchOptions &options, const Launch &launch) {
    using namespace std::chrono_literals;
    const bool isOurs = holder.startsWith(u"Kestrin,");
    if (isOurs && options.background)
        return 0;
    // It may not have come as far as to answer, or may have stopped for good.
    const Deadline deadline(2s);
    while (isOurs && deadline.remaining() > 0s) {
        switch (RunningInstance::activateRunning(launch.activationToken, deadline)) {
        case RunningInstance::Answer::activated:
            return 0;
        case RunningInstance::Answer::otherDisplay:
            launch.refuse(u"Kestrin is already open on another display of yours."_s);
            return 1;
        case RunningInstance::Answer::none:
            std::this_thread::sleep_for(100ms);
        }
    }
    launch.refuse(u"Privacy Mode is already watched by "_s + holder +
                  u". End it, then open Kestrin again."_s);
    return 1;
}

} // namespace

int main(int argc, char **argv) {
    ignoreRelativeBaseDirectories();
    QCoreApplication::setApplicationName(u"Kestrin"_s); // as screen readers say it
    QCoreApplication::setApplicationVersion(QStringLiteral(KESTRIN_VERSION));
    QGuiApplication::setApplicationDisplayName(u"Kestrin"_s);
    QGuiApplication::setDesktopFileName(QStringLiteral(KESTRIN_DESKTOP_ID));

    // Before the application, which needs a display.
    const LaunchOptions options = LaunchOptions::read(argumentsOf(argc, argv));
    if (!options.complaint.isEmpty()) {
        print(stderr, visibleText(options.complaint));
        return wrongUsage;
    }
    if (options.help) {
        std::fputs(LaunchOptions::helpText(), stdout);
        return 0;
    }
    if (options.version) {
        print(stdout, u"kestrin "_s + QCoreApplication::applicationVersion());
        return 0;
    }

    const Launch launch;
    chooseRenderer();
    avoidWidgets();
    QGuiApplication application(argc, argv);
    useNativeSymbols(nativeSymbols());
    KestrinAppearance::shared().follow(makePreferences());
    KestrinAppearance::shared().setPreference(options.appearance);
    const auto workspace = makeWorkspace();
    const auto defaults = makeUserDefaults();
    const auto deviceUses = makeDeviceUses(*workspace);
    const auto loginItem = makeLoginItem(QCoreApplication::applicationFilePath());
    const auto permission = makeDesktopPermission();
    const auto installed = makeInstalledApplications();
    using Start = KestrinApplication::Start;
    KestrinApplication kestrin(options.background ? Start::inBackground : Start::withWindow, *defaults,
                               *deviceUses, *loginItem, *permission, *installed);

    const QString folder = MacProtectionRuntime::applicationSupportURL().toLocalFile();
    closeToOthers(folder);
    const MonitoringClaim claim(folder, u"Kestrin"_s);
    if (claim.holder())
        return giveWay(*claim.holder(), options, launch);
    if (!claim.isHeld()) {
        launch.refuse(claim.obstacle());
        return 1;
    }
    QObject::connect(&claim, &MonitoringClaim::lost, &application, [] { QCoreApplication::exit(claimLost); });
    kestrin.protect(folder, {.workspace = *workspace,
                             .settingsStore = settingsStoreIn(folder),
                             .logStore = activityLogIn(folder),
                             .ownApplications = ownApplicationsIn(folder),
                             .watchTime = makeTimeChangeWatch});
    const int result = QGuiApplication::exec();
    if (!claim.isHeld())
        launch.refuse(claim.lossSentence());
    return result;
}
