// The activity log against the bare system calls that move the same bytes.

#include "benchmarks/BareLog.h"
#include "benchmarks/Bench.h"
#include "benchmarks/Run.h"
#include "benchmarks/SampleLog.h"
#include "engine/JSONMacActivityLogStore.h"

#include <QTemporaryDir>

using namespace Qt::StringLiterals;
using namespace kestrin;
using namespace kestrin::engine;

namespace {

void measure(bench::Report &report, int count, int rounds) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"activity-log.json"_s);
    bench::writeLog(path, count);
    JSONMacActivityLogStore store(QUrl::fromLocalFile(path));
    const std::string events = std::to_string(count / 1000) + ",000 events";

    bench::BareLog bare(path);
    int number = 0;
    const auto append = bench::compare(
        rounds, [&] { store.append(bench::sampleEvent(number++)); }, [&] { bare.replace(); });
    report.ratio(("Append to a log of " + events).c_str(), "ms", append, 3);
    if (store.recent(count + rounds + 1).size() != count + rounds + 1)
        bench::giveUp("an append was lost.");

    const auto recent = [&] {
        if (store.recent(8).size() != 8)
            bench::giveUp("the log does not read.");
    };
    const std::string newest = "Newest eight of " + events;
    report.ratio(newest.c_str(), "ms", bench::compare(rounds, recent, [&] { bare.readIntoNewMemory(); }),
                 2.5);
    report.note((newest + ", memory kept").c_str(), "ms",
                bench::compare(rounds, recent, [&] { bare.readIntoKnownMemory(); }));
}

} // namespace

int main(int argc, char **argv) {
    const bench::Run run(argc, argv);
    bench::Report report;
    measure(report, 10'000, run.choose(20, 100));
    measure(report, 100'000, run.choose(7, 30));
    return report.exitCode();
}
