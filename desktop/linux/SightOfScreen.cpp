#include "desktop/linux/SightOfScreen.h"

#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace kestrin::desktop {

QString unseenReadersOfScreen() {
    if (qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
        return qEnvironmentVariableIsEmpty("DISPLAY") ? QString()
                                                      : u"On this desktop, X11, every program can read the "
                                                        u"screen unseen; only those that ask the "
                                                        "desktop to share it can be told."_s;
    const QStringList desktops = qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(u':');
    const bool isAsked = std::any_of(desktops.cbegin(), desktops.cend(), [](const QString &desktop) {
        return desktop.compare("GNOME"_L1, Qt::CaseInsensitive) == 0 ||
               desktop.compare("KDE"_L1, Qt::CaseInsensitive) == 0;
    });
    return isAsked ? QString()
                   : u"This desktop may let programs read the screen unseen; only those that ask it to share "
                     "the screen can be told."_s;
}

} // namespace kestrin::desktop
