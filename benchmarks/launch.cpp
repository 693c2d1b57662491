// From the window of a protected application to the request that it close, with the runtime enforcing.

#include "benchmarks/Bench.h"
#include "benchmarks/SampleClient.h"
#include "desktop/Platform.h"
#include "desktop/defaults/JSONUserDefaults.h"
#include "engine/JSONMacActivityLogStore.h"
#include "runtime/FileStores.h"
#include "runtime/MacProtectionRuntime.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QSocketNotifier>
#include <QTemporaryDir>
#include <QTimer>

using namespace Qt::StringLiterals;
using namespace kestrin;
using namespace kestrin::foundation;
using namespace kestrin::engine;
using namespace kestrin::runtime;
using namespace kestrin::desktop;

namespace {

constexpr int launchCount = 200;

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

bench::ClosingTimes launch(const char *windowClass, bench::Closing closing) {
    bench::SampleClient client(windowClass, closing);
    bool told = false;
    QSocketNotifier notifier(client.descriptor(), QSocketNotifier::Read);
    QObject::connect(&notifier, &QSocketNotifier::activated, [&] { told = true; });
    processEventsUntil([&] { return told; });
    return client.times();
}

double elapsed(long long from, long long to) {
    return static_cast<double>(to - from) / 1e6;
}

/// Enforcing, with everything protected, over a log of its own with a few months in it.
class Enforcing {
  public:
    Enforcing() {
        for (int i = 0; i < 1000; ++i)
            m_log.append(MacProtectionEvent::create(systemTime(), MacProtectionEventKind::relaunchDetected,
                                                    u"Zoom relaunched while Privacy Mode is on."_s,
                                                    u"Zoom"_s));
        m_defaults.setStringArray(u"kestrin.mac.enabledModeIDs"_s, {});
        m_defaults.setBoolean(u"kestrin.mac.enforceActions"_s, true);
        m_runtime = std::make_unique<MacProtectionRuntime>(
            m_defaults, MacProtectionSurroundings{.supportFolder = m_folder.path(),
                                                  .workspace = *m_workspace,
                                                  .settingsStore = settingsStoreIn(m_folder.path()),
                                                  .logStore = activityLogIn(m_folder.path())});
        m_runtime->start(true, [](bool) {});
        QObject::connect(m_runtime.get(), &MacProtectionRuntime::recentEventsChanged, [this] { note(); });
    }

    /// Milliseconds from the window to the close request and to the log that tells of it, whichever is later.
    double reactTo(const char *windowClass) {
        m_loggedAt = 0;
        const bench::ClosingTimes times = launch(windowClass, bench::Closing::awaits);
        processEventsUntil([this] { return m_loggedAt != 0; });
        return elapsed(times.mapped, std::max(times.askedToClose, m_loggedAt));
    }

  private:
    void note() {
        const MacProtectionEvent newest = m_runtime->recentEvents().value(0);
        if (newest.kind != MacProtectionEventKind::quitRequested || newest.id == m_newest)
            return;
        m_newest = newest.id;
        m_loggedAt = std::chrono::steady_clock::now().time_since_epoch().count();
    }

    QTemporaryDir m_folder;
    JSONMacActivityLogStore m_log{QUrl::fromLocalFile(m_folder.filePath(u"activity-log.json"_s))};
    JSONUserDefaults m_defaults{m_folder.filePath(u"user-defaults.json"_s)};
    std::unique_ptr<Workspace> m_workspace = makeWorkspace();
    std::unique_ptr<MacProtectionRuntime> m_runtime;
    QUuid m_newest;
    long long m_loggedAt = 0;
};

} // namespace

int main(int argc, char **argv) {
    const QCoreApplication application(argc, argv);
    Enforcing enforcing;
    std::vector<double> measured;
    std::vector<double> floor;
    const int launches = bench::isQuick(argc, argv) ? launchCount / 5 : launchCount;
    for (int i = 0; i < launches; ++i) {
        const bench::ClosingTimes bare = launch("editor", bench::Closing::requests);
        floor.push_back(elapsed(bare.mapped, bare.askedToClose));
        measured.push_back(enforcing.reactTo("zoom"));
    }
    bench::Report report;
    report.limit("Launch to close request and its log, 99th percentile", "ms",
                 {bench::percentile(measured, 0.99), bench::percentile(floor, 0.99)}, 20);
    return report.exitCode();
}
