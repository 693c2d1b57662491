#include "desktop/x11/X11Connector.h"

#include <sys/socket.h>
#include <xcb/res.h>

#include <condition_variable>
#include <csignal>
#include <cstring>
#include <mutex>
#include <thread>
#include <vector>

using namespace std::chrono_literals;

namespace kestrin::desktop {

using namespace foundation;

namespace {

void internAtoms(xcb_connection_t *connection, X11Server &server) {
    xcb_intern_atom_cookie_t *const hints = xcb_ewmh_init_atoms(connection, &server.hints);
    std::vector<xcb_intern_atom_cookie_t> cookies;
    for (const X11AtomName &atom : x11AtomNames)
        cookies.push_back(
            xcb_intern_atom(connection, 0, static_cast<quint16>(std::strlen(atom.name)), atom.name));
    for (std::size_t i = 0; i < cookies.size(); ++i) {
        const XcbMessage<xcb_intern_atom_reply_t> reply(
            xcb_intern_atom_reply(connection, cookies[i], nullptr));
        if (reply)
            server.atoms.*x11AtomNames[i].number = reply->atom;
    }
    // When it fails it has given back what the structure owns.
    if (xcb_ewmh_init_atoms_replies(&server.hints, hints, nullptr) == 0)
        server.hints = {};
}

/// Whether the server is reached without a network, which a forwarded one is not either.
bool isLocal(xcb_connection_t *connection) {
    sockaddr_storage address{};
    socklen_t size = sizeof address;
    return ::getsockname(xcb_get_file_descriptor(connection), reinterpret_cast<sockaddr *>(&address),
                         &size) == 0 &&
           address.ss_family == AF_UNIX;
}

bool tellsProcesses(xcb_connection_t *connection) {
    const xcb_query_extension_reply_t *extension = xcb_get_extension_data(connection, &xcb_res_id);
    if (!extension || !extension->present)
        return false;
    const XcbMessage<xcb_res_query_version_reply_t> version(
        xcb_res_query_version_reply(connection, xcb_res_query_version(connection, 1, 2), nullptr));
    return version && (version->server_major > 1 || version->server_minor >= 2);
}

/// Blocks for as long as the server likes.
std::unique_ptr<X11Connection> connectTo(const QByteArray &display) {
    int screenNumber = 0;
    xcb_connection_t *const connection =
        xcb_connect(display.isEmpty() ? nullptr : display.constData(), &screenNumber);
    X11Server server;
    if (xcb_connection_has_error(connection) == 0) {
        xcb_prefetch_extension_data(connection, &xcb_res_id);
        const xcb_setup_t *const setup = xcb_get_setup(connection);
        server.resourceMask = setup->resource_id_mask;
        xcb_screen_iterator_t screens = xcb_setup_roots_iterator(setup);
        for (; server.screen < screenNumber && screens.rem > 1; ++server.screen)
            xcb_screen_next(&screens);
        if (screens.rem > 0) {
            server.root = screens.data->root;
            internAtoms(connection, server);
        }
        server.tellsProcesses = isLocal(connection) && tellsProcesses(connection);
    }
    auto result = std::make_unique<X11Connection>(connection, server);
    return result->isBroken() || server.root == 0 ? nullptr : std::move(result);
}

} // namespace

struct X11Connector::Attempt {
    std::mutex mutex;
    std::condition_variable ended;
    bool isEnded = false;
    std::unique_ptr<X11Connection> connection;
};

std::unique_ptr<X11Connection> X11Connector::connect(const Deadline &deadline) {
    if (!m_attempt)
        begin();
    const auto patience = m_waited < desktopSilence ? deadline.remaining() : 0ms;
    std::unique_lock lock(m_attempt->mutex);
    if (!m_attempt->ended.wait_for(lock, patience, [this] { return m_attempt->isEnded; })) {
        m_waited += patience;
        return nullptr;
    }
    m_waited = 0ms;
    auto connection = std::move(m_attempt->connection);
    lock.unlock();
    m_attempt.reset();
    return connection;
}

void X11Connector::begin() {
    m_attempt = std::make_shared<Attempt>();
    // The thread inherits a mask without signals: they are the main thread's business.
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    ::pthread_sigmask(SIG_SETMASK, &all, &before);
    std::thread([attempt = m_attempt, display = m_display] {
        auto connection = connectTo(display);
        const std::lock_guard lock(attempt->mutex);
        attempt->connection = std::move(connection);
        attempt->isEnded = true;
        attempt->ended.notify_one();
    }).detach();
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

} // namespace kestrin::desktop
