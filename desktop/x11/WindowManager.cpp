#include "desktop/x11/WindowManager.h"

#include "desktop/x11/PropertyQuestion.h"

#include <algorithm>
#include <span>
#include <vector>

namespace kestrin::desktop {

using namespace foundation;

namespace {

bool contains(std::span<const xcb_atom_t> atoms, xcb_atom_t atom) {
    return std::ranges::count(atoms, atom) > 0;
}

QList<xcb_window_t> windowsThatTakePartInClosing(X11Connection &connection,
                                                 const QList<DesktopWindow> &windows,
                                                 const Deadline &deadline) {
    std::vector<PropertyQuestion> questions;
    for (const DesktopWindow &window : windows)
        questions.emplace_back(connection, window.id, connection.hints().WM_PROTOCOLS,
                               PropertyQuestion::atomsLength);
    connection.flush();
    QList<xcb_window_t> result;
    for (std::size_t i = 0; i < questions.size(); ++i) {
        const auto protocols = questions[i].take(deadline);
        if (contains(propertyAtoms(protocols.get()), connection.atoms().wmDeleteWindow))
            result.append(windows[static_cast<qsizetype>(i)].id);
    }
    return result;
}

} // namespace

WindowManager windowManagerOf(X11Connection &connection, const Deadline &deadline) {
    const auto &hints = connection.hints();
    PropertyQuestion check(connection, connection.root(), hints._NET_SUPPORTING_WM_CHECK, 1);
    PropertyQuestion supported(connection, connection.root(), hints._NET_SUPPORTED,
                               PropertyQuestion::listLength);
    connection.flush();
    const xcb_window_t window = propertyWindow(check.take(deadline).get());
    if (window == 0)
        return WindowManager::absent;
    // The property outlives its window manager; the window does not.
    PropertyQuestion ownCheck(connection, window, hints._NET_SUPPORTING_WM_CHECK, 1);
    connection.flush();
    if (propertyWindow(ownCheck.take(deadline).get()) != window)
        return WindowManager::absent;
    const auto reply = supported.take(deadline);
    const auto abilities = propertyAtoms(reply.get());
    if (!contains(abilities, hints._NET_CLIENT_LIST))
        return WindowManager::absent;
    return contains(abilities, hints._NET_CLOSE_WINDOW) ? WindowManager::closesWindows
                                                        : WindowManager::listsWindows;
}

bool closeWindows(X11Connection &connection, const QList<DesktopWindow> &windows, const Deadline &deadline) {
    if (windowManagerOf(connection, deadline) != WindowManager::closesWindows)
        return false;
    // A window manager may kill the owner of a window that does not take part; such a window is left alone.
    const QList<xcb_window_t> willing = windowsThatTakePartInClosing(connection, windows, deadline);
    for (const xcb_window_t window : willing)
        connection.requestClosing(window);
    PendingReply<xcb_get_input_focus_reply_t> end(connection, xcb_get_input_focus(connection.xcb()));
    connection.flush();
    // The server has handled the requests when it answers what comes after them.
    return end.take(deadline) && !willing.isEmpty();
}

} // namespace kestrin::desktop
