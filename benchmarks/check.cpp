// A whole run of "kestrinctl check" against one of wmctrl, which lists the same windows.

#include "benchmarks/Bench.h"
#include "benchmarks/Child.h"
#include "benchmarks/Run.h"
#include "benchmarks/SampleWindows.h"

#include <QCoreApplication>

using namespace kestrin;

int main(int argc, char **argv) {
    const bench::Run run(argc, argv);
    const QCoreApplication application(argc, argv);
    const auto applications = bench::openWindows(bench::unknownClasses(30));
    const std::string kestrinctl = bench::built("cli/kestrinctl");
    const auto result = bench::compare(
        run.choose(20, 100),
        [&] {
            bench::run({kestrinctl, "check"});
        },
        [] {
            bench::run({"wmctrl", "-lp"});
        });
    bench::Report report;
    report.ratio("kestrinctl check beside 30 windows, whole process", "ms", result, 4);
    return report.exitCode();
}
