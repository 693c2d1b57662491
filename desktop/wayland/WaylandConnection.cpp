#include "desktop/wayland/WaylandConnection.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <wayland-client.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <optional>
#include <string_view>

namespace kestrin::desktop {

using namespace foundation;

namespace {

/// Closes the socket unless it was handed on.
class Socket {
  public:
    explicit Socket(int descriptor) : m_descriptor(descriptor) {}
    Socket(const Socket &) = delete;
    Socket &operator=(const Socket &) = delete;
    ~Socket() {
        if (m_descriptor >= 0)
            ::close(m_descriptor);
    }
    int descriptor() const { return m_descriptor; }
    void handOn() { m_descriptor = -1; }

  private:
    int m_descriptor;
};

bool connectTo(const Socket &socket, const QByteArray &path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.isEmpty() || path.size() >= static_cast<qsizetype>(sizeof address.sun_path))
        return false;
    std::copy(path.cbegin(), path.cend(), static_cast<char *>(address.sun_path));
    return ::connect(socket.descriptor(), reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0;
}

qint32 processBehind(const Socket &socket) {
    ucred owner{};
    socklen_t size = sizeof owner;
    return ::getsockopt(socket.descriptor(), SOL_SOCKET, SO_PEERCRED, &owner, &size) == 0 ? owner.pid : 0;
}

QByteArray addressBehind(const Socket &socket) {
    sockaddr_un address{};
    socklen_t size = sizeof address;
    if (::getpeername(socket.descriptor(), reinterpret_cast<sockaddr *>(&address), &size) != 0 ||
        size <= offsetof(sockaddr_un, sun_path))
        return {};
    const char *const path = static_cast<const char *>(address.sun_path);
    return {path, static_cast<qsizetype>(::strnlen(path, size - offsetof(sockaddr_un, sun_path)))};
}

/// One object of the compositor that is looked for.
struct Search {
    std::string_view interface;
    struct Found {
        quint32 name;
        quint32 version;
    };
    std::optional<Found> found = std::nullopt;
};

void globalTold(void *data, wl_registry * /*registry*/, quint32 name, const char *interface,
                quint32 version) {
    auto *const search = static_cast<Search *>(data);
    if (search->interface == interface && !search->found)
        search->found = {name, version};
}

void globalRemoved(void *data, wl_registry * /*registry*/, quint32 name) {
    auto *const search = static_cast<Search *>(data);
    if (search->found && search->found->name == name)
        search->found.reset();
}

constexpr wl_registry_listener registryListener{globalTold, globalRemoved};

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

std::unique_ptr<WaylandConnection> WaylandConnection::connect(const QByteArray &socketPath) {
    Socket socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    if (socket.descriptor() < 0 || !connectTo(socket, socketPath))
        return nullptr;
    const qint32 compositor = processBehind(socket);
    const QByteArray address = addressBehind(socket);
    wl_display *const display = wl_display_connect_to_fd(socket.descriptor());
    if (!display)
        return nullptr;
    socket.handOn();
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

wl_proxy *WaylandConnection::bind(const wl_interface &interface, quint32 lowest, quint32 highest,
                                  const Deadline &deadline) {
    Search search{interface.name};
    wl_registry *const registry = wl_display_get_registry(m_display);
    if (!registry)
        return nullptr;
    wl_registry_add_listener(registry, &registryListener, &search);
    void *object = nullptr;
    if (roundTrip(deadline) && search.found && search.found->version >= lowest) {
        const quint32 known = std::min(highest, static_cast<quint32>(interface.version));
        object = wl_registry_bind(registry, search.found->name, &interface,
                                  std::min(search.found->version, known));
    }
    wl_registry_destroy(registry);
    return static_cast<wl_proxy *>(object);
}

} // namespace kestrin::desktop
