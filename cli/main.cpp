// kestrinctl: the protection runtime without a window.

#include "cli/CommandRunner.h"
#include "cli/StandardStreams.h"
#include "desktop/Platform.h"
#include "foundation/BaseDirectories.h"
#include "foundation/PrivateFolder.h"
#include "runtime/FileStores.h"

#include <QCoreApplication>

#include <unistd.h>

int main(int argc, char *argv[]) {
    using namespace kestrin;
    using namespace kestrin::cli;
    using namespace kestrin::foundation;
    using namespace kestrin::runtime;
    using namespace kestrin::desktop;
    ignoreRelativeBaseDirectories();
    prepareStandardStreams();
    preferUtf8();
    prepareEventLoop();
    const QCoreApplication application(argc, argv);

    Output out(STDOUT_FILENO);
    Output err(STDERR_FILENO);
    const auto workspace = makeWorkspace();
    const auto defaults = makeUserDefaults();
    const auto loginItem = makeLoginItem();
    const auto permission = makeDesktopPermission();
    const auto installed = makeInstalledApplications();
    const auto deviceUses = makeDeviceUses(*workspace);
    const QString folder = MacProtectionRuntime::applicationSupportURL().toLocalFile();
    closeToOthers(folder);
    CommandSurroundings surroundings{
        .defaults = *defaults,
        .defaultsLocation = userDefaultsLocation(),
        .supportFolder = folder,
        .runtime = {.workspace = *workspace,
                    .settingsStore = settingsStoreIn(folder),
                    .logStore = activityLogIn(folder),
                    .ownApplications = ownApplicationsIn(folder),
                    .watchTime = makeTimeChangeWatch},
        .loginItem = *loginItem,
        .permission = *permission,
        .installed = *installed,
        .deviceUses = *deviceUses,
        .out = out,
        .err = err,
        .palette = Palette(wantsColour(STDOUT_FILENO)),
    };
    return static_cast<int>(runCommandLine(QCoreApplication::arguments().mid(1), surroundings));
}
