#include "desktop/wayland/WaylandConnection.h"

#include "desktop/sources/LocalSocket.h"

#include <poll.h>

#include <wayland-client.h>

#include <algorithm>
#include <cerrno>

namespace kestrin::desktop {

using namespace foundation;

namespace {

void callbackDone(void *data, wl_callback * /*callback*/, quint32 /*serial*/) {
    *static_cast<bool *>(data) = true;
}

constexpr wl_callback_listener callbackListener{callbackDone};

} // namespace

QByteArray waylandSocketPath(const QByteArray &display) {
    const QByteArray name = display.isEmpty() ? qgetenv("WAYLAND_DISPLAY") : display;
    if (name.isEmpty() || name.startsWith('/'))
        return name;
    const QByteArray folder = qgetenv("XDG_RUNTIME_DIR");
    return folder.startsWith('/') ? folder + '/' + name : QByteArray();
}

bool mayBeCompositorHere(qint32 process) {
    LocalSocket socket;
    const qint32 compositor = socket.connect(waylandSocketPath()) ? socket.server() : 0;
    return compositor == 0 || compositor == process;
}

std::unique_ptr<WaylandConnection> WaylandConnection::connect(const QByteArray &socketPath) {
    LocalSocket socket;
    if (!socket.connect(socketPath))
        return nullptr;
    const qint32 compositor = socket.server();
    const QByteArray address = socket.address();
    // It takes the socket over, also where it fails.
    wl_display *const display = wl_display_connect_to_fd(socket.handOn());
    if (!display)
        return nullptr;
    return std::unique_ptr<WaylandConnection>(new WaylandConnection(display, compositor, address));
}

WaylandConnection::WaylandConnection(wl_display *display, qint32 compositor, const QByteArray &address)
    : m_display(display)
    , m_compositor(compositor)
    , m_address(address)
    , m_notifier(wl_display_get_fd(display), QSocketNotifier::Read) {
    QObject::connect(&m_notifier, &QSocketNotifier::activated, this, [this] {
        // A connection that is broken stays readable, and would keep the event loop busy.
        if (!readFor(Deadline(std::chrono::milliseconds::zero())) && isBroken())
            m_notifier.setEnabled(false);
        wl_display_flush(m_display);
        Q_EMIT spoke();
    });
}

WaylandConnection::~WaylandConnection() {
    m_notifier.setEnabled(false);
    if (m_registry)
        wl_registry_destroy(m_registry);
    wl_display_disconnect(m_display);
}

bool WaylandConnection::isBroken() const {
    return wl_display_get_error(m_display) != 0;
}

/// Hands out what has been said, or waits until something is. False when nothing was by the deadline, or the
/// compositor has gone.
bool WaylandConnection::readFor(const Deadline &deadline) {
    while (wl_display_prepare_read(m_display) != 0) {
        if (wl_display_dispatch_pending(m_display) < 0)
            return false;
    }
    pollfd compositor{wl_display_get_fd(m_display), POLLIN, 0};
    if (wl_display_flush(m_display) < 0 && errno == EAGAIN)
        compositor.events |= POLLOUT;
    ::poll(&compositor, 1, static_cast<int>(deadline.remaining().count()));
    if ((compositor.revents & (POLLIN | POLLHUP | POLLERR)) == 0) {
        wl_display_cancel_read(m_display);
        return deadline.remaining().count() != 0;
    }
    return wl_display_read_events(m_display) == 0 && wl_display_dispatch_pending(m_display) >= 0;
}

bool WaylandConnection::waitUntil(const bool &isDone, const Deadline &deadline) {
    while (!isDone) {
        if (!readFor(deadline) || (deadline.remaining().count() == 0 && !isDone))
            return false;
    }
    return true;
}

bool WaylandConnection::roundTrip(const Deadline &deadline) {
    bool isDone = false;
    wl_callback *const callback = wl_display_sync(m_display);
    if (!callback)
        return false;
    wl_callback_add_listener(callback, &callbackListener, &isDone);
    const bool isAnswered = waitUntil(isDone, deadline);
    wl_callback_destroy(callback);
    return isAnswered;
}

bool WaylandConnection::flush(const Deadline &deadline) {
    while (wl_display_flush(m_display) < 0) {
        const auto remaining = deadline.remaining();
        if (errno != EAGAIN || remaining.count() == 0)
            return false;
        pollfd compositor{wl_display_get_fd(m_display), POLLOUT, 0};
        ::poll(&compositor, 1, static_cast<int>(remaining.count()));
    }
    return !isBroken();
}

bool WaylandConnection::knowsGlobals(const Deadline &deadline) {
    static constexpr wl_registry_listener listener{
        [](void *globals, wl_registry *, quint32 name, const char *interface, quint32 version) {
            auto &known = *static_cast<Globals *>(globals);
            constexpr qsizetype maximum = 1000;
            if (known.size() < maximum && !known.contains(interface))
                known.insert(interface, {name, version});
        },
        [](void *globals, wl_registry *, quint32 name) {
            static_cast<Globals *>(globals)->removeIf(
                [name](const auto &global) { return global.value().name == name; });
        }};
    if (!m_registry) {
        m_registry = wl_display_get_registry(m_display);
        if (m_registry)
            wl_registry_add_listener(m_registry, &listener, &m_globals);
    }
    // Later changes are told unasked.
    if (m_hasGlobals)
        readFor(Deadline(std::chrono::milliseconds::zero()));
    else
        m_hasGlobals = m_registry && roundTrip(deadline);
    return m_hasGlobals && !isBroken();
}

wl_proxy *WaylandConnection::bind(const wl_interface &interface, quint32 lowest, quint32 highest,
                                  const Deadline &deadline) {
    if (!knowsGlobals(deadline))
        return nullptr;
    const auto global = m_globals.constFind(interface.name);
    if (global == m_globals.cend() || global->version < lowest)
        return nullptr;
    const quint32 known = std::min(highest, static_cast<quint32>(interface.version));
    return static_cast<wl_proxy *>(
        wl_registry_bind(m_registry, global->name, &interface, std::min(global->version, known)));
}

} // namespace kestrin::desktop
