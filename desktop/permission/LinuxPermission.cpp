#include "desktop/permission/LinuxPermission.h"

#include "desktop/applications/DesktopPatience.h"
#include "desktop/applications/ProcessIdentity.h"
#include "desktop/bus/BusNames.h"
#include "desktop/permission/GnomePermission.h"
#include "desktop/permission/PlasmaPermission.h"
#include "desktop/wayland/PlasmaWindows.h"
#include "desktop/wayland/WaylandConnection.h"

#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace kestrin::desktop {

using namespace foundation;
using namespace runtime;

namespace {

const QString gnomeName = u"org.gnome.Shell"_s;
const QString plasmaName = u"org.kde.KWin"_s;

std::unique_ptr<PlasmaPermission> ofPlasma() {
    return std::make_unique<PlasmaPermission>(
        OwnPrograms::find(),
        QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + u"/applications"_s,
        std::make_unique<PlasmaWindows>());
}

} // namespace

std::unique_ptr<DesktopPermission> LinuxPermission::ofThisDesktop() {
    // On X11 everybody sees everything.
    if (qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
        return nullptr;
    const auto owners = BusNames::owners({gnomeName, plasmaName}, Deadline(desktopPatience));
    if (owners.contains(gnomeName) && mayBeCompositorHere(owners[gnomeName]))
        return std::make_unique<GnomePermission>(OwnPrograms::find());
    // What starts KWin may listen in its place.
    if (owners.contains(plasmaName) &&
        (mayBeCompositorHere(owners[plasmaName]) || mayBeCompositorHere(parentOfProcess(owners[plasmaName]))))
        return ofPlasma();
    return nullptr;
}

LinuxPermission::Answer LinuxPermission::enable() {
    const auto permission = ofThisDesktop();
    return permission ? permission->enable() : NoDesktopPermission().enable();
}

LinuxPermission::Answer LinuxPermission::disable() {
    const Answer onPlasma = ofPlasma()->disable();
    const QString obstacle = GnomePermission(OwnPrograms::find()).takeBack();
    if (const auto permission = ofThisDesktop())
        return permission->disable();
    if (!obstacle.isEmpty())
        return {false, obstacle};
    if (!onPlasma.isDone)
        return onPlasma;
    return {true,
            u"What GNOME and KDE Plasma let Kestrin see is taken back; on this desktop there is nothing "
            "that it needs to be allowed."_s};
}

} // namespace kestrin::desktop
