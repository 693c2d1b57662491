#include "cli/Output.h"

#include "cli/TerminationSignals.h"

#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace kestrin {

namespace {

/// For descriptors that somebody else made non-blocking.
void waitUntilWritable(int descriptor) {
    pollfd request{descriptor, POLLOUT, 0};
    ::poll(&request, 1, -1);
}

} // namespace

bool Output::flush() {
    const QByteArray bytes = std::exchange(m_pending, {});
    qsizetype written = 0;
    while (m_error == 0 && written < bytes.size()) {
        const ssize_t got = ::write(m_descriptor, bytes.constData() + written,
                                    static_cast<std::size_t>(bytes.size() - written));
        if (got >= 0)
            written += got;
        else if (errno == EAGAIN || errno == EWOULDBLOCK)
            waitUntilWritable(m_descriptor);
        else if (errno != EINTR)
            m_error = errno;
        // Who is told to end does not wait for a reader that has stopped reading.
        if (got < 0 && TerminationSignals::arrived())
            break;
    }
    return m_error == 0;
}

bool Output::isUnread() const {
    return m_error == EPIPE;
}

QString Output::problem() const {
    return QString::fromLocal8Bit(std::strerror(m_error));
}

} // namespace kestrin
