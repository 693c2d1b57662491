// Kestrin's start beside that of KeePassXC, a program with one window that people leave open all day too.

#include "benchmarks/Bench.h"
#include "benchmarks/Child.h"
#include "benchmarks/Run.h"
#include "benchmarks/WindowProgram.h"

#include <filesystem>
#include <fstream>
#include <thread>

using namespace kestrin;

namespace {

/// With a home of its own, where it has nothing to ask and nobody to look for.
bench::Arguments keepassxc() {
    const std::filesystem::path home = std::filesystem::temp_directory_path() / "keepassxc-home";
    std::filesystem::create_directories(home / "config" / "keepassxc");
    std::ofstream(home / "config" / "keepassxc" / "keepassxc.ini") << "[General]\n"
                                                                      "UpdateCheckMessageShown=true\n"
                                                                      "[GUI]\n"
                                                                      "CheckForUpdates=false\n"
                                                                      "[Browser]\n"
                                                                      "Enabled=false\n";
    const std::string path = home;
    return {"env",
            "HOME=" + path,
            "XDG_CONFIG_HOME=" + path + "/config",
            "XDG_CACHE_HOME=" + path + "/cache",
            "XDG_DATA_HOME=" + path + "/data",
            "keepassxc"};
}

bench::Arguments ourWindow() {
    // Started the same way, which takes a moment too.
    return {"env", bench::kestrin().front()};
}

struct Starts {
    std::vector<double> listed;
    std::vector<double> memory;

    void add(const bench::Arguments &command) {
        const bench::WindowProgram program(command);
        // What a start leaves behind is over then.
        std::this_thread::sleep_for(std::chrono::seconds(1));
        listed.push_back(program.listed());
        memory.push_back(program.process().proportionalMemory());
    }
};

struct Both {
    Starts ours;
    Starts theirs;

    explicit Both(int rounds) {
        for (int round = 0; round < rounds; ++round) {
            theirs.add(keepassxc());
            ours.add(ourWindow());
        }
    }

    bench::Comparison listed() const { return {bench::median(ours.listed), bench::median(theirs.listed)}; }
    bench::Comparison memory() const { return {bench::median(ours.memory), bench::median(theirs.memory)}; }
};

} // namespace

int main(int argc, char **argv) {
    const bench::Run run(argc, argv);
    const Both alone(run.choose(2, 5));
    // On a desktop neither is the only program of its kind. Both find the libraries of theirs, Qt 6 and Qt 5,
    // in memory already, and share them with one other program.
    const bench::Child ofOurKind(bench::bareWindow(), bench::Child::Readiness::isStarted);
    const bench::Child ofTheirKind({"qt5ct"}, bench::Child::Readiness::isStarted);
    std::this_thread::sleep_for(std::chrono::seconds(2));
    const Both among(run.choose(4, 15));

    bench::Report report;
    report.ratio("Start to the listed window, beside KeePassXC", "ms", among.listed(), 0.5);
    report.ratio("Proportional memory, beside KeePassXC", "MB", among.memory(), 0.5);
    report.note("The same where nothing else runs Qt", "MB", alone.memory());
    return report.exitCode();
}
