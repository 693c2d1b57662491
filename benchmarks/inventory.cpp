// Listing the applications behind 100 windows against reading the windows' properties.

#include "benchmarks/Bench.h"
#include "benchmarks/Run.h"
#include "benchmarks/SampleWindows.h"
#include "benchmarks/XDisplay.h"
#include "desktop/Platform.h"
#include "engine/NSWorkspaceAppInventoryService.h"

#include <QCoreApplication>

using namespace kestrin;
using namespace kestrin::desktop;
using namespace kestrin::engine;

namespace {

constexpr int windowCount = 100;

/// Reads what the inventory needs to know of each window, all questions under way at once.
std::size_t readProperties(const bench::XDisplay &display, const std::vector<std::uint32_t> &properties) {
    std::vector<xcb_get_property_cookie_t> questions;
    for (const std::uint32_t window : display.windowList()) {
        for (const std::uint32_t property : properties)
            questions.push_back(display.ask(window, property, 256));
    }
    std::size_t bytes = 0;
    for (const auto &question : questions) {
        if (const auto reply = display.take(question))
            bytes += static_cast<std::size_t>(xcb_get_property_value_length(reply.get()));
    }
    return bytes;
}

} // namespace

int main(int argc, char **argv) {
    const bench::Run run(argc, argv);
    const QCoreApplication application(argc, argv);
    const auto applications = bench::openWindows(bench::unknownClasses(windowCount));
    const bench::XDisplay display;
    const std::vector<std::uint32_t> properties{XCB_ATOM_WM_CLASS,
                                                display.atom("_NET_WM_WINDOW_TYPE"),
                                                display.atom("_NET_WM_STATE"),
                                                display.atom("_GTK_APPLICATION_ID"),
                                                display.atom("_KDE_NET_WM_DESKTOP_FILE"),
                                                display.atom("_NET_WM_PID")};
    const auto workspace = makeWorkspace();
    NSWorkspaceAppInventoryService service(*workspace);
    const auto result = bench::compare(
        run.choose(50, 300),
        [&] {
            if (service.runningApps().size() != windowCount)
                bench::giveUp("not every application was listed.");
        },
        [&] {
            if (readProperties(display, properties) == 0)
                bench::giveUp("the windows have no properties.");
        });
    bench::Report report;
    report.ratio("Inventory of 100 applications with a window each, warm", "ms", result, 3);
    return report.exitCode();
}
