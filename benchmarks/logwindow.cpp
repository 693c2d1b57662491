// The window of a log of years: how long it takes to open, to scroll and to search, and what it weighs.

#include "benchmarks/Bench.h"
#include "benchmarks/Run.h"
#include "benchmarks/SampleLog.h"
#include "benchmarks/WindowProgram.h"
#include "runtime/MacProtectionRuntime.h"

#include <QCoreApplication>
#include <QDir>

#include <string_view>

using namespace Qt::StringLiterals;
using namespace kestrin;
using namespace kestrin::runtime;
using bench::Input;
using bench::Key;
using bench::WindowProgram;

namespace {

constexpr int loggedEvents = 100'000;
/// Of sixty a second.
constexpr double frame = 1000.0 / 60;
constexpr double anything = 0;

struct Times {
    std::vector<double> opening;
    std::vector<double> scrolling;
    std::vector<double> paging;
    std::vector<double> searching;
    /// Megabytes more than before the first one was open: while one is, and after it was closed.
    std::vector<double> weight;
    std::vector<double> leftover;
};

void readOn(WindowProgram &program, Times &times) {
    // What is drawn first is all of it: lines come in one frame.
    const auto measure = [&program](std::vector<double> &list, auto &&act) {
        list.push_back(program.reaction(act, anything));
        program.settle();
    };
    for (const char character : std::string_view("application 1"))
        measure(times.searching, [character](Input &input) { input.type(bench::letter(character)); });
    measure(times.searching, [](Input &input) { input.type(Key::escape); });
    // To the list, past the two filters, and away from the blinking cursor.
    for (int i = 0; i < 3; ++i)
        program.input().type(Key::tab);
    program.pointToMiddle();
    for (int i = 0; i < 30; ++i)
        measure(times.scrolling, [](Input &input) { input.turnWheel(true); });
    measure(times.paging, [](Input &input) { input.type(Key::end); });
    for (int i = 0; i < 15; ++i)
        measure(times.paging, [](Input &input) { input.type(Key::pageUp); });
    measure(times.paging, [](Input &input) { input.type(Key::home); });
}

} // namespace

int main(int argc, char **argv) {
    const bench::Run run(argc, argv);
    const QCoreApplication application(argc, argv);
    const QString folder = MacProtectionRuntime::applicationSupportURL().toLocalFile();
    QDir().mkpath(folder);
    bench::writeLog(folder + u"/activity-log.json"_s, loggedEvents, bench::eventOfYears);

    Times times;
    std::vector<double> floor;
    std::vector<double> bareWindows;
    for (int turn = 0; turn < run.choose(2, 5); ++turn) {
        WindowProgram bare(bench::bareWindow());
        bareWindows.push_back(bare.firstFrame());
        bare.pointToMiddle();
        for (int i = 0; i < 30; ++i) {
            floor.push_back(bare.reaction([](Input &input) { input.turnWheel(true); }, anything));
            bare.settle();
        }
        WindowProgram program(bench::kestrin());
        const double before = program.process().ownMemory();
        for (int i = 0; i < 3; ++i) {
            times.opening.push_back(
                program.opening([](Input &input) { input.typeWithControl(bench::letter('l')); }));
            readOn(program, times);
            times.weight.push_back(program.process().ownMemory() - before);
            program.close();
            times.leftover.push_back(program.process().ownMemory() - before);
        }
    }

    bench::Report report;
    const double bare = bench::median(floor);
    const std::string of = " of a log of 100,000 events";
    report.limit("Opening the window" + of + ", median", "ms",
                 {bench::median(times.opening), bench::median(bareWindows)}, 300);
    report.limit("Key to what is found in it, 95th percentile", "ms",
                 {bench::percentile(times.searching, 0.95), bare}, 100);
    report.note("Wheel to the scrolled lines, median", "ms", {bench::median(times.scrolling), bare});
    report.note("Wheel to the scrolled lines, 95th percentile", "ms",
                {bench::percentile(times.scrolling, 0.95), bench::percentile(floor, 0.95)});
    // Qt waits some milliseconds before it draws, in a bare window too. A frame is late when what there is to
    // do for it takes longer than a frame.
    report.limit("Work for the scrolled lines, 95th percentile", "ms",
                 {bench::percentile(times.scrolling, 0.95) - bare, bare}, frame);
    report.limit("Work for another page of lines, 95th percentile", "ms",
                 {bench::percentile(times.paging, 0.95) - bare, bare}, frame);
    report.limit("Memory more while it is open, at most", "MB", {bench::percentile(times.weight, 1), 0}, 60);
    // Compiled views, letters that were drawn, and the pages of the heap that these are scattered over stay.
    report.limit("Memory more once it is closed, at most", "MB", {bench::percentile(times.leftover, 1), 0},
                 8);
    return report.exitCode();
}
