// From the window of a protected application to the request that it close and the log that tells of it, with
// the runtime enforcing.

#include "benchmarks/BareLog.h"
#include "benchmarks/Bench.h"
#include "benchmarks/Run.h"
#include "benchmarks/SampleLog.h"
#include "benchmarks/SampleWindows.h"
#include "benchmarks/XDisplay.h"
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

/// The floor, which is what nobody can do without: a window that the window manager lists is asked to close,
/// and the log is written anew before and after it, as whoever wants to tell of both has to.
class BareEnforcing {
  public:
    explicit BareEnforcing(const QString &log) : m_log(log) {
        const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_change_window_attributes(m_display.xcb(), m_display.root(), XCB_CW_EVENT_MASK, &events);
        m_display.roundTrip();
    }

    double reactTo(const QString &windowClass) {
        // The last one's may still have to go.
        waitForWindows(0);
        Application application(windowClass);
        const std::uint32_t window = waitForWindows(1).front();
        m_log.replace();
        requestClosing(window);
        m_log.replace();
        return application.reaction(now());
    }

  private:
    std::vector<std::uint32_t> waitForWindows(std::size_t count) {
        // What has happened up to now is in the list.
        while (const bench::XDisplay::Event event{xcb_poll_for_event(m_display.xcb())}) {
        }
        for (;;) {
            const std::vector<std::uint32_t> windows = m_display.windowList();
            if (windows.size() == count)
                return windows;
            const bench::XDisplay::Event event(xcb_wait_for_event(m_display.xcb()));
            if (!event)
                bench::giveUp("the X server has gone.");
        }
    }

    void requestClosing(std::uint32_t window) {
        xcb_client_message_event_t message{};
        message.response_type = XCB_CLIENT_MESSAGE;
        message.format = 32;
        message.window = window;
        message.type = m_closeWindow;
        message.data.data32[1] = 2;
        xcb_send_event(m_display.xcb(), 0, m_display.root(),
                       XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                       reinterpret_cast<const char *>(&message));
        xcb_flush(m_display.xcb());
    }

    bench::XDisplay m_display;
    std::uint32_t m_closeWindow = m_display.atom("_NET_CLOSE_WINDOW");
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
                                                  .logStore = activityLogIn(folder)});
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
    bench::Report report;
    report.note("Launch to close request and its log, median", "ms",
                {bench::median(measured), bench::median(floor)});
    report.ratio("Launch to close request and its log, 99th percentile", "ms",
                 {bench::percentile(measured, 0.99), bench::percentile(floor, 0.99)}, 2);
    return report.exitCode();
}
