// What "kestrinctl watch" costs while nothing happens.

#include "benchmarks/BareDesktop.h"
#include "benchmarks/Bench.h"
#include "benchmarks/Child.h"
#include "benchmarks/Run.h"

#include <QCoreApplication>

#include <unistd.h>

#include <cstring>

using namespace kestrin;

namespace {

/// The floor: a program of the same kind with nothing to do.
int idle(int argc, char **argv) {
    const QCoreApplication application(argc, argv);
    std::fputs("Idle.\n", stderr);
    return QCoreApplication::exec();
}

} // namespace

int main(int argc, char **argv) {
    if (argc > 1 && std::strcmp(argv[1], "idle") == 0)
        return idle(argc, argv);
    const bench::Run run(argc, argv);
    const int seconds = run.choose(15, 120);
    const bench::Child bare({"/proc/self/exe", "idle"});
    const bench::Child watch({bench::built("cli/kestrinctl"), "watch"});
    // What a start leaves behind is no idling.
    ::sleep(2);
    const bench::Child::WakeUps bareBefore = bare.wakeUps();
    const bench::Child::WakeUps before = watch.wakeUps();
    ::sleep(static_cast<unsigned>(seconds));
    const double perMinute = 60.0 / seconds;
    const bench::Comparison wakeUps{static_cast<double>(watch.wakeUpsSince(before)) * perMinute,
                                    static_cast<double>(bare.wakeUpsSince(bareBefore)) * perMinute};
    const std::string label = bench::BareDesktop::label();
    bench::Report report;
    report.limit("Wake-ups a minute of an idle watch" + label, "", wakeUps, 5);
    report.limit("Resident memory of an idle watch" + label, "MB",
                 {watch.residentMemory(), bare.residentMemory()}, 30);
    return report.exitCode();
}
