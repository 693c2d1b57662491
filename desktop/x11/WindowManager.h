// What the window manager does for others.
#pragma once

#include "desktop/x11/DesktopReading.h"

namespace kestrin::desktop {

/// Whether there is one now that keeps the Extended Window Manager Hints, and closes windows when it is asked
/// (_NET_CLOSE_WINDOW).
enum class WindowManager { absent, listsWindows, closesWindows };
WindowManager windowManagerOf(X11Connection &connection, const foundation::Deadline &deadline);

/// Asks it to close those of the windows that want to be asked themselves before they are closed
/// (WM_DELETE_WINDOW), in the name of the user. Whether at least one such request was delivered.
bool closeWindows(X11Connection &connection, const QList<DesktopWindow> &windows,
                  const foundation::Deadline &deadline);

} // namespace kestrin::desktop
