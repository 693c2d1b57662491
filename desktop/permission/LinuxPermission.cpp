#include "desktop/permission/LinuxPermission.h"

#include "desktop/gnome/ShellExtension.h"
#include "desktop/permission/GnomePermission.h"
#include "desktop/permission/PlasmaPermission.h"
#include "desktop/wayland/PlasmaWindows.h"

#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace kestrin::desktop {

using namespace foundation;
using namespace runtime;

std::unique_ptr<DesktopPermission> LinuxPermission::ofThisDesktop() {
    // On X11 everybody sees everything.
    if (!qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")) {
        const Deadline deadline(desktopPatience);
        ShellConversation shell;
        if (shell.open({shellName}, deadline))
            return std::make_unique<GnomePermission>(OwnPrograms::find());
        if (shell.open({"org.kde.KWin"}, deadline))
            return std::make_unique<PlasmaPermission>(
                OwnPrograms::find(),
                QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + u"/applications"_s,
                std::make_unique<PlasmaWindows>());
    }
    return std::make_unique<NoDesktopPermission>();
}

} // namespace kestrin::desktop
