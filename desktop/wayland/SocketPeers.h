// Who is connected to a local socket, as the kernel's socket diagnosis tells everybody.
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QHash>
#include <QList>
#include <QSet>

namespace kestrin::desktop {

/// By the address that its owner gave to a socket, the sockets at the other ends of its connections, by their
/// inodes. An address that begins with NUL is an abstract one. Only those in the same network namespace are
/// known, so not those of a sandbox without a network. Empty where the kernel does not tell.
using SocketPeers = QHash<QByteArray, QSet<quint32>>;

SocketPeers peersOfSockets(const QList<QByteArray> &addresses);

/// Takes what one answer of the kernel tells. False when that was the end.
bool takeSocketAnswer(QByteArrayView answer, const QList<QByteArray> &addresses, SocketPeers &peers);

/// The inode of an open file that is a socket, from its name in /proc/PID/fd; 0 for others.
quint32 inodeOfSocket(QByteArrayView name);

} // namespace kestrin::desktop
