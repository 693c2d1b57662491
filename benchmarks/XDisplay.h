// A bare connection to the X server, for clients and floors.
#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <vector>

namespace kestrin::bench {

class XDisplay {
  public:
    struct Free {
        void operator()(void *message) const { std::free(message); }
    };
    using Event = std::unique_ptr<xcb_generic_event_t, Free>;
    using Property = std::unique_ptr<xcb_get_property_reply_t, Free>;

    /// Connects to the display of the environment.
    XDisplay();
    XDisplay(const XDisplay &) = delete;
    XDisplay &operator=(const XDisplay &) = delete;
    ~XDisplay() { xcb_disconnect(m_xcb); }

    xcb_connection_t *xcb() const { return m_xcb; }
    std::uint32_t root() const { return m_root; }
    /// The property in which the window manager lists the windows.
    std::uint32_t clientList() const { return m_clientList; }

    std::uint32_t atom(const char *name) const;

    xcb_get_property_cookie_t ask(std::uint32_t window, std::uint32_t property, std::uint32_t items) const {
        return xcb_get_property(m_xcb, 0, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, items);
    }
    Property take(xcb_get_property_cookie_t cookie) const {
        return Property(xcb_get_property_reply(m_xcb, cookie, nullptr));
    }

    /// The windows that the window manager lists.
    std::vector<std::uint32_t> windowList() const;

    /// Waits until the server has handled everything so far.
    void roundTrip() const { take(ask(m_root, XCB_ATOM_WM_NAME, 1)); }

  private:
    xcb_connection_t *m_xcb;
    std::uint32_t m_root = 0;
    std::uint32_t m_clientList = 0;
};

} // namespace kestrin::bench
