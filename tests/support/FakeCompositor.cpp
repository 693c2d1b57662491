#include "tests/support/FakeCompositor.h"

#include <poll.h>
#include <unistd.h>

#include <wlr-foreign-toplevel-management-server-protocol.h>

#include <algorithm>

namespace kestrin::samples {

namespace {

FakeCompositor &compositorOf(wl_resource *resource) {
    return *static_cast<FakeCompositor *>(wl_resource_get_user_data(resource));
}

const struct zwlr_foreign_toplevel_handle_v1_interface windowRequests = [] {
    struct zwlr_foreign_toplevel_handle_v1_interface requests {};
    requests.close = [](wl_client *, wl_resource *window) { compositorOf(window).askedToClose(window); };
    requests.destroy = [](wl_client *, wl_resource *window) { wl_resource_destroy(window); };
    return requests;
}();

void bindManager(wl_client *client, void *compositor, quint32 version, quint32 id) {
    wl_resource *const manager = wl_resource_create(client, &zwlr_foreign_toplevel_manager_v1_interface,
                                                    static_cast<int>(version), id);
    static_cast<FakeCompositor *>(compositor)->bound(client, manager);
}

} // namespace

FakeCompositor::FakeCompositor(const QByteArray &socketPath) : m_display(wl_display_create()) {
    wl_global_create(m_display, &zwlr_foreign_toplevel_manager_v1_interface, 3, this, bindManager);
    if (wl_display_add_socket(m_display, socketPath.constData()) != 0)
        qFatal("No socket at %s", socketPath.constData());
    m_thread = std::thread([this] { serve(); });
}

FakeCompositor::~FakeCompositor() {
    m_isDying = true;
    m_thread.join();
    wl_display_destroy_clients(m_display);
    wl_display_destroy(m_display);
}

void FakeCompositor::serve() {
    wl_event_loop *const loop = wl_display_get_event_loop(m_display);
    while (!m_isDying) {
        pollfd client{wl_event_loop_get_fd(loop), POLLIN, 0};
        ::poll(&client, 1, 2);
        if (m_isSilent)
            continue;
        const std::lock_guard lock(m_mutex);
        wl_event_loop_dispatch(loop, 0);
        for (int i = 0; i < 4 && m_toFlood > 0; ++i, --m_toFlood)
            announceUnlocked(m_floodId, true);
        wl_display_flush_clients(m_display);
    }
}

void FakeCompositor::bound(wl_client *client, wl_resource *manager) {
    m_client = client;
    m_manager = manager;
    m_windows.clear();
}

void FakeCompositor::askedToClose(wl_resource *window) {
    m_closed.append(m_windows.indexOf(window));
}

void FakeCompositor::destroyed(wl_resource *window) {
    std::replace(m_windows.begin(), m_windows.end(), window, static_cast<wl_resource *>(nullptr));
}

void FakeCompositor::announce(const QByteArray &appId, bool isComplete) {
    const std::lock_guard lock(m_mutex);
    announceUnlocked(appId, isComplete);
    wl_display_flush_clients(m_display);
}

void FakeCompositor::announceUnlocked(const QByteArray &appId, bool isComplete) {
    wl_resource *const window =
        wl_resource_create(m_client, &zwlr_foreign_toplevel_handle_v1_interface, 3, 0);
    wl_resource_set_implementation(window, &windowRequests, this,
                                   [](wl_resource *resource) { compositorOf(resource).destroyed(resource); });
    m_windows.append(window);
    zwlr_foreign_toplevel_manager_v1_send_toplevel(m_manager, window);
    zwlr_foreign_toplevel_handle_v1_send_app_id(window, appId.constData());
    if (isComplete)
        zwlr_foreign_toplevel_handle_v1_send_done(window);
}

void FakeCompositor::flood(int windows, const QByteArray &appId) {
    const std::lock_guard lock(m_mutex);
    m_toFlood = windows;
    m_floodId = appId;
}

void FakeCompositor::tell(int window, const std::function<void(wl_resource *)> &event) {
    const std::lock_guard lock(m_mutex);
    event(m_windows.at(window));
    wl_display_flush_clients(m_display);
}

void FakeCompositor::endManager() {
    const std::lock_guard lock(m_mutex);
    zwlr_foreign_toplevel_manager_v1_send_finished(m_manager);
    wl_display_flush_clients(m_display);
}

void FakeCompositor::talkNonsense() {
    const std::lock_guard lock(m_mutex);
    // wl_display's second event, whose argument is missing.
    constexpr quint32 length = 8;
    const quint32 words[] = {1, length << 16U | 1U};
    if (::write(wl_client_get_fd(m_client), words, length) != length)
        qFatal("Nobody takes nonsense");
}

QList<qsizetype> FakeCompositor::closed() {
    const std::lock_guard lock(m_mutex);
    return m_closed;
}

qsizetype FakeCompositor::objects() {
    const std::lock_guard lock(m_mutex);
    return m_windows.size() - m_windows.count(nullptr);
}

} // namespace kestrin::samples
