// The names that xcb-ewmh does not know, as the numbers that one X server gave them.
#pragma once

#include <xcb/xcb.h>

namespace kestrin::desktop {

/// The numbers differ from server to server; zero is no atom.
struct X11Atoms {
    xcb_atom_t wmState = 0;
    xcb_atom_t wmDeleteWindow = 0;
    xcb_atom_t gtkApplicationId = 0;
    xcb_atom_t gtkBusName = 0;
    xcb_atom_t gtkApplicationPath = 0;
    xcb_atom_t kdeDesktopFile = 0;
};

struct X11AtomName {
    xcb_atom_t X11Atoms::*number;
    const char *name;
};

inline constexpr X11AtomName x11AtomNames[] = {
    {&X11Atoms::wmState, "WM_STATE"},
    {&X11Atoms::wmDeleteWindow, "WM_DELETE_WINDOW"},
    {&X11Atoms::gtkApplicationId, "_GTK_APPLICATION_ID"},
    {&X11Atoms::gtkBusName, "_GTK_UNIQUE_BUS_NAME"},
    {&X11Atoms::gtkApplicationPath, "_GTK_APPLICATION_OBJECT_PATH"},
    {&X11Atoms::kdeDesktopFile, "_KDE_NET_WM_DESKTOP_FILE"},
};

} // namespace kestrin::desktop
