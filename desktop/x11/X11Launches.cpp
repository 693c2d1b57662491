#include "desktop/x11/X11Launches.h"

#include "desktop/applications/ApplicationRecords.h"
#include "desktop/applications/ProcessIdentity.h"
#include "desktop/x11/LaunchWatcher.h"

#include <QSocketNotifier>

#include <algorithm>
#include <utility>

using namespace std::chrono_literals;

namespace kestrin::desktop {

using namespace engine;

X11Launches::X11Launches(ApplicationRecords &records) : m_records(records) {
    connect(&m_wait, &QTimer::timeout, this, &X11Launches::serverWanted);
    m_heldBack.setSingleShot(true);
    connect(&m_heldBack, &QTimer::timeout, this, &X11Launches::findHeldBack);
}

X11Launches::~X11Launches() = default;

void X11Launches::connected(X11Connection &connection) {
    m_connection = &connection;
    m_wait.stop();
    if (!m_subscribers.isEmpty())
        startWatching();
}

void X11Launches::disconnected() {
    stopWatching();
    m_connection = nullptr;
    waitForServer();
}

void X11Launches::waitForServer() {
    if (!m_connection && !m_subscribers.isEmpty() && !m_wait.isActive())
        m_wait.start(std::chrono::minutes(1));
}

std::unique_ptr<LaunchSubscription> X11Launches::subscribe(Workspace::LaunchHandler handler) {
    // What was launched until now is the business of those who came before.
    if (m_watcher && !m_subscribers.isEmpty())
        findLaunches();
    else if (!m_watcher && m_connection)
        startWatching();
    // Who ends his subscription may be about to begin another one.
    const auto ended = [this] {
        QMetaObject::invokeMethod(this, &X11Launches::stopWithoutSubscribers, Qt::QueuedConnection);
    };
    auto subscription = m_subscribers.subscribe(std::move(handler), ended);
    waitForServer();
    return subscription;
}

void X11Launches::stopWithoutSubscribers() {
    if (!m_subscribers.isEmpty())
        return;
    stopWatching();
    m_wait.stop();
}

void X11Launches::startWatching() {
    m_watcher = std::make_unique<LaunchWatcher>(*m_connection);
    m_notifier = std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(m_connection->xcb()),
                                                   QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, [this] { takeEvents(true); });
    expectEvents();
}

void X11Launches::stopWatching() {
    // Perhaps in the middle of the notifier's own signal.
    if (m_notifier) {
        m_notifier->setEnabled(false);
        m_notifier.release()->deleteLater();
    }
    m_watcher.reset();
    m_launches.clear();
    m_limit = {};
    m_heldBack.stop();
}

void X11Launches::expectEvents() {
    if (!m_watcher || std::exchange(m_expectsEvents, true))
        return;
    const auto take = [this] {
        m_expectsEvents = false;
        takeEvents(false);
    };
    QMetaObject::invokeMethod(this, take, Qt::QueuedConnection);
}

void X11Launches::takeEvents(bool serverSpoke) {
    if (!m_watcher)
        return;
    // A server that did not answer is asked again once it says anything.
    bool isConcerned = serverSpoke && m_watcher->isBehind();
    while (const XcbMessage<xcb_generic_event_t> event{xcb_poll_for_event(m_connection->xcb())})
        isConcerned = m_watcher->concerns(*event) || isConcerned;
    if (m_connection->isBroken()) {
        Q_EMIT serverLost();
        return;
    }
    if (isConcerned)
        findLaunches();
    while (!m_launches.isEmpty()) {
        const auto [launch, application] = m_launches.takeFirst();
        m_records.refresh();
        if (const auto record = m_records.recordOf(application.process, application.claims()))
            m_subscribers.tell(launch, *record);
    }
}

void X11Launches::findLaunches() {
    const auto now = std::chrono::steady_clock::now();
    const QList<DesktopApplication> launches = m_watcher->update();
    for (const DesktopApplication &application : launches) {
        if (m_limit.admits(application.process, startOfProcess(application.process), now))
            m_launches.append({m_subscribers.notice(), application});
    }
    if (const auto due = m_limit.nextDue())
        m_heldBack.start(std::max(std::chrono::ceil<std::chrono::milliseconds>(*due - now), 0ms));
    expectEvents();
}

void X11Launches::findHeldBack() {
    if (!m_watcher)
        return;
    for (const qint32 process : m_limit.takeDue(std::chrono::steady_clock::now()))
        m_watcher->forget(process);
    findLaunches();
}

} // namespace kestrin::desktop
