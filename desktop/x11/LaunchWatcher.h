// Which processes have become applications.
#pragma once

#include "desktop/applications/Launches.h"
#include "desktop/x11/DesktopReading.h"

#include <QHash>
#include <QSet>

namespace kestrin::desktop {

/// Compares the desktop with what it was. A process that has become an application since is a launch,
/// whatever it was before, and once however many windows it shows.
///
/// Windows that are hidden or come to the front are none. How often a process counts that comes back is the
/// business of LaunchLimit.
///
/// An application is remembered until the last of its windows is gone or hidden for good. A window that
/// merely nobody lists, because the window manager has gone or is starting again, is neither.
///
/// What runs at construction is no launch. Main thread only; the connection outlives the watcher.
class LaunchWatcher final : public LaunchFinder {
  public:
    LaunchWatcher(X11Connection &connection, const foundation::Deadline &deadline);
    /// Takes back its interest in the connection's events.
    ~LaunchWatcher() override;
    LaunchWatcher(const LaunchWatcher &) = delete;
    LaunchWatcher &operator=(const LaunchWatcher &) = delete;

    /// Whether the event may be about a launch, so that `update` has something to find.
    bool concerns(const xcb_generic_event_t &event) const;

    /// Reads the desktop and returns the launches since the last call. When the server does not answer in
    /// time, nothing changes, and the next call finds what this one did not.
    QList<LaunchedApplication> update(const foundation::Deadline &deadline) override;

    bool knows(qint32 process) const override { return m_known.contains(process); }

    void forget(qint32 process) override { m_known.remove(process); }

    bool isBehind() const override { return m_isBehind; }

  private:
    bool compare(const DesktopReading &reading, const foundation::Deadline &deadline,
                 QList<LaunchedApplication> &launches);
    void forgetEnded(const QHash<qint32, QList<quint32>> &now, const QList<DesktopWindow> &listed,
                     const foundation::Deadline &deadline);
    bool followWindows(const DesktopReading &reading);
    void select(quint32 window, quint32 events);

    X11Connection &m_connection;
    /// The applications and their windows that count.
    QHash<qint32, QList<quint32>> m_known;
    /// The windows whose own events tell of something that the list of windows does not: those that may come
    /// to count, and those that nobody lists.
    QSet<quint32> m_followed;
    QSet<quint32> m_unlisted;
    bool m_hasBegun = false;
    bool m_isBehind = false;
};

} // namespace kestrin::desktop
