// The window beside a bare one: its start, its memory, how soon it draws, and that it rests when nothing
// happens.

#include "benchmarks/Bench.h"
#include "benchmarks/Run.h"
#include "benchmarks/WindowProgram.h"

#include <thread>

using namespace kestrin;
using bench::Input;
using bench::WindowProgram;

namespace {

constexpr int pages = 7;
constexpr int apps = 3;
/// Other pages share their background with the last one, which is not drawn anew.
constexpr double page = 0.25;

/// What one program does from its start to its end.
struct Life {
    double firstFrame = 0;
    double memory = 0;
    std::vector<double> switches; ///< to every page once
    std::vector<double> scrolling;
};

/// Fewer notches than it takes to the end of the page.
constexpr int way = 6;

/// As somebody turns the wheel who is in a hurry: a notch a frame, down and up again.
std::vector<double> scroll(WindowProgram &program, int notches) {
    std::vector<double> times;
    program.pointToMiddle();
    for (int i = 0; i < notches; ++i) {
        const auto next = std::chrono::steady_clock::now() + std::chrono::microseconds(16'667);
        times.push_back(program.reaction([i](Input &input) { input.turnWheel(i % (2 * way) < way); }, page));
        std::this_thread::sleep_until(next);
    }
    return times;
}

double choosePage(WindowProgram &program, int number) {
    const double time =
        program.reaction([number](Input &input) { input.typeWithControl(bench::digit(number)); }, page);
    program.settle();
    return time;
}

Life live(const bench::Arguments &command) {
    WindowProgram program(command);
    Life life;
    life.firstFrame = program.firstFrame();
    // Home is there already, and comes last.
    for (int i = 1; i <= pages; ++i)
        life.switches.push_back(choosePage(program, i % pages + 1));
    life.memory = program.process().residentMemory();
    choosePage(program, apps);
    life.scrolling = scroll(program, 6 * way);
    return life;
}

/// Many of them, with everything in one list.
struct Lives {
    std::vector<double> firstFrame;
    std::vector<double> memory;
    std::vector<double> switches;
    std::vector<double> scrolling;

    void add(const Life &life) {
        firstFrame.push_back(life.firstFrame);
        memory.push_back(life.memory);
        switches.insert(switches.end(), life.switches.begin(), life.switches.end());
        scrolling.insert(scrolling.end(), life.scrolling.begin(), life.scrolling.end());
    }
};

void measureLives(bench::Report &report, int rounds) {
    Lives bare;
    Lives kestrin;
    for (int round = 0; round <= rounds; ++round) {
        const Life floor = live(bench::bareWindow());
        const Life measured = live(bench::kestrin());
        // The first ones read everything from the disk.
        if (round == 0)
            continue;
        bare.add(floor);
        kestrin.add(measured);
    }
    const auto both = [&](std::vector<double> Lives::*list, double share) {
        return bench::Comparison{bench::percentile(kestrin.*list, share),
                                 bench::percentile(bare.*list, share)};
    };
    report.ratio("Start to the first frame", "ms", both(&Lives::firstFrame, 0.5), 2.2);
    report.ratio("Resident memory with every page visited", "MB", both(&Lives::memory, 0.5), 1.5);
    report.note("Key to another page, median", "ms", both(&Lives::switches, 0.5));
    report.ratio("Key to another page, 95th percentile", "ms", both(&Lives::switches, 0.95), 3);
    report.note("Wheel to the scrolled Apps page, median", "ms", both(&Lives::scrolling, 0.5));
    report.ratio("Wheel to the scrolled Apps page, 95th percentile", "ms", both(&Lives::scrolling, 0.95),
                 2.5);
}

void measureIdling(bench::Report &report, std::chrono::seconds time) {
    WindowProgram bare(bench::bareWindow());
    WindowProgram kestrin(bench::kestrin());
    choosePage(kestrin, apps);
    // What a start leaves behind is no idling.
    std::this_thread::sleep_for(std::chrono::seconds(2));
    const bench::Child::WakeUps bareBefore = bare.process().wakeUps();
    const bench::Child::WakeUps before = kestrin.process().wakeUps();
    const int drawings = kestrin.drawings(time);
    const double perMinute = 60.0 / static_cast<double>(time.count());
    const bench::Comparison wakeUps{static_cast<double>(kestrin.process().wakeUpsSince(before)) * perMinute,
                                    static_cast<double>(bare.process().wakeUpsSince(bareBefore)) * perMinute};
    // What the bare one has drawn meanwhile waits to be counted.
    const int bareDrawings = bare.drawings(std::chrono::milliseconds(1));
    report.limit("Drawings of an idle window", "",
                 {static_cast<double>(drawings), static_cast<double>(bareDrawings)}, 0);
    report.limit("Wake-ups a minute of an idle window", "", wakeUps, 5);
}

} // namespace

int main(int argc, char **argv) {
    const bench::Run run(argc, argv);
    bench::Report report;
    measureLives(report, run.choose(5, 15));
    measureIdling(report, std::chrono::seconds(run.choose(15, 45)));
    return report.exitCode();
}
