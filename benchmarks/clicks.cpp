// The window on a busy desktop, with a log of years: how long a click keeps its user waiting.

#include "benchmarks/BareLog.h"
#include "benchmarks/Bench.h"
#include "benchmarks/Run.h"
#include "benchmarks/SampleLog.h"
#include "benchmarks/SampleOwnApplications.h"
#include "benchmarks/SampleWindows.h"
#include "benchmarks/WindowProgram.h"
#include "engine/JSONMacActivityLogStore.h"
#include "runtime/MacProtectionRuntime.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

#include <array>

using namespace Qt::StringLiterals;
using namespace kestrin;
using namespace kestrin::engine;
using namespace kestrin::runtime;
using bench::Input;
using bench::Key;
using bench::WindowProgram;

namespace {

constexpr int runningApps = 100;
constexpr int loggedEvents = 10'000;
constexpr int ownApps = 1000;
/// Other pages share their background with the last one, which is not drawn anew.
constexpr double page = 0.25;
constexpr double anything = 0;

/// Some of them are protected, so that every check finds as many and logs them.
QStringList classes() {
    const QStringList risky{u"zoom"_s, u"teams"_s, u"chrome"_s, u"wispr"_s, u"rewind"_s, u"otter"_s};
    return risky + bench::unknownClasses(runningApps - static_cast<int>(risky.size()));
}

/// The window's files, which tell what a click has done.
class Records {
  public:
    Records() {
        QDir().mkpath(m_folder);
        bench::writeLog(m_folder + u"/activity-log.json"_s, loggedEvents);
        bench::writeLog(m_copy, loggedEvents);
    }

    /// How long the disk takes for so many events when nobody does anything else.
    double bareAppends(qsizetype count) {
        return bench::milliseconds([&] {
            for (qsizetype i = 0; i < count; ++i)
                m_bareLog.replace();
        });
    }

    void addOwnApps() { bench::storeOwnApplications(m_folder, ownApps); }

    qsizetype eventCount() { return m_log.recent(1'000'000).size(); }
    QByteArray settings() const {
        QFile file(m_folder + u"/privacy-mode-settings.json"_s);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

  private:
    QString m_folder = MacProtectionRuntime::applicationSupportURL().toLocalFile();
    QString m_copy = m_folder + u"/copy.json"_s;
    JSONMacActivityLogStore m_log{QUrl::fromLocalFile(m_folder + u"/activity-log.json"_s)};
    bench::BareLog m_bareLog{m_copy};
};

/// Clicks and measures them, each after the window has come to rest.
class Clicks {
  public:
    explicit Clicks(const bench::Arguments &program) : m_program(program) {}

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

/// What is clicked: the pages in the order of their keys, then what has the most to do, both on Apps.
constexpr std::array names{"Home",   "Devices",           "Apps",           "Schedule",      "Activity",
                           "Access", "Install & Connect", "Run Live Check", "a switched app"};
constexpr int pages = 7;
constexpr int apps = 3;
constexpr std::size_t liveCheck = 7;
constexpr std::size_t toggle = 8;

/// Milliseconds of every click, in the order of the names.
using Times = std::array<std::vector<double>, names.size()>;

/// Returns how long the events of the live check take the disk alone.
double useOnce(Clicks &clicks, Records &records, Times &times) {
    double appends = 0;
    // Home is there already, and comes last.
    for (int i = 1; i <= pages; ++i) {
        const int number = i % pages + 1;
        const qsizetype before = records.eventCount();
        times.at(static_cast<std::size_t>(number - 1)).push_back(clicks.choosePage(number));
        if (number != apps)
            continue;
        const qsizetype between = records.eventCount();
        expect(between > before, "the Apps page does not check.");
        times[liveCheck].push_back(clicks.clickNext());
        const qsizetype logged = records.eventCount() - between;
        expect(logged > 0, "Run Live Check does not check.");
        appends = records.bareAppends(logged);
        const QByteArray settings = records.settings();
        times[toggle].push_back(clicks.clickNext());
        expect(records.settings() != settings, "a toggle does not change the selection.");
    }
    return appends;
}

/// The window and the bare one take turns, each with a new start.
struct Turns {
    std::vector<double> floor;
    std::vector<double> appends;
    Times times;

    void take(int count, Records &records) {
        for (int turn = 0; turn < count; ++turn) {
            {
                Clicks bare(bench::bareWindow());
                for (int i = 0; i < 12; ++i)
                    floor.push_back(bare.choosePage(apps));
            }
            Clicks clicks(bench::kestrin());
            // In the sidebar, where the keyboard stays when the page changes.
            clicks.goOn();
            for (int i = 0; i < 5; ++i)
                appends.push_back(useOnce(clicks, records, times));
        }
    }
};

void reportBuiltIn(bench::Report &report, const Turns &turns) {
    std::vector<double> all;
    for (std::size_t i = 0; i < names.size(); ++i) {
        const std::vector<double> &times = turns.times[i];
        // Every event of a check is safely on the disk before the next one, and the click waits for all of
        // them. What the disk takes for that is its own affair.
        const bool isOnDisk = i == liveCheck;
        const double disk = isOnDisk ? bench::median(turns.appends) : 0;
        const std::string name = std::string("Click on a busy desktop: ") + names[i];
        report.ratio((name + (isOnDisk ? " less disk, median" : ", median")).c_str(), "ms",
                     {bench::median(times) - disk, bench::median(turns.floor)}, 7);
        all.insert(all.end(), times.begin(), times.end());
    }
    report.note("Any of these clicks, 95th percentile", "ms",
                {bench::percentile(all, 0.95), bench::percentile(turns.floor, 0.95)});
}

/// Far more rows than anybody has, and still nobody waits.
void reportWithOwnApps(bench::Report &report, const Turns &turns) {
    for (std::size_t i = 0; i < names.size(); ++i)
        report.limit((std::string("With 1000 own applications: ") + names[i] + ", median").c_str(), "ms",
                     {bench::median(turns.times[i]), bench::median(turns.floor)}, 100);
}

} // namespace

int main(int argc, char **argv) {
    const bench::Run run(argc, argv);
    const QCoreApplication application(argc, argv);
    const auto applications = bench::openWindows(classes());
    Records records;
    bench::Report result;
    Turns builtIn;
    builtIn.take(run.choose(2, 6), records);
    reportBuiltIn(result, builtIn);
    records.addOwnApps();
    Turns withOwn;
    withOwn.take(run.choose(1, 2), records);
    reportWithOwnApps(result, withOwn);
    return result.exitCode();
}
