#include "desktop/x11/LaunchWatcher.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace kestrin::desktop {

using namespace foundation;

LaunchWatcher::LaunchWatcher(X11Connection &connection, const Deadline &deadline) : m_connection(connection) {
    // The events come first, so that nothing happens between the reading and them.
    select(m_connection.root(), XCB_EVENT_MASK_PROPERTY_CHANGE);
    LaunchWatcher::update(deadline);
}

LaunchWatcher::~LaunchWatcher() {
    for (const quint32 window : std::as_const(m_followed))
        select(window, XCB_EVENT_MASK_NO_EVENT);
    select(m_connection.root(), XCB_EVENT_MASK_NO_EVENT);
    m_connection.flush();
}

bool LaunchWatcher::concerns(const xcb_generic_event_t &event) const {
    const auto &hints = m_connection.hints();
    switch (event.response_type & 0x7f) {
    case XCB_PROPERTY_NOTIFY: {
        const auto &change = reinterpret_cast<const xcb_property_notify_event_t &>(event);
        if (change.window == m_connection.root())
            return change.atom == hints._NET_CLIENT_LIST;
        return change.atom == hints._NET_WM_WINDOW_TYPE || change.atom == hints._NET_WM_STATE ||
               change.atom == m_connection.atoms().wmState;
    }
    case XCB_UNMAP_NOTIFY:
    case XCB_DESTROY_NOTIFY:
        return !m_unlisted.isEmpty();
    default:
        return false;
    }
}

QList<LaunchedApplication> LaunchWatcher::update(const Deadline &deadline) {
    QList<LaunchedApplication> launches;
    bool again = true;
    // A window that is followed from now on may have changed since it was read.
    for (int round = 0; again && round < 3; ++round) {
        const auto reading = DesktopReading::take(m_connection, deadline);
        m_isBehind = !reading;
        again = reading && compare(*reading, deadline, launches);
        // What the first answer tells of is no launch, also where it comes late.
        if (reading && !std::exchange(m_hasBegun, true))
            launches.clear();
    }
    return launches;
}

/// Returns whether there are windows whose events were not followed before.
bool LaunchWatcher::compare(const DesktopReading &reading, const Deadline &deadline,
                            QList<LaunchedApplication> &launches) {
    QHash<qint32, QList<quint32>> now;
    for (const DesktopApplication &application : reading.applications()) {
        QList<quint32> &windows = now[application.process];
        for (const DesktopWindow &window : application.windows)
            windows.append(window.id);
    }
    // Who has nothing but new windows may have been gone in between.
    forgetEnded(now, reading.windows, deadline);
    for (const DesktopApplication &application : reading.applications()) {
        if (!m_known.contains(application.process))
            launches.append({application.process, application.claims()});
    }
    m_known.insert(now);
    return followWindows(reading);
}

void LaunchWatcher::forgetEnded(const QHash<qint32, QList<quint32>> &now, const QList<DesktopWindow> &listed,
                                const Deadline &deadline) {
    QSet<quint32> listedIds;
    for (const DesktopWindow &window : listed)
        listedIds.insert(window.id);
    const auto isStillShown = [&now](qint32 process, const QList<quint32> &windows) {
        const QList<quint32> shown = now.value(process);
        return std::any_of(windows.cbegin(), windows.cend(),
                           [&shown](quint32 window) { return shown.contains(window); });
    };
    m_unlisted.clear();
    QList<quint32> missing;
    for (auto known = m_known.cbegin(); known != m_known.cend(); ++known) {
        if (isStillShown(known.key(), *known))
            continue;
        std::copy_if(known->cbegin(), known->cend(), std::back_inserter(missing),
                     [&](quint32 window) { return !listedIds.contains(window); });
    }
    if (!missing.isEmpty()) {
        const QList<quint32> inUse = windowsInUse(m_connection, missing, deadline);
        m_unlisted = QSet<quint32>(inUse.cbegin(), inUse.cend());
    }
    m_known.removeIf([&](const auto &known) {
        return !isStillShown(known.key(), known.value()) &&
               std::none_of(known.value().cbegin(), known.value().cend(),
                            [this](quint32 window) { return m_unlisted.contains(window); });
    });
}

bool LaunchWatcher::followWindows(const DesktopReading &reading) {
    QSet<quint32> wanted = m_unlisted;
    for (const DesktopWindow &window : reading.windows) {
        if (!window.counts())
            wanted.insert(window.id);
    }
    for (const quint32 window : std::as_const(m_followed)) {
        if (!wanted.contains(window))
            select(window, XCB_EVENT_MASK_NO_EVENT);
    }
    bool more = false;
    for (const quint32 window : std::as_const(wanted)) {
        if (m_followed.contains(window))
            continue;
        select(window, XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY);
        more = true;
    }
    m_followed = std::move(wanted);
    m_connection.flush();
    return more;
}

void LaunchWatcher::select(quint32 window, quint32 events) {
    // A window that has gone meanwhile gives an error event, which nobody looks at.
    xcb_change_window_attributes(m_connection.xcb(), window, XCB_CW_EVENT_MASK, &events);
}

} // namespace kestrin::desktop
