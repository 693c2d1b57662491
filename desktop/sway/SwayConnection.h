// A conversation over sway's socket, as sway-ipc(7) and the i3 protocol define it.
#pragma once

#include "desktop/sources/LocalSocket.h"
#include "foundation/Deadline.h"

#include <QByteArray>

#include <functional>
#include <optional>
#include <utility>

namespace kestrin::desktop {

/// Questions, their answers, and the events that come in between. A conversation that broke, fell silent in
/// the middle or makes no sense cannot go on: it is closed. Main thread only.
class SwayConnection {
  public:
    enum class Message : quint32 {
        runCommand = 0,
        subscribe = 2,
        getTree = 4,
    };
    /// What one message may be long, in bytes.
    static constexpr quint32 longest = 64U << 20U;

    /// The handler hears of each event about windows, while something is read.
    using EventHandler = std::function<void(const QByteArray &payload)>;

    explicit SwayConnection(EventHandler handler) : m_handleEvent(std::move(handler)) {}

    /// To the socket at this path. False when nobody listens there.
    bool open(const QByteArray &path);
    void close();
    bool isOpen() const { return m_socket.isConnected(); }
    int descriptor() const { return m_socket.descriptor(); }
    /// The process at the other end, also when that has hung up; 0 when it cannot be told.
    qint32 server() const { return m_server; }
    /// The last conversation was ended from there.
    bool wasHungUp() const { return m_wasHungUp; }

    /// The answer; none, and a closed conversation, when it does not come in time.
    std::optional<QByteArray> ask(Message message, const QByteArray &payload,
                                  const foundation::Deadline &deadline);

    /// Takes in the events that have come; never waits.
    void takeEvents();

  private:
    struct Received {
        quint32 kind;
        QByteArray payload;
    };

    bool send(const QByteArray &bytes, const foundation::Deadline &deadline);
    /// Takes in some of what has come. False when that was the end.
    bool receive();
    /// Up to the next answer.
    std::optional<Received> nextAnswer();
    std::optional<Received> nextMessage();
    bool waitFor(short events, const foundation::Deadline &deadline) const;

    const EventHandler m_handleEvent;
    LocalSocket m_socket;
    qint32 m_server = 0;
    bool m_wasHungUp = false;
    QByteArray m_received;
};

} // namespace kestrin::desktop
