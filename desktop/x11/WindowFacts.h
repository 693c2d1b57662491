// What one window tells about itself, read from properties that any client may have written.
#pragma once

#include "desktop/applications/ApplicationClaims.h"
#include "desktop/x11/X11Atoms.h"

#include <QString>

#include <xcb/xcb_ewmh.h>

#include <span>

namespace kestrin::desktop {

/// A property as the server hands it out; null when there was no answer.
using PropertyReply = xcb_get_property_reply_t;

/// The atoms in it; none when it is something else. They are the reply's.
std::span<const xcb_atom_t> propertyAtoms(PropertyReply *property);

/// A text without its final NUL, empty when it is none. Clients write UTF-8 under any text type; what is no
/// UTF-8 is Latin-1.
QString propertyText(PropertyReply *property);

/// The window that it names; 0 when it names none.
xcb_window_t propertyWindow(PropertyReply *property);

/// The facts about a window that the workspace needs. What a malformed property should have told is absent.
struct WindowFacts {
    ApplicationClaims claims;
    /// The type is one that a task bar shows, or none is told.
    bool hasShownType = true;
    bool skipsTaskbar = false;

    /// Whether a task bar would show the window.
    bool isRegular() const { return hasShownType && !skipsTaskbar; }

    void takeWindowClass(PropertyReply *property);
    void takeWindowType(PropertyReply *property, const xcb_ewmh_connection_t &hints);
    void takeWindowState(PropertyReply *property, const xcb_ewmh_connection_t &hints);
};

/// Whether WM_STATE says that the window is minimised.
bool isIconic(PropertyReply *property, const X11Atoms &atoms);

} // namespace kestrin::desktop
