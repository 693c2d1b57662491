#pragma once

#include <QFile>
#include <QTemporaryDir>

#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstring>

namespace kestrin::samples {

/// Another process to whom anybody can connect, and that never says anything.
class StoppedServer {
  public:
    StoppedServer() {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::strncpy(address.sun_path, path().constData(), sizeof address.sun_path - 1);
        std::array<int, 2> ready{};
        if (::pipe(ready.data()) != 0)
            qFatal("There is no pipe.");
        m_process = ::fork();
        if (m_process == 0) {
            const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
            if (::bind(socket, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0 &&
                ::listen(socket, 5) == 0 && ::write(ready[1], "!", 1) == 1)
                ::pause();
            ::_exit(1);
        }
        ::close(ready[1]);
        char said = 0;
        if (::read(ready[0], &said, 1) != 1)
            qFatal("There is no server.");
        ::close(ready[0]);
    }
    StoppedServer(const StoppedServer &) = delete;
    StoppedServer &operator=(const StoppedServer &) = delete;
    ~StoppedServer() {
        ::kill(m_process, SIGKILL);
        ::waitpid(m_process, nullptr, 0);
    }

    QByteArray path() const { return QFile::encodeName(m_folder.filePath(QStringLiteral("socket"))); }

  private:
    QTemporaryDir m_folder;
    pid_t m_process = 0;
};

} // namespace kestrin::samples
