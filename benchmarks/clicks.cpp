// The window on a busy desktop, with a log of years: how long a click keeps its user waiting.

#include "benchmarks/Bench.h"
#include "benchmarks/SampleClient.h"
#include "benchmarks/SampleLog.h"
#include "benchmarks/WindowProgram.h"
#include "engine/JSONMacActivityLogStore.h"
#include "runtime/MacProtectionRuntime.h"

#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;
using namespace kestrin;
using namespace kestrin::engine;
using namespace kestrin::runtime;
using bench::Input;
using bench::Key;
using bench::WindowProgram;

namespace {

constexpr int home = 1;
constexpr int apps = 3;
constexpr int runningApps = 100;
constexpr int loggedEvents = 10'000;
/// Other pages share their background with the last one, which is not drawn anew.
constexpr double page = 0.25;
constexpr double anything = 0;

/// Some of them are protected, so that every check finds as many and logs them.
std::vector<bench::SampleClient> openApplications() {
    std::vector<bench::SampleClient> clients;
    for (const char *name : {"zoom", "teams", "chrome", "wispr", "rewind", "otter"})
        clients.emplace_back(name);
    while (clients.size() < runningApps)
        clients.emplace_back("sample" + std::to_string(clients.size()));
    bench::waitForWindows(runningApps);
    return clients;
}

/// The window's files, which tell what a click has done.
class Records {
  public:
    Records() {
        QDir().mkpath(m_folder);
        bench::writeLog(m_folder + u"/activity-log.json"_s, loggedEvents);
    }

    qsizetype eventCount() { return m_log.recent(1'000'000).size(); }
    QByteArray settings() const {
        QFile file(m_folder + u"/privacy-mode-settings.json"_s);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

  private:
    QString m_folder = MacProtectionRuntime::applicationSupportURL().toLocalFile();
    JSONMacActivityLogStore m_log{QUrl::fromLocalFile(m_folder + u"/activity-log.json"_s)};
};

/// Clicks and measures them, each after the window has come to rest.
class Clicks {
  public:
    explicit Clicks(const std::string &program) : m_program(program) {}

    /// To the next control.
    void goOn() {
        type([](Input &input) { input.type(Key::tab); });
    }

    double choosePage(int number) {
        const double time =
            m_program.reaction([number](Input &input) { input.typeWithControl(bench::digit(number)); }, page);
        m_program.settle();
        return time;
    }

    /// Goes on to the next control and clicks it: from the release to what is drawn next, which is after the
    /// click has been dealt with.
    double clickNext() {
        goOn();
        type([](Input &input) { input.hold(Key::space); });
        const double time = m_program.reaction([](Input &input) { input.let(Key::space); }, anything);
        m_program.settle();
        return time;
    }

  private:
    template <typename Act>
    void type(Act &&act) {
        act(m_program.input());
        m_program.settle();
    }

    WindowProgram m_program;
};

void expect(bool happened, const char *otherwise) {
    if (!happened)
        bench::giveUp(otherwise);
}

} // namespace

int main(int argc, char **argv) {
    const int rounds = bench::isQuick(argc, argv) ? 10 : 50;
    const auto applications = openApplications();
    Records records;
    std::vector<double> bareTimes;
    {
        Clicks bare(bench::bareWindow());
        for (int round = 0; round < rounds; ++round)
            bareTimes.push_back(bare.choosePage(apps));
    }
    std::vector<double> switches;
    std::vector<double> checks;
    std::vector<double> toggles;
    Clicks clicks(bench::kestrin());
    // In the sidebar, where the keyboard stays when the page changes.
    clicks.goOn();
    for (int round = 0; round < rounds; ++round) {
        const qsizetype before = records.eventCount();
        switches.push_back(clicks.choosePage(apps));
        const qsizetype between = records.eventCount();
        expect(between > before, "the Apps page does not check.");
        checks.push_back(clicks.clickNext());
        expect(records.eventCount() > between, "Run Live Check does not check.");
        const QByteArray settings = records.settings();
        toggles.push_back(clicks.clickNext());
        expect(records.settings() != settings, "a toggle does not change the selection.");
        clicks.choosePage(home);
    }
    bench::Report report;
    const auto slowest = [&](const char *name, const std::vector<double> &times) {
        report.limit(name, "ms", {bench::percentile(times, 1), bench::percentile(bareTimes, 1)}, 100);
    };
    const auto usual = [&](const char *name, const std::vector<double> &times) {
        report.note(name, "ms", {bench::median(times), bench::median(bareTimes)});
    };
    usual("Apps page on a busy desktop, median", switches);
    slowest("Apps page on a busy desktop, slowest", switches);
    usual("Run Live Check on a busy desktop, median", checks);
    slowest("Run Live Check on a busy desktop, slowest", checks);
    usual("A toggle on a busy desktop, median", toggles);
    slowest("A toggle on a busy desktop, slowest", toggles);
    return report.exitCode();
}
