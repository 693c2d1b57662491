#include "desktop/x11/X11Workspace.h"

#include "desktop/applications/ApplicationIdentity.h"
#include "desktop/applications/DesktopEntryIndex.h"
#include "desktop/applications/ProcessIdentity.h"
#include "desktop/quitting/QuitCommands.h"
#include "desktop/x11/DesktopReading.h"
#include "desktop/x11/LaunchWatcher.h"
#include "desktop/x11/X11Connector.h"
#include "engine/workspace/LaunchBroadcast.h"

#include <QFile>
#include <QSocketNotifier>
#include <QTimer>

#include <algorithm>
#include <vector>

using namespace Qt::StringLiterals;

namespace kestrin::desktop {

using namespace foundation;
using namespace engine;

namespace {

/// Asks the window manager to close a window, in the name of the user.
PendingReply<void> requestClosing(X11Connection &connection, quint32 window) {
    constexpr quint32 sourceIsUser = 2;
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = connection.atoms().closeWindow;
    message.data.data32[0] = XCB_CURRENT_TIME;
    message.data.data32[1] = sourceIsUser;
    const auto cookie =
        xcb_send_event_checked(connection.xcb(), 0, connection.root(),
                               XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                               reinterpret_cast<const char *>(&message));
    return {connection, cookie};
}

} // namespace

class X11Workspace::Private {
  public:
    explicit Private(const QString &display) : m_display(display), m_connector(QFile::encodeName(display)) {
        QObject::connect(&m_reconnection, &QTimer::timeout, &m_context,
                         [this] { connection(Deadline(serverPatience)); });
    }

    QList<WorkspaceApplication> runningApplications();
    Termination terminate(qint32 processIdentifier);
    QString limitation();

    std::unique_ptr<LaunchSubscription> subscribe(LaunchHandler handler);

  private:
    X11Connection *connection(const Deadline &deadline);
    void drop();
    std::optional<WorkspaceApplication> recordOf(const DesktopApplication &application);
    QuitTarget quitTarget(X11Connection &server, const DesktopApplication &application,
                          const Deadline &deadline);
    static bool closeWindows(X11Connection &server, const QList<DesktopWindow> &windows,
                             const Deadline &deadline);

    void startWatching();
    void stopWatching();
    void waitForServer();
    void takeEventsLater();
    void takeEvents(bool serverSpoke);
    void findLaunches();
    void stopWithoutSubscribers();

    QString m_display;
    X11Connector m_connector;
    DesktopEntryIndex m_entries;
    // The watcher uses the connection, so it goes first.
    std::unique_ptr<X11Connection> m_connection;
    std::unique_ptr<LaunchWatcher> m_watcher;
    std::unique_ptr<QSocketNotifier> m_notifier;
    /// Runs only while somebody wants to hear of launches and there is no server to tell of them.
    QTimer m_reconnection;
    LaunchBroadcast m_subscribers;
    QList<std::pair<LaunchBroadcast::Launch, DesktopApplication>> m_launches;
    bool m_takesEventsLater = false;
    /// What is queued for later is dropped with it.
    QObject m_context;
};

X11Connection *X11Workspace::Private::connection(const Deadline &deadline) {
    if (m_connection && m_connection->isBroken())
        drop();
    if (!m_connection) {
        m_connection = m_connector.connect(deadline);
        if (m_connection && !m_subscribers.isEmpty())
            startWatching();
        else if (!m_connection)
            waitForServer();
    }
    // What is said from now on may bring events along that no socket tells of any more.
    if (m_watcher)
        takeEventsLater();
    return m_connection.get();
}

void X11Workspace::Private::drop() {
    stopWatching();
    m_connection.reset();
    waitForServer();
}

void X11Workspace::Private::waitForServer() {
    if (!m_subscribers.isEmpty() && !m_reconnection.isActive())
        m_reconnection.start(std::chrono::minutes(1));
}

QList<WorkspaceApplication> X11Workspace::Private::runningApplications() {
    const Deadline deadline(serverPatience);
    X11Connection *const server = connection(deadline);
    const auto reading = server ? DesktopReading::take(*server, deadline) : std::nullopt;
    if (!reading)
        return {};
    m_entries.refresh();
    QList<WorkspaceApplication> records;
    for (const DesktopApplication &application : reading->applications()) {
        if (auto record = recordOf(application))
            records.append(*std::move(record));
    }
    return records;
}

std::optional<WorkspaceApplication> X11Workspace::Private::recordOf(const DesktopApplication &application) {
    const auto process = ProcessIdentity::of(application.process);
    if (process.forwardsWindows())
        return std::nullopt;
    const auto identity =
        ApplicationIdentity::of(application.representative().facts.claims, process, m_entries);
    WorkspaceApplication record;
    if (!identity.name.isEmpty())
        record.localizedName = identity.name;
    record.processIdentifier = application.process;
    record.bundleIdentifier = identity.identifier;
    record.executablePath = process.executablePath;
    return record;
}

Termination X11Workspace::Private::terminate(qint32 processIdentifier) {
    const Deadline deadline(serverPatience);
    X11Connection *const server = connection(deadline);
    const auto reading = server ? DesktopReading::take(*server, deadline) : std::nullopt;
    if (!reading)
        return Termination::gone;
    for (const DesktopApplication &application : reading->applications()) {
        if (application.process != processIdentifier || !recordOf(application))
            continue;
        const bool isAsked = acceptsQuitCommand(quitTarget(*server, application, deadline)) ||
                             closeWindows(*server, application.windows, deadline);
        return isAsked ? Termination::delivered : Termination::refused;
    }
    return Termination::gone;
}

QuitTarget X11Workspace::Private::quitTarget(X11Connection &server, const DesktopApplication &application,
                                             const Deadline &deadline) {
    QuitTarget target;
    target.process = application.process;
    target.gtkApplications = gtkApplicationsOf(server, application.windows, deadline);
    target.names.append(ProcessIdentity::of(application.process).executableName());
    m_entries.refresh();
    if (const auto record = recordOf(application))
        target.names.append(record->localizedName.value_or(QString()));
    return target;
}

/// Whether at least one of the windows has been asked to close.
bool X11Workspace::Private::closeWindows(X11Connection &server, const QList<DesktopWindow> &windows,
                                         const Deadline &deadline) {
    if (windowManagerOf(server, deadline) != WindowManager::closesWindows)
        return false;
    // A window manager may kill the owner of a window that does not take part; such a window is left alone.
    std::vector<PendingReply<void>> requests;
    for (const quint32 window : windowsThatTakePartInClosing(server, windows, deadline))
        requests.push_back(requestClosing(server, window));
    PendingReply<xcb_get_input_focus_reply_t> end(server, xcb_get_input_focus(server.xcb()));
    server.flush();
    // The server has handled the requests when it answers what comes after them.
    if (!end.take(deadline))
        return false;
    const auto isDelivered = [&](PendingReply<void> &request) {
        X11Connection::Outcome outcome{};
        request.take(deadline, outcome);
        return outcome == X11Connection::Outcome::answered;
    };
    return std::count_if(requests.begin(), requests.end(), isDelivered) > 0;
}

QString X11Workspace::Private::limitation() {
    const QString consequence = u", so no running applications can be seen."_s;
    if (m_display.isEmpty() && qEnvironmentVariableIsEmpty("DISPLAY")) {
        return (qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")
                    ? u"There is no desktop session here"_s
                    : u"This Wayland session has no X11 display"_s) +
               consequence;
    }
    const QString display = m_display.isEmpty() ? qEnvironmentVariable("DISPLAY") : m_display;
    const Deadline deadline(serverPatience);
    X11Connection *const server = connection(deadline);
    if (!server)
        return u"The display \""_s + display + u"\" cannot be reached"_s + consequence;
    if (windowManagerOf(*server, deadline) != WindowManager::absent)
        return {};
    const bool isSilent = deadline.remaining().count() == 0;
    return (isSilent ? u"The display \""_s + display + u"\" does not answer"_s
                     : u"No window manager on the display \""_s + display +
                           u"\" tells which windows there are"_s) +
           consequence;
}

std::unique_ptr<LaunchSubscription> X11Workspace::Private::subscribe(LaunchHandler handler) {
    if (connection(Deadline(serverPatience))) {
        // What was launched until now is the business of those who came before.
        if (m_watcher)
            findLaunches();
        else
            startWatching();
    }
    auto subscription = m_subscribers.subscribe(std::move(handler), [this] { stopWithoutSubscribers(); });
    if (!m_connection)
        waitForServer();
    return subscription;
}

void X11Workspace::Private::stopWithoutSubscribers() {
    if (!m_subscribers.isEmpty())
        return;
    stopWatching();
    m_reconnection.stop();
}

void X11Workspace::Private::startWatching() {
    m_reconnection.stop();
    m_watcher = std::make_unique<LaunchWatcher>(*m_connection);
    m_notifier = std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(m_connection->xcb()),
                                                   QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, &m_context, [this] { takeEvents(true); });
    takeEventsLater();
}

void X11Workspace::Private::stopWatching() {
    // Perhaps in the middle of the notifier's own signal.
    if (m_notifier) {
        m_notifier->setEnabled(false);
        m_notifier.release()->deleteLater();
    }
    m_watcher.reset();
    m_launches.clear();
}

void X11Workspace::Private::takeEventsLater() {
    if (std::exchange(m_takesEventsLater, true))
        return;
    QMetaObject::invokeMethod(
        &m_context,
        [this] {
            m_takesEventsLater = false;
            takeEvents(false);
        },
        Qt::QueuedConnection);
}

void X11Workspace::Private::takeEvents(bool serverSpoke) {
    if (!m_watcher)
        return;
    // A server that did not answer is asked again once it says anything.
    bool isConcerned = serverSpoke && m_watcher->isBehind();
    while (const XcbMessage<xcb_generic_event_t> event{xcb_poll_for_event(m_connection->xcb())})
        isConcerned = m_watcher->concerns(*event) || isConcerned;
    if (m_connection->isBroken()) {
        drop();
        return;
    }
    if (isConcerned)
        findLaunches();
    while (!m_launches.isEmpty()) {
        const auto [launch, application] = m_launches.takeFirst();
        m_entries.refresh();
        if (const auto record = recordOf(application))
            m_subscribers.tell(launch, *record);
    }
}

void X11Workspace::Private::findLaunches() {
    const QList<DesktopApplication> launches = m_watcher->update();
    for (const DesktopApplication &application : launches)
        m_launches.append({m_subscribers.notice(), application});
    takeEventsLater();
}

X11Workspace::X11Workspace(const QString &display) : d(std::make_unique<Private>(display)) {}

X11Workspace::~X11Workspace() = default;

QList<WorkspaceApplication> X11Workspace::runningApplications() {
    return d->runningApplications();
}

Termination X11Workspace::terminate(qint32 processIdentifier) {
    return d->terminate(processIdentifier);
}

std::unique_ptr<LaunchSubscription> X11Workspace::subscribeToLaunches(LaunchHandler handler) {
    return d->subscribe(std::move(handler));
}

QString X11Workspace::limitation() {
    return d->limitation();
}

} // namespace kestrin::desktop
