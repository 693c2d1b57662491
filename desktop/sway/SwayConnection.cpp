#include "desktop/sway/SwayConnection.h"

#include <poll.h>
#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <utility>

using namespace std::chrono_literals;

namespace kestrin::desktop {

using namespace foundation;

namespace {

constexpr QByteArrayView magic = "i3-ipc";
constexpr quint32 windowEvent = 0x80000003;
constexpr qsizetype headerLength = magic.size() + 8;

template <typename Value>
void append(QByteArray &bytes, Value value) {
    bytes.append(reinterpret_cast<const char *>(&value), sizeof value);
}

quint32 numberAt(const QByteArray &bytes, qsizetype at) {
    quint32 number = 0;
    std::memcpy(&number, bytes.constData() + at, sizeof number);
    return number;
}

} // namespace

bool SwayConnection::open(const QByteArray &path) {
    close();
    m_wasHungUp = false;
    m_server = m_socket.connect(path) ? m_socket.server() : 0;
    return isOpen();
}

void SwayConnection::close() {
    m_socket.close();
    m_received.clear();
}

std::optional<QByteArray> SwayConnection::ask(Message message, const QByteArray &payload,
                                              const Deadline &deadline) {
    if (!isOpen())
        return std::nullopt;
    const auto kind = static_cast<quint32>(message);
    QByteArray bytes = magic.toByteArray();
    append(bytes, static_cast<quint32>(payload.size()));
    append(bytes, kind);
    bytes += payload;
    bool goesOn = send(bytes, deadline);
    // Whoever talks without end is no reason to go on listening.
    while (goesOn && deadline.remaining() > 0ms && waitFor(POLLIN, deadline)) {
        goesOn = receive();
        auto answer = nextAnswer();
        goesOn = goesOn && isOpen();
        if (answer && answer->kind == kind) {
            // No socket tells of the events that came along.
            while (nextAnswer()) {
            }
            return std::move(answer->payload);
        }
    }
    close();
    return std::nullopt;
}

void SwayConnection::takeEvents() {
    if (!isOpen())
        return;
    const bool goesOn = receive();
    // An answer that nobody waits for any more.
    while (nextAnswer()) {
    }
    if (!goesOn)
        close();
}

bool SwayConnection::send(const QByteArray &bytes, const Deadline &deadline) {
    for (qsizetype sent = 0; sent < bytes.size();) {
        const ssize_t more = ::send(descriptor(), bytes.constData() + sent,
                                    static_cast<std::size_t>(bytes.size() - sent), MSG_NOSIGNAL);
        if (more >= 0)
            sent += more;
        else if (errno != EINTR && (errno != EAGAIN || !waitFor(POLLOUT, deadline)))
            return false;
    }
    return true;
}

bool SwayConnection::receive() {
    std::array<char, 1U << 16U> room{};
    const ssize_t length = ::recv(descriptor(), room.data(), room.size(), 0);
    if (length > 0)
        m_received.append(room.data(), length);
    m_wasHungUp = length == 0 || (length < 0 && errno != EAGAIN && errno != EINTR);
    return !m_wasHungUp;
}

std::optional<SwayConnection::Received> SwayConnection::nextAnswer() {
    while (auto received = nextMessage()) {
        if (received->kind == windowEvent)
            m_handleEvent(received->payload);
        else
            return received;
    }
    return std::nullopt;
}

std::optional<SwayConnection::Received> SwayConnection::nextMessage() {
    if (m_received.size() < headerLength)
        return std::nullopt;
    const quint32 length = numberAt(m_received, magic.size());
    if (!m_received.startsWith(magic) || length > longest) {
        close();
        return std::nullopt;
    }
    const qsizetype end = headerLength + static_cast<qsizetype>(length);
    if (m_received.size() < end)
        return std::nullopt;
    Received received{numberAt(m_received, magic.size() + 4), m_received.sliced(headerLength, length)};
    m_received.remove(0, end);
    return received;
}

bool SwayConnection::waitFor(short events, const Deadline &deadline) const {
    pollfd socket{descriptor(), events, 0};
    int ready = 0;
    do {
        ready = ::poll(&socket, 1, static_cast<int>(deadline.remaining().count()));
    } while (ready < 0 && errno == EINTR);
    return ready > 0;
}

} // namespace kestrin::desktop
