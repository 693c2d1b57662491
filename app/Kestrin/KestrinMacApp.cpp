// The window's program: reads its options, makes sure that nobody else watches, and shows the window.

#include "app/Kestrin/KestrinApplication.h"
#include "app/Kestrin/LaunchOptions.h"
#include "design/KestrinAppearance.h"
#include "design/KestrinFonts.h"
#include "engine/workspace/Workspace.h"
#include "runtime/MonitoringClaim.h"
#include "runtime/StandardUserDefaults.h"

#include <QGuiApplication>
#include <QQuickWindow>

#include <cstdio>
#include <memory>
#include <thread>

#ifdef __GLIBC__
#include <malloc.h>
#endif

using namespace Qt::StringLiterals;
using namespace kestrin;

namespace {

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

/// A window needs some megabytes at once; glibc asks for them in steps of 132 kB, each time of the kernel.
void growHeapInLargeSteps() {
#ifdef __GLIBC__
    mallopt(M_TOP_PAD, 4 << 20);
#endif
}

/// docs/decisions/0012-renderer.md tells why. The environment may say otherwise.
void chooseRenderer() {
    if (!qEnvironmentVariableIsSet("QT_QUICK_BACKEND") && !qEnvironmentVariableIsSet("QSG_RHI_BACKEND"))
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
}

/// Then nobody reads standard error.
bool startedFromMenu() {
    return qEnvironmentVariableIsSet("DESKTOP_STARTUP_ID") ||
           qEnvironmentVariableIsSet("XDG_ACTIVATION_TOKEN") ||
           qEnvironmentVariableIsSet("GIO_LAUNCHED_DESKTOP_FILE");
}

/// What this start was given for the window that it is to bring; used up by it.
QString activationToken() {
    const QString token =
        qEnvironmentVariable("XDG_ACTIVATION_TOKEN", qEnvironmentVariable("DESKTOP_STARTUP_ID"));
    qunsetenv("XDG_ACTIVATION_TOKEN");
    return token;
}

void refuse(const QString &reason) {
    print(stderr, reason);
    if (startedFromMenu())
        showNotice(reason);
}

/// Somebody else watches. If that is another start of this program, its window is what the user wants.
int giveWay(const QString &holder, const LaunchOptions &options) {
    using namespace std::chrono_literals;
    const bool isOurs = holder.startsWith(u"Kestrin,");
    if (isOurs && options.background)
        return 0;
    const QString token = activationToken();
    // It may not have come as far as to answer.
    for (int attempt = 0; isOurs && attempt < 20; ++attempt) {
        switch (SessionBus::activateRunning(token)) {
        case SessionBus::Answer::activated:
            return 0;
        case SessionBus::Answer::otherDisplay:
            refuse(u"Kestrin is already open on another display of yours."_s);
            return 1;
        case SessionBus::Answer::none:
            std::this_thread::sleep_for(100ms);
        }
    }
    refuse(u"Privacy Mode is already watched by "_s + holder + u". End it, then open Kestrin again."_s);
    return 1;
}

} // namespace

int main(int argc, char **argv) {
    QCoreApplication::setApplicationName(u"Kestrin"_s); // as screen readers say it
    QCoreApplication::setApplicationVersion(QStringLiteral(KESTRIN_VERSION));
    QGuiApplication::setApplicationDisplayName(u"Kestrin"_s);
    QGuiApplication::setDesktopFileName(QStringLiteral(KESTRIN_DESKTOP_ID));

    // Before the application, which needs a display.
    const LaunchOptions options = LaunchOptions::read(argumentsOf(argc, argv));
    if (!options.complaint.isEmpty()) {
        print(stderr, options.complaint);
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

    growHeapInLargeSteps();
    KestrinFonts::begin();
    chooseRenderer();
    QGuiApplication application(argc, argv);
    // It connects while this thread is at other things.
    Workspace::shared();
    using Start = KestrinApplication::Start;
    KestrinApplication kestrin(options.background ? Start::inBackground : Start::withWindow);
    KestrinAppearance::shared().setPreference(options.appearance);

    const std::unique_ptr<UserDefaults> defaults = standardUserDefaults();
    const QString supportFolder = MacProtectionRuntime::applicationSupportURL().toLocalFile();
    const MonitoringClaim claim = MonitoringClaim::make(supportFolder, u"Kestrin"_s);
    if (claim.holder)
        return giveWay(*claim.holder, options);
    kestrin.protect(*defaults);
    return QGuiApplication::exec();
}
