#include "desktop/wayland/PlasmaWindows.h"

#include "desktop/wayland/WaylandConnection.h"

#include <plasma-window-management-client-protocol.h>

#include <limits>

namespace kestrin::desktop {

using namespace foundation;

namespace {

org_kde_plasma_window_management *managementOf(wl_proxy *manager) {
    return reinterpret_cast<org_kde_plasma_window_management *>(manager);
}

org_kde_plasma_window *windowOf(wl_proxy *window) {
    return reinterpret_cast<org_kde_plasma_window *>(window);
}

wl_proxy *proxyOf(org_kde_plasma_window *window) {
    return reinterpret_cast<wl_proxy *>(window);
}

} // namespace

wl_proxy *PlasmaWindows::bindManager(WaylandConnection &connection, const Deadline &deadline) {
    // Plasma 6 offers this one. In those before it that tell of windows by number KWin 6 follows each window
    // with one that is gone already.
    constexpr quint32 ofPlasma6 = 17;
    if (wl_proxy *const manager =
            connection.bind(org_kde_plasma_window_management_interface, ofPlasma6, ofPlasma6, deadline))
        return manager;
    // The lowest one tells when it has told everything about a window. Those between the highest and Plasma 6
    // tell the order of all windows in one message, and KWin hangs up on us where that is too long: from some
    // hundred windows on.
    constexpr quint32 lowest = 4;
    constexpr quint32 highest = 10;
    return connection.bind(org_kde_plasma_window_management_interface, lowest, highest, deadline);
}

void PlasmaWindows::takeManagerEvent(wl_proxy *manager, std::string_view event,
                                     const wl_argument *arguments) {
    org_kde_plasma_window_management *const management = managementOf(manager);
    if (event == "window_with_uuid" && arguments[1].s) {
        const char *const uuid = arguments[1].s;
        if (canFollow(uuid))
            follow(proxyOf(org_kde_plasma_window_management_get_window_by_uuid(management, uuid)), uuid);
    } else if (event == "window") {
        const QByteArray number = QByteArray::number(arguments[0].u);
        if (canFollow(number))
            follow(proxyOf(org_kde_plasma_window_management_get_window(management, arguments[0].u)), number);
    }
}

WindowNews PlasmaWindows::read(std::string_view event, const wl_argument *arguments, SourceWindow &window) {
    if (event == "initial_state")
        return WindowNews::complete;
    if (event == "unmapped")
        return WindowNews::gone;
    if (event == "app_id_changed") {
        window.claims.className = waylandText(arguments[0]);
    } else if (event == "resource_name_changed") {
        window.claims.instanceName = waylandText(arguments[0]);
    } else if (event == "pid_changed") {
        constexpr quint32 highest = std::numeric_limits<qint32>::max();
        window.process = arguments[0].u <= highest ? static_cast<qint32>(arguments[0].u) : 0;
    } else if (event == "state_changed") {
        window.isRegular = (arguments[0].u & ORG_KDE_PLASMA_WINDOW_MANAGEMENT_STATE_SKIPTASKBAR) == 0;
    } else {
        return WindowNews::nothing;
    }
    return WindowNews::fact;
}

void PlasmaWindows::askToClose(wl_proxy *window) {
    org_kde_plasma_window_close(windowOf(window));
}

void PlasmaWindows::letGo(wl_proxy *window) {
    org_kde_plasma_window_destroy(windowOf(window));
}

} // namespace kestrin::desktop
