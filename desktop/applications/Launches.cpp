#include "desktop/applications/Launches.h"

#include "desktop/applications/ApplicationRecords.h"
#include "desktop/applications/DesktopPatience.h"
#include "desktop/applications/ProcessIdentity.h"

#include <algorithm>
#include <utility>

using namespace std::chrono_literals;

namespace kestrin::desktop {

using namespace foundation;
using namespace engine;

Launches::Launches(ApplicationRecords &records) : m_records(records) {
    connect(&m_wait, &QTimer::timeout, this, &Launches::wanted);
    m_heldBack.setSingleShot(true);
    connect(&m_heldBack, &QTimer::timeout, this, &Launches::findHeldBack);
}

Launches::~Launches() = default;

void Launches::connected(const Deadline &deadline) {
    m_isConnected = true;
    m_wait.stop();
    if (!m_subscribers.isEmpty())
        startWatching(deadline);
}

void Launches::disconnected() {
    stopWatching();
    m_isConnected = false;
    expectEvents();
    waitForDesktop();
}

void Launches::waitForDesktop() {
    if (!m_isConnected && !m_subscribers.isEmpty() && !m_wait.isActive())
        m_wait.start(desktopRetry);
}

std::unique_ptr<LaunchSubscription> Launches::subscribe(Workspace::LaunchHandler handler,
                                                        const Deadline &deadline) {
    // What was launched until now is the business of those who came before.
    if (m_finder && !m_subscribers.isEmpty())
        findLaunches(deadline);
    else if (!m_finder && m_isConnected)
        startWatching(deadline);
    // Who ends his subscription may be about to begin another one.
    const auto ended = [this] {
        QMetaObject::invokeMethod(this, &Launches::stopWithoutSubscribers, Qt::QueuedConnection);
    };
    auto subscription = m_subscribers.subscribe(std::move(handler), ended);
    waitForDesktop();
    return subscription;
}

void Launches::stopWithoutSubscribers() {
    if (m_subscribers.isEmpty())
        stop();
}

void Launches::stop() {
    stopWatching();
    m_launches.clear();
    m_wait.stop();
}

void Launches::startWatching(const Deadline &deadline) {
    m_finder = startFinding(deadline);
    expectEvents();
}

void Launches::stopWatching() {
    if (m_finder)
        stopFinding();
    m_finder.reset();
    m_limit = {};
    m_heldBack.stop();
}

void Launches::expectEvents() {
    if ((!m_finder && m_launches.isEmpty()) || std::exchange(m_expectsEvents, true))
        return;
    const auto take = [this] {
        m_expectsEvents = false;
        if (m_finder)
            takeEvents();
        else
            tellLaunches();
    };
    QMetaObject::invokeMethod(this, take, Qt::QueuedConnection);
}

void Launches::tellLaunches() {
    while (!m_launches.isEmpty()) {
        const auto [launch, application] = m_launches.takeFirst();
        m_records.refresh();
        if (const auto record = m_records.recordOf(application.process, application.claims))
            m_subscribers.tell(launch, *record);
    }
}

void Launches::findLaunches(const Deadline &deadline) {
    const auto now = std::chrono::steady_clock::now();
    const QList<LaunchedApplication> launches = m_finder->update(deadline);
    for (const LaunchedApplication &application : launches) {
        if (m_isElsewhere && m_isElsewhere(application.process))
            continue;
        if (m_limit.admits(application.process, startOfProcess(application.process), now))
            m_launches.append({m_subscribers.notice(), application});
    }
    if (const auto due = m_limit.nextDue())
        m_heldBack.start(std::max(std::chrono::ceil<std::chrono::milliseconds>(*due - now), 0ms));
    expectEvents();
}

void Launches::catchUp(const Deadline &deadline) {
    if (m_finder && m_finder->isBehind())
        findLaunches(deadline);
}

void Launches::findHeldBack() {
    if (!m_finder)
        return;
    for (const qint32 process : m_limit.takeDue(std::chrono::steady_clock::now()))
        m_finder->forget(process);
    findLaunches(Deadline(desktopPatience));
}

} // namespace kestrin::desktop
