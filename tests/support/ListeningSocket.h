#pragma once

#include <QFile>
#include <QTemporaryDir>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>

namespace kestrin::samples {

/// To which anybody can connect. It never says anything, unless the test accepts somebody and does.
class ListeningSocket {
  public:
    ListeningSocket() {
        std::strncpy(m_address.sun_path, path().constData(), sizeof m_address.sun_path - 1);
        if (::bind(m_descriptor, address(), sizeof m_address) != 0 || ::listen(m_descriptor, 5) != 0)
            qFatal("There is no socket.");
    }
    ListeningSocket(const ListeningSocket &) = delete;
    ListeningSocket &operator=(const ListeningSocket &) = delete;
    ~ListeningSocket() { ::close(m_descriptor); }

    QByteArray path() const { return QFile::encodeName(m_folder.filePath(QStringLiteral("socket"))); }
    int descriptor() const { return m_descriptor; }
    /// The descriptor of a new connection, for the caller to close; -1 when there is none.
    int connect() const {
        const int client = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        return ::connect(client, address(), sizeof m_address) == 0 ? client : -1;
    }

  private:
    const sockaddr *address() const { return reinterpret_cast<const sockaddr *>(&m_address); }

    QTemporaryDir m_folder;
    const int m_descriptor = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un m_address{AF_UNIX, {}};
};

} // namespace kestrin::samples
