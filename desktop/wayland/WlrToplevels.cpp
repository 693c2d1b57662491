#include "desktop/wayland/WlrToplevels.h"

#include "desktop/wayland/WaylandConnection.h"

#include <wlr-foreign-toplevel-management-client-protocol.h>

namespace kestrin::desktop {

using namespace foundation;

namespace {

zwlr_foreign_toplevel_handle_v1 *handleOf(wl_proxy *window) {
    return reinterpret_cast<zwlr_foreign_toplevel_handle_v1 *>(window);
}

} // namespace

std::optional<QList<SourceWindow>> WlrToplevels::windows(const Deadline &deadline) {
    auto all = WaylandWindowSource::windows(deadline);
    if (all)
        m_processes.fillIn(*all, *connection(), deadline);
    return all;
}

wl_proxy *WlrToplevels::bindManager(WaylandConnection &connection, const Deadline &deadline) {
    constexpr quint32 highest = 3;
    return connection.bind(zwlr_foreign_toplevel_manager_v1_interface, 1, highest, deadline);
}

void WlrToplevels::takeManagerEvent(wl_proxy * /*manager*/, std::string_view event,
                                    const wl_argument *arguments) {
    if (event == "toplevel")
        follow(reinterpret_cast<wl_proxy *>(arguments[0].o));
    else if (event == "finished")
        managerHasEnded();
}

WindowNews WlrToplevels::read(std::string_view event, const wl_argument *arguments, SourceWindow &window) {
    if (event == "done")
        return WindowNews::complete;
    if (event == "closed")
        return WindowNews::gone;
    if (event != "app_id")
        return WindowNews::nothing;
    window.claims.className = waylandText(arguments[0]);
    return WindowNews::pending;
}

void WlrToplevels::askToClose(wl_proxy *window) {
    zwlr_foreign_toplevel_handle_v1_close(handleOf(window));
}

void WlrToplevels::letGo(wl_proxy *window) {
    zwlr_foreign_toplevel_handle_v1_destroy(handleOf(window));
}

} // namespace kestrin::desktop
