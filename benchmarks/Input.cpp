#include "benchmarks/Input.h"

#include "benchmarks/Run.h"

#include <xcb/xtest.h>

namespace kestrin::bench {

Input::Input(const XDisplay &display) : m_display(display) {
    xcb_connection_t *const xcb = display.xcb();
    const xcb_query_extension_reply_t *const extension = xcb_get_extension_data(xcb, &xcb_test_id);
    if (!extension || !extension->present)
        giveUp("the X server has no XTEST.");
    const xcb_setup_t *const setup = xcb_get_setup(xcb);
    const auto count = static_cast<std::uint8_t>(setup->max_keycode - setup->min_keycode + 1);
    const std::unique_ptr<xcb_get_keyboard_mapping_reply_t, XDisplay::Free> reply(
        xcb_get_keyboard_mapping_reply(xcb, xcb_get_keyboard_mapping(xcb, setup->min_keycode, count),
                                       nullptr));
    if (!reply)
        giveUp("the X server does not tell its keys.");
    const xcb_keysym_t *const symbols = xcb_get_keyboard_mapping_keysyms(reply.get());
    m_firstCode = setup->min_keycode;
    m_symbolsPerCode = reply->keysyms_per_keycode;
    m_symbols.assign(symbols, symbols + xcb_get_keyboard_mapping_keysyms_length(reply.get()));
}

void Input::point(int x, int y) {
    xcb_test_fake_input(m_display.xcb(), XCB_MOTION_NOTIFY, 0, XCB_CURRENT_TIME, m_display.root(),
                        static_cast<std::int16_t>(x), static_cast<std::int16_t>(y), 0);
    xcb_flush(m_display.xcb());
}

void Input::turnWheel(bool down) {
    const std::uint8_t button = down ? 5 : 4;
    send(XCB_BUTTON_PRESS, button);
    send(XCB_BUTTON_RELEASE, button);
}

/// Only what a key gives without Shift.
std::uint8_t Input::code(Key key) const {
    for (std::size_t i = 0; i < m_symbols.size(); i += m_symbolsPerCode) {
        if (m_symbols[i] == static_cast<std::uint32_t>(key))
            return static_cast<std::uint8_t>(m_firstCode + i / m_symbolsPerCode);
    }
    giveUp("the keyboard lacks a key.");
}

void Input::send(std::uint8_t type, std::uint8_t detail) {
    xcb_test_fake_input(m_display.xcb(), type, detail, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
    xcb_flush(m_display.xcb());
}

} // namespace kestrin::bench
