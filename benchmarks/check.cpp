// A whole run of "kestrinctl check" against one of wmctrl, which lists the same windows.

#include "benchmarks/Bench.h"
#include "benchmarks/Child.h"
#include "benchmarks/SampleClient.h"

using namespace kestrin;

int main(int argc, char **argv) {
    const auto clients = bench::openWindows(30, "sample");
    const auto result = bench::compare(
        bench::isQuick(argc, argv) ? 20 : 100,
        [] {
            bench::run({bench::kestrinctl(), "check"});
        },
        [] {
            bench::run({"wmctrl", "-lp"});
        });
    bench::Report report;
    report.ratio("kestrinctl check beside 30 windows, whole process", "ms", result, 4);
    return report.exitCode();
}
