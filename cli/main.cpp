// kestrinctl: the protection runtime without a window.

#include "cli/CommandRunner.h"
#include "cli/StandardStreams.h"
#include "engine/workspace/Workspace.h"
#include "runtime/StandardUserDefaults.h"

#include <QCoreApplication>

#include <unistd.h>

int main(int argc, char *argv[]) {
    using namespace kestrin;
    prepareStandardStreams();
    preferUtf8();
    Workspace::prepareEventLoop();
    const QCoreApplication application(argc, argv);

    Output out(STDOUT_FILENO);
    Output err(STDERR_FILENO);
    const auto defaults = standardUserDefaults();
    const QString program = LoginItem::installedProgram(QCoreApplication::applicationDirPath());
    CommandSurroundings surroundings{
        *defaults, standardUserDefaultsLocation(),     {}, LoginItem(program), out,
        err,       Palette(wantsColour(STDOUT_FILENO))};
    return static_cast<int>(runCommandLine(QCoreApplication::arguments().mid(1), surroundings));
}
