#include "cli/Output.h"

#include "foundation/PrivateFile.h"

#include "cli/TerminationSignals.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstring>
#include <string_view>

namespace kestrin::cli {

using namespace foundation;

bool Output::waitForReader() const {
    std::array requests{pollfd{m_descriptor, POLLOUT, 0},
                        pollfd{TerminationSignals::descriptor(), POLLIN, 0}};
    while (::poll(requests.data(), requests.size(), -1) < 0 && errno == EINTR) {
    }
    // Whatever is wrong with the stream, the write will tell.
    return requests.front().revents != 0;
}

bool Output::flush() {
    const QByteArray bytes = std::exchange(m_pending, {});
    std::string_view rest = viewOf(bytes);
    while (m_error == 0 && !rest.empty() && waitForReader()) {
        // A pipe that is ready takes this much at once; more could block, and then no signal would be heard.
        const ssize_t written =
            ::write(m_descriptor, rest.data(), std::min<std::size_t>(rest.size(), PIPE_BUF));
        if (written >= 0)
            rest.remove_prefix(static_cast<std::size_t>(written));
        else if (errno != EINTR && errno != EAGAIN && errno != EWOULDBLOCK)
            m_error = errno;
    }
    return m_error == 0;
}

bool Output::isUnread() const {
    return m_error == EPIPE;
}

QString Output::problem() const {
    return QString::fromLocal8Bit(std::strerror(m_error));
}

} // namespace kestrin::cli
