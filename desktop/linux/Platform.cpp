#include "desktop/Platform.h"

#include "desktop/clock/SystemTimeChangeWatch.h"
#include "desktop/defaults/JSONUserDefaults.h"
#include "desktop/login/FileLoginItem.h"
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
    return std::make_unique<X11Workspace>();
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

} // namespace kestrin::desktop
