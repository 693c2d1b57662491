// The window's program: reads its options, makes sure that nobody else watches, and shows the window.

#include "app/Kestrin/Protection.h"
#include "app/Kestrin/ProtectionWindow.h"
#include "design/KestrinAppearance.h"
#include "design/platform/FontPreparation.h"
#include "runtime/MonitoringClaim.h"
#include "runtime/StandardUserDefaults.h"

#include <QGuiApplication>
#include <QIcon>
#include <QQuickWindow>

#include <cstdio>
#include <optional>

using namespace Qt::StringLiterals;
using namespace kestrin;

namespace {

constexpr int wrongUsage = 2;

const char *const helpText = R"(Usage: kestrin [OPTION]

Opens Kestrin's window: Privacy Mode, the protected applications, schedules and activity.

  --appearance light|dark|system   draw the window so; "system", the default, follows the desktop
  --version                        print the version
  --help                           print this

The window draws without the graphics card. Set QT_QUICK_BACKEND=rhi to use it.
)";

struct Options {
    KestrinAppearance::Preference appearance = KestrinAppearance::System;
    bool help = false;
    bool version = false;
    /// What is wrong with them; empty when nothing is.
    QString complaint;
};

Options readOptions(const QStringList &arguments) {
    const auto wrong = [](const QString &complaint) {
        Options options;
        options.complaint = complaint;
        return options;
    };
    Options options;
    for (qsizetype i = 1; i < arguments.size(); ++i) {
        const QString &argument = arguments.at(i);
        if (argument == u"--help" || argument == u"-h") {
            options.help = true;
        } else if (argument == u"--version") {
            options.version = true;
        } else if (argument == u"--appearance" || argument.startsWith(u"--appearance=")) {
            const bool attached = argument.contains(u'=');
            const QString text = attached ? argument.section(u'=', 1) : arguments.value(++i);
            const auto preference = KestrinAppearance::preferenceFromText(text);
            if (!preference)
                return wrong(u"The appearance is light, dark or system."_s);
            options.appearance = *preference;
        } else {
            return wrong(u"kestrin does not know \""_s + argument + u"\"; see kestrin --help."_s);
        }
    }
    return options;
}

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

/// Then nobody reads standard error.
bool startedFromMenu() {
    return qEnvironmentVariableIsSet("DESKTOP_STARTUP_ID") ||
           qEnvironmentVariableIsSet("XDG_ACTIVATION_TOKEN") ||
           qEnvironmentVariableIsSet("GIO_LAUNCHED_DESKTOP_FILE");
}

/// Desktops that do not know the desktop file show the window's own icon. It need not hold up the first
/// frame.
void setIconLater(QQuickWindow &window) {
    const auto setIcon = [] { QGuiApplication::setWindowIcon(QIcon(u":/kestrin/KestrinIconMark.svg"_s)); };
    QObject::connect(&window, &QQuickWindow::frameSwapped, qApp, setIcon,
                     static_cast<Qt::ConnectionType>(Qt::QueuedConnection | Qt::SingleShotConnection));
}

} // namespace

int main(int argc, char **argv) {
    QCoreApplication::setApplicationName(u"Kestrin"_s); // as screen readers say it
    QCoreApplication::setApplicationVersion(QStringLiteral(KESTRIN_VERSION));
    QGuiApplication::setApplicationDisplayName(u"Kestrin"_s);
    QGuiApplication::setDesktopFileName(QStringLiteral(KESTRIN_DESKTOP_ID));

    // Before the application, which needs a display.
    const Options options = readOptions(argumentsOf(argc, argv));
    if (!options.complaint.isEmpty()) {
        print(stderr, options.complaint);
        return wrongUsage;
    }
    if (options.help) {
        std::fputs(helpText, stdout);
        return 0;
    }
    if (options.version) {
        print(stdout, u"kestrin "_s + QCoreApplication::applicationVersion());
        return 0;
    }

    const std::jthread fonts = prepareFonts();
    chooseRenderer();
    QGuiApplication application(argc, argv);
    KestrinAppearance::shared().setPreference(options.appearance);
    std::optional<Protection> protection;
    ProtectionWindow window;

    const std::unique_ptr<UserDefaults> defaults = standardUserDefaults();
    const QString supportFolder = MacProtectionRuntime::applicationSupportURL().toLocalFile();
    const MonitoringClaim claim = MonitoringClaim::make(supportFolder, u"Kestrin"_s);
    if (claim.holder) {
        const QString refusal = u"Privacy Mode is already watched by "_s + *claim.holder +
                                u". End it, then open Kestrin again."_s;
        print(stderr, refusal);
        if (startedFromMenu())
            showNotice(refusal);
        return 1;
    }
    window.open(protection.emplace(*defaults).state);
    setIconLater(*window.window());
    return QGuiApplication::exec();
}
