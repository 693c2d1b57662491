// Listing the applications behind 100 windows against reading what the desktop tells of the windows.

#include "benchmarks/BareDesktop.h"
#include "benchmarks/Bench.h"
#include "benchmarks/Run.h"
#include "benchmarks/SampleWindows.h"
#include "desktop/Platform.h"
#include "engine/NSWorkspaceAppInventoryService.h"

#include <QCoreApplication>

using namespace kestrin;
using namespace kestrin::desktop;
using namespace kestrin::engine;

namespace {

constexpr int windowCount = 100;

} // namespace

int main(int argc, char **argv) {
    const bench::Run run(argc, argv);
    const QCoreApplication application(argc, argv);
    const auto applications = bench::openWindows(bench::unknownClasses(windowCount));
    const auto desktop = bench::BareDesktop::ofEnvironment();
    const auto workspace = makeWorkspace();
    NSWorkspaceAppInventoryService service(*workspace);
    const auto result = bench::compare(
        run.choose(50, 300),
        [&] {
            if (service.runningApps().size() != windowCount)
                bench::giveUp("not every application was listed.");
        },
        [&] {
            if (desktop->readWindows() == 0)
                bench::giveUp("the windows have no properties.");
        });
    bench::Report report;
    report.ratio("Inventory of 100 applications with a window each" + bench::BareDesktop::label(), "ms",
                 result, 3);
    return report.exitCode();
}
