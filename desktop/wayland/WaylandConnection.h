// A connection to a Wayland compositor that may stop answering or go away at any time.
#pragma once

#include "foundation/Deadline.h"

#include <QByteArray>
#include <QHash>
#include <QObject>
#include <QSocketNotifier>

#include <memory>

struct wl_display;
struct wl_interface;
struct wl_proxy;
struct wl_registry;

namespace kestrin::desktop {

/// The path of a compositor's socket: of the display with this name, "" the one in the environment
/// (WAYLAND_DISPLAY). Empty when there is none.
QByteArray waylandSocketPath(const QByteArray &display = {});

/// Whether the process is the compositor of this session (WAYLAND_DISPLAY), or it cannot be told who that is.
/// A name on the bus and a socket in the environment may be those of another session, in which this one runs.
bool mayBeCompositorHere(qint32 process);

/// Owns the connection, which is nobody else's. Main thread only.
///
/// Requests are sent with libwayland's own functions. Nothing here blocks longer than its deadline, and a
/// compositor that has gone never raises a signal: libwayland asks for none when it writes. What the
/// compositor says is handed out while somebody waits, and from the event loop.
class WaylandConnection : public QObject {
    Q_OBJECT

  public:
    /// Null when nobody accepts connections there. That somebody does is no sign that he will ever answer.
    static std::unique_ptr<WaylandConnection> connect(const QByteArray &socketPath);
    ~WaylandConnection() override;

    wl_display *display() const { return m_display; }
    /// The compositor's process; 0 when it is not one of ours to see.
    qint32 compositor() const { return m_compositor; }
    /// The path that the compositor itself gave to the socket.
    const QByteArray &address() const { return m_address; }

    /// The compositor has gone away or talks nonsense; nothing will ever be answered any more.
    bool isBroken() const;

    /// The compositor's object of this interface, in the highest version that all of us know; null when it
    /// has none in this version at least, or does not answer. Whoever gets it destroys it before the
    /// connection.
    wl_proxy *bind(const wl_interface &interface, quint32 lowest, quint32 highest,
                   const foundation::Deadline &deadline);

    /// Returns when the compositor has handled every request and everything that it said until then is handed
    /// out. False when that was not so by the deadline.
    bool roundTrip(const foundation::Deadline &deadline);
    /// Hands all requests to the compositor. False when it did not take them by the deadline.
    bool flush(const foundation::Deadline &deadline);

  Q_SIGNALS:
    /// From the event loop, when the compositor has said something, or gone.
    void spoke();

  private:
    WaylandConnection(wl_display *display, qint32 compositor, const QByteArray &address);

    struct Global {
        quint32 name;
        quint32 version;
    };
    /// By interface; of several the first.
    using Globals = QHash<QByteArray, Global>;

    bool knowsGlobals(const foundation::Deadline &deadline);
    bool waitUntil(const bool &isDone, const foundation::Deadline &deadline);
    bool readFor(const foundation::Deadline &deadline);

    wl_display *m_display;
    qint32 m_compositor;
    QByteArray m_address;
    wl_registry *m_registry = nullptr;
    Globals m_globals;
    bool m_hasGlobals = false;
    QSocketNotifier m_notifier;
};

} // namespace kestrin::desktop
