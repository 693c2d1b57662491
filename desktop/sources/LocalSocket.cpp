#include "desktop/sources/LocalSocket.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <utility>

namespace kestrin::desktop {

bool LocalSocket::connect(const QByteArray &path) {
    close();
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.isEmpty() || path.size() >= static_cast<qsizetype>(sizeof address.sun_path))
        return false;
    std::copy(path.cbegin(), path.cend(), static_cast<char *>(address.sun_path));
    m_descriptor = ::socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    if (m_descriptor < 0)
        return false;
    if (::connect(m_descriptor, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0)
        close();
    return isConnected();
}

void LocalSocket::close() {
    if (isConnected())
        ::close(handOn());
}

int LocalSocket::handOn() {
    return std::exchange(m_descriptor, -1);
}

qint32 LocalSocket::server() const {
    ucred owner{};
    socklen_t size = sizeof owner;
    return ::getsockopt(m_descriptor, SOL_SOCKET, SO_PEERCRED, &owner, &size) == 0 ? owner.pid : 0;
}

QByteArray LocalSocket::address() const {
    sockaddr_un address{};
    socklen_t size = sizeof address;
    if (::getpeername(m_descriptor, reinterpret_cast<sockaddr *>(&address), &size) != 0 ||
        size <= offsetof(sockaddr_un, sun_path))
        return {};
    const char *const path = static_cast<const char *>(address.sun_path);
    return {path, static_cast<qsizetype>(::strnlen(path, size - offsetof(sockaddr_un, sun_path)))};
}

} // namespace kestrin::desktop
