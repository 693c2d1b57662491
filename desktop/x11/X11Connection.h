// A connection to an X server that may stop answering or go away at any time.
#pragma once

#include "desktop/applications/DesktopPatience.h"
#include "desktop/x11/X11Atoms.h"
#include "foundation/Deadline.h"

#include <QtGlobal>

#include <xcb/xcb.h>
#include <xcb/xcb_ewmh.h>

#include <cstdlib>
#include <memory>
#include <optional>
#include <utility>

namespace kestrin::desktop {

struct FreeDeleter {
    void operator()(void *memory) const { std::free(memory); }
};

/// A reply, an event or an error, all of which xcb allocates for its caller.
template <typename Message>
using XcbMessage = std::unique_ptr<Message, FreeDeleter>;

/// What was learnt of a server when the connection was made.
struct X11Server {
    /// The screen, and its root window.
    int screen = 0;
    quint32 root = 0;
    /// The bits of a resource's number that its client chose; the others tell the client.
    quint32 resourceMask = 0;
    X11Atoms atoms;
    /// The names of the Extended Window Manager Hints (EWMH); what it owns is the connection's.
    xcb_ewmh_connection_t hints{};
    /// The server tells the processes behind its clients (X-Resource 1.2), and they are of this machine.
    bool tellsProcesses = false;
};

/// Owns the connection. Main thread only.
///
/// Requests are sent with xcb's own functions and flushed here; replies are waited for with a deadline.
/// Nothing blocks longer than that, and a server that has gone never raises a signal.
class X11Connection {
  public:
    /// Takes over an established connection.
    X11Connection(xcb_connection_t *connection, const X11Server &server)
        : m_connection(connection)
        , m_server(server) {}
    X11Connection(const X11Connection &) = delete;
    X11Connection &operator=(const X11Connection &) = delete;
    ~X11Connection();

    xcb_connection_t *xcb() const { return m_connection; }
    const X11Server &server() const { return m_server; }
    const X11Atoms &atoms() const { return m_server.atoms; }
    const xcb_ewmh_connection_t &hints() const { return m_server.hints; }
    quint32 root() const { return m_server.root; }

    /// The server has gone away; nothing will ever be answered any more.
    bool isBroken() const { return xcb_connection_has_error(m_connection) != 0; }

    /// Somebody has waited for the server in vain, and it has not caught up since. Never waits.
    bool owesAnswers();
    /// It has been waited for so long that whoever asks it now would wait in vain too.
    bool isSilent() { return owesAnswers() && m_waited >= desktopSilence; }

    /// Requests that the window manager closes a window (_NET_CLOSE_WINDOW), in the name of the user.
    void requestClosing(xcb_window_t window);

    /// Hands all requests to the server.
    void flush();

    enum class Outcome {
        answered,
        refused, ///< the server answered with an error: the window has gone, for example
        silent,  ///< no answer by the deadline, or no server any more
    };
    /// The outcome of a flushed request, and its reply.
    std::pair<Outcome, void *> waitFor(unsigned sequence, const foundation::Deadline &deadline);

  private:
    void noteSilence(std::chrono::milliseconds waited);

    xcb_connection_t *m_connection;
    X11Server m_server;
    /// Asked when an answer did not come in time. The server answers in order: once this one is there, it has
    /// caught up.
    std::optional<unsigned> m_lastQuestion;
    /// In vain, since then.
    std::chrono::milliseconds m_waited{};
};

/// A reply that is to come. Forgets it when nobody took it.
template <typename Reply>
class PendingReply {
  public:
    using Outcome = X11Connection::Outcome;

    template <typename Cookie>
    PendingReply(X11Connection &connection, Cookie cookie)
        : m_connection(&connection)
        , m_sequence(cookie.sequence) {}
    PendingReply(PendingReply &&other) noexcept
        : m_connection(std::exchange(other.m_connection, nullptr))
        , m_sequence(other.m_sequence) {}
    ~PendingReply() {
        if (m_connection)
            xcb_discard_reply(m_connection->xcb(), m_sequence);
    }

    /// Null unless answered. Only the first call waits.
    XcbMessage<Reply> take(const foundation::Deadline &deadline, Outcome &outcome) {
        if (!m_connection) {
            outcome = Outcome::refused;
            return nullptr;
        }
        const auto [result, reply] = m_connection->waitFor(m_sequence, deadline);
        outcome = result;
        if (result != Outcome::silent)
            m_connection = nullptr;
        return XcbMessage<Reply>(static_cast<Reply *>(reply));
    }
    XcbMessage<Reply> take(const foundation::Deadline &deadline) {
        Outcome outcome{};
        return take(deadline, outcome);
    }

  private:
    X11Connection *m_connection;
    unsigned m_sequence;
};

} // namespace kestrin::desktop
