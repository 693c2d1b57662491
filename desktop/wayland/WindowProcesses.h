#pragma once

#include "desktop/applications/DesktopEntryIndex.h"
#include "desktop/sources/WindowSource.h"
#include "desktop/wayland/ProcessMatch.h"
#include "desktop/wayland/SocketOwners.h"
#include "desktop/wayland/X11WindowClasses.h"

#include <QHash>
#include <QSet>

#include <chrono>

namespace kestrin::desktop {

class WaylandConnection;

/// Finds out which processes windows belong to, where the compositor does not tell, and remembers it for as
/// long as a window and its process are there. Main thread only.
class WindowProcesses {
  public:
    /// Fills in what can be told. Whoever is a client already at the first call counts as new to nobody.
    void fillIn(QList<SourceWindow> &windows, const WaylandConnection &connection,
                const foundation::Deadline &deadline);
    /// Another compositor, or the same one anew.
    void beginAnew();

  private:
    using Time = std::chrono::steady_clock::time_point;
    struct Process {
        qint32 number;
        quint64 start;
    };

    /// Returns the numbers of those that have come since the last look.
    QSet<quint64> noteWindows(const QList<SourceWindow> &windows);
    void forgetTheGone(const QList<SourceWindow> &windows);
    QList<MatchCandidate> candidates(const QList<qint32> &clients, bool isOnX11,
                                     const foundation::Deadline &deadline);
    bool isNewClient(qint32 process) const;
    void judge(QList<MatchCandidate> &candidates, const QString &appId,
               const QList<SourceWindow> &windows) const;
    MatchQuestion questionAbout(const QString &appId);

    SocketOwners m_owners;
    DesktopEntryIndex m_entries;
    X11WindowClasses m_x11;
    /// By the number of the window.
    QHash<quint64, Process> m_known;
    /// The windows of the last look.
    QSet<quint64> m_seen;
    /// When a client was seen for the first time; long ago for those of the beginning.
    QHash<qint32, Time> m_clients;
    bool m_hasBegun = false;
};

} // namespace kestrin::desktop
