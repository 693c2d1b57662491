// From the window of a protected application to the request that it close and the log that tells of it, with
// the runtime enforcing.

#include "benchmarks/BareDesktop.h"
#include "benchmarks/BareLog.h"
#include "benchmarks/Bench.h"
#include "benchmarks/Run.h"
#include "benchmarks/SampleLog.h"
#include "benchmarks/SampleWindows.h"
#include "desktop/Platform.h"
#include "desktop/defaults/JSONUserDefaults.h"
#include "runtime/FileStores.h"
#include "runtime/MacProtectionRuntime.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTemporaryDir>
#include <QTimer>

using namespace Qt::StringLiterals;
using namespace kestrin;
using namespace kestrin::foundation;
using namespace kestrin::engine;
using namespace kestrin::runtime;
using namespace kestrin::desktop;

namespace {

/// A few months.
constexpr int loggedEvents = 1000;

long long now() {
    return std::chrono::nanoseconds(std::chrono::steady_clock::now().time_since_epoch()).count();
}

/// Runs the event loop until `isDone`, which is asked after every event, or for ten seconds.
template <typename IsDone>
void processEventsUntil(IsDone isDone) {
    QTimer patience;
    patience.setSingleShot(true);
    patience.start(10'000);
    while (!isDone()) {
        if (!patience.isActive())
            bench::giveUp("the application was not asked to quit.");
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
}

/// An application with one window, which tells its times.
class Application {
  public:
    explicit Application(const QString &windowClass)
        : m_application(bench::optionsOf(windowClass) + u" --times"_s) {}

    /// Milliseconds from the window to the request to close it and to the time that `loggedAt` tells,
    /// whichever is later; 0 stands for a log that is not written yet.
    double reaction(const long long &loggedAt) {
        processEventsUntil([&] { return loggedAt != 0 && !m_application.isRunning(); });
        const long long askedAt = m_application.told(u"asked-at"_s).toLongLong();
        const long long shownAt = m_application.told(u"shown-at"_s).toLongLong();
        return static_cast<double>(std::max(askedAt, loggedAt) - shownAt) / 1e6;
    }

  private:
    samples::SampleApp m_application;
};

/// The floor, which is what nobody can do without: a window that the desktop lists is asked to close,
/// and the log is written anew before and after it, as whoever wants to tell of both has to.
class BareEnforcing {
  public:
    explicit BareEnforcing(const QString &log) : m_log(log) {}

    double reactTo(const QString &windowClass) {
        // The last one's may still have to go.
        m_desktop->waitForWindows(0);
        Application application(windowClass);
        const std::uint64_t window = m_desktop->waitForWindows(1).front();
        m_log.replace();
        m_desktop->requestClosing(window);
        m_log.replace();
        return application.reaction(now());
    }

  private:
    std::unique_ptr<bench::BareDesktop> m_desktop = bench::BareDesktop::ofEnvironment();
    bench::BareLog m_log;
};

/// The runtime with everything protected.
class Enforcing {
  public:
    explicit Enforcing(const QString &folder) : m_defaults(folder + u"/user-defaults.json"_s) {
        m_defaults.setStringArray(u"kestrin.mac.enabledModeIDs"_s, {});
        m_defaults.setBoolean(u"kestrin.mac.enforceActions"_s, true);
        m_runtime = std::make_unique<MacProtectionRuntime>(
            m_defaults, MacProtectionSurroundings{.workspace = *m_workspace,
                                                  .settingsStore = settingsStoreIn(folder),
                                                  .logStore = activityLogIn(folder),
                                                  .ownApplications = ownApplicationsIn(folder)});
        m_runtime->start(true, [](bool) { return Outcome(); });
        QObject::connect(m_runtime.get(), &MacProtectionRuntime::recentEventsChanged, [this] { note(); });
    }

    double reactTo(const QString &windowClass) {
        m_loggedAt = 0;
        return Application(windowClass).reaction(m_loggedAt);
    }

  private:
    void note() {
        const MacProtectionEvent newest = m_runtime->recentEvents().value(0);
        if (newest.kind != MacProtectionEventKind::quitRequested || newest.id == m_newest)
            return;
        m_newest = newest.id;
        m_loggedAt = now();
    }

    JSONUserDefaults m_defaults;
    std::unique_ptr<Workspace> m_workspace = makeWorkspace();
    std::unique_ptr<MacProtectionRuntime> m_runtime;
    QUuid m_newest;
    long long m_loggedAt = 0;
};

} // namespace

int main(int argc, char **argv) {
    const bench::Run run(argc, argv);
    const QCoreApplication application(argc, argv);
    const QTemporaryDir folder;
    bench::writeLog(folder.filePath(u"activity-log.json"_s), loggedEvents);
    const QTemporaryDir bareFolder;
    bench::writeLog(bareFolder.filePath(u"activity-log.json"_s), loggedEvents);
    BareEnforcing bare(bareFolder.filePath(u"activity-log.json"_s));
    Enforcing enforcing(folder.path());
    std::vector<double> measured;
    std::vector<double> floor;
    for (int i = 0; i < run.choose(40, 300); ++i) {
        floor.push_back(bare.reactTo(u"editor"_s));
        measured.push_back(enforcing.reactTo(u"zoom"_s));
    }
    const std::string label = bench::BareDesktop::label();
    bench::Report report;
    report.note("Launch to close request and its log, median" + label, "ms",
                {bench::median(measured), bench::median(floor)});
    report.ratio("Launch to close request and its log, 99th %" + label, "ms",
                 {bench::percentile(measured, 0.99), bench::percentile(floor, 0.99)}, 2);
    return report.exitCode();
}
