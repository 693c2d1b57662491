#include "app/Kestrin/program/LaunchOptions.h"

using namespace Qt::StringLiterals;

namespace kestrin::app {

using namespace design;

LaunchOptions LaunchOptions::read(const QStringList &arguments) {
    const auto wrong = [](const QString &sentence) {
        LaunchOptions options;
        options.complaint = sentence;
        return options;
    };
    LaunchOptions options;
    for (qsizetype i = 1; i < arguments.size(); ++i) {
        const QString &argument = arguments.at(i);
        if (argument == u"--help" || argument == u"-h") {
            options.help = true;
        } else if (argument == u"--version") {
            options.version = true;
        } else if (argument == u"--background") {
            options.background = true;
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

const char *LaunchOptions::helpText() {
    return R"(Usage: kestrin [OPTION]

Opens Kestrin's window: Privacy Mode, the protected applications, schedules and activity. When Kestrin is
running already, its window comes to the front.

  --background                     protect without showing the window, as at login
  --appearance light|dark|system   draw the window so; "system", the default, follows the desktop
  --version                        print the version
  --help                           print this

The window draws without the graphics card. Set QT_QUICK_BACKEND=rhi to use it.
)";
}

} // namespace kestrin::app
