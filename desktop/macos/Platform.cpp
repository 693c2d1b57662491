#include "desktop/Platform.h"

#include "desktop/clock/SystemTimeChangeWatch.h"
#include "desktop/login/FileLoginItem.h"
#include "desktop/macos/AppKitWorkspace.h"
#include "desktop/macos/NSUserDefaultsStore.h"

#include <QCoreApplication>

namespace kestrin::desktop {

using namespace engine;
using namespace runtime;

void prepareEventLoop() {
    // Launches arrive in the main queue, which Qt's own event loop of a program without windows does not
    // serve.
    qputenv("QT_EVENT_DISPATCHER_CORE_FOUNDATION", "1");
}

std::unique_ptr<Workspace> makeWorkspace() {
    return std::make_unique<AppKitWorkspace>();
}

std::unique_ptr<UserDefaults> makeUserDefaults() {
    return std::make_unique<NSUserDefaultsStore>();
}

QString userDefaultsLocation() {
    return QStringLiteral("the application's user defaults");
}

std::unique_ptr<TimeChangeWatch> makeTimeChangeWatch() {
    return std::make_unique<SystemTimeChangeWatch>();
}

std::unique_ptr<LoginItem> makeLoginItem(const QString &program) {
    const LoginFile file = launchAgent();
    const QString folder = QCoreApplication::applicationDirPath();
    return std::make_unique<FileLoginItem>(
        program.isEmpty() ? FileLoginItem::installedProgram(folder, file) : program, file);
}

std::unique_ptr<InstalledApplications> makeInstalledApplications() {
    return std::make_unique<InMemoryInstalledApplications>();
}

std::unique_ptr<DesktopPermission> makeDesktopPermission() {
    return std::make_unique<NoDesktopPermission>();
}

} // namespace kestrin::desktop
