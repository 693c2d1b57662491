// Starting "kestrinctl apps" where sway tells of the windows against starting it where X11 does, of the same
// ones.

#include "benchmarks/BareDesktop.h"
#include "benchmarks/Bench.h"
#include "benchmarks/Child.h"
#include "benchmarks/Run.h"
#include "benchmarks/SampleWindows.h"

#include <QCoreApplication>

using namespace kestrin;
using namespace Qt::StringLiterals;

int main(int argc, char **argv) {
    const bench::Run run(argc, argv);
    const QCoreApplication application(argc, argv);
    std::list<samples::SampleApp> applications;
    for (int i = 0; i < 30; ++i)
        applications.emplace_back(u"--class sample%1/sample%1"_s.arg(i));
    bench::BareDesktop::ofEnvironment()->waitForWindows(applications.size());
    const std::string kestrinctl = bench::built("cli/kestrinctl");
    const auto result = bench::compare(
        run.choose(20, 100),
        [&] {
            bench::run({kestrinctl, "apps"});
        },
        [&] {
            bench::run({"env", "-u", "SWAYSOCK", "-u", "WAYLAND_DISPLAY", kestrinctl, "apps"});
        });
    bench::Report report;
    report.ratio("kestrinctl apps, whole process, sway beside X11", "ms", result, 1.5);
    return report.exitCode();
}
