#include "desktop/Platform.h"

#include "desktop/applications/MenuApplications.h"
#include "desktop/clock/SystemTimeChangeWatch.h"
#include "desktop/defaults/JSONUserDefaults.h"
#include "desktop/gnome/GnomeClients.h"
#include "desktop/gnome/GnomeShellWindows.h"
#include "desktop/linux/ChosenWorkspace.h"
#include "desktop/login/FileLoginItem.h"
#include "desktop/permission/LinuxPermission.h"
#include "desktop/sway/SwayWindows.h"
#include "desktop/wayland/PlasmaWindows.h"
#include "desktop/wayland/WlrToplevels.h"
#include "desktop/x11/X11Workspace.h"
#include "foundation/PrivateFolder.h"

#include <QCoreApplication>
#include <QFileInfo>

namespace kestrin::desktop {

using namespace foundation;
using namespace engine;
using namespace runtime;

void prepareEventLoop() {}

std::unique_ptr<Workspace> makeWorkspace() {
    std::vector<ChosenWorkspace::Candidate> candidates;
    const auto offer = [&candidates](std::unique_ptr<WindowSource> source, bool needsX11 = false) {
        candidates.push_back({std::make_unique<SourceWorkspace>(std::move(source)), needsX11});
    };
    if (const QByteArray socket = qgetenv("SWAYSOCK"); !socket.isEmpty())
        offer(std::make_unique<SwayWindows>(socket));
    if (!qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")) {
        offer(std::make_unique<PlasmaWindows>());
        offer(std::make_unique<GnomeShellWindows>());
        offer(std::make_unique<WlrToplevels>());
        offer(std::make_unique<GnomeClients>(), true);
    }
    if (candidates.empty())
        return std::make_unique<X11Workspace>();
    return std::make_unique<ChosenWorkspace>(std::move(candidates));
}

std::unique_ptr<UserDefaults> makeUserDefaults() {
    const QString path = JSONUserDefaults::standardPath();
    closeToOthers(QFileInfo(path).path());
    return std::make_unique<JSONUserDefaults>(path);
}

QString userDefaultsLocation() {
    return JSONUserDefaults::standardPath();
}

std::unique_ptr<TimeChangeWatch> makeTimeChangeWatch() {
    return std::make_unique<SystemTimeChangeWatch>();
}

std::unique_ptr<LoginItem> makeLoginItem(const QString &program) {
    const LoginFile file = autostartEntry();
    const QString folder = QCoreApplication::applicationDirPath();
    return std::make_unique<FileLoginItem>(
        program.isEmpty() ? FileLoginItem::installedProgram(folder, file) : program, file);
}

std::unique_ptr<InstalledApplications> makeInstalledApplications() {
    return std::make_unique<MenuApplications>();
}

std::unique_ptr<DesktopPermission> makeDesktopPermission() {
    return std::make_unique<LinuxPermission>();
}

} // namespace kestrin::desktop
