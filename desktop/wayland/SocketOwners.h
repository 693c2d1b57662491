#pragma once

#include <QHash>
#include <QList>
#include <QSet>

namespace kestrin::desktop {

/// Finds the processes of this user to whom sockets belong. Where a socket was inherited, the process that
/// began first counts. Main thread only.
class SocketOwners {
  public:
    /// Each once, in the order of their numbers. Sockets of others, and of processes that cannot be looked
    /// at, have no owner here.
    QList<qint32> of(const QSet<quint32> &inodes);

  private:
    struct Owner {
        qint32 process;
        int descriptor;
    };

    void search(const QSet<quint32> &inodes);

    /// Those that were found the last time. Whether it is still so is looked at each time, which is much
    /// cheaper than to search all processes.
    QHash<quint32, Owner> m_owners;
};

} // namespace kestrin::desktop
