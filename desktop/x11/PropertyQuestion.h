#pragma once

#include "desktop/x11/X11Connection.h"

namespace kestrin::desktop {

/// What a window's property holds, whatever its type.
class PropertyQuestion : public PendingReply<xcb_get_property_reply_t> {
  public:
    // More than any honest client needs; a longer property is read up to here. In units of four bytes.
    static constexpr quint32 listLength = 16384;
    static constexpr quint32 textLength = 16384;
    static constexpr quint32 atomsLength = 64;

    PropertyQuestion(X11Connection &connection, xcb_window_t window, xcb_atom_t property, quint32 length)
        : PendingReply(connection, xcb_get_property(connection.xcb(), 0, window, property,
                                                    XCB_GET_PROPERTY_TYPE_ANY, 0, length)) {}
};

} // namespace kestrin::desktop
