#include "benchmarks/XDisplay.h"

#include "benchmarks/Run.h"

#include <cstring>

namespace kestrin::bench {

XDisplay::XDisplay() : m_xcb(xcb_connect(nullptr, nullptr)) {
    if (xcb_connection_has_error(m_xcb))
        giveUp("there is no X display.");
    m_root = xcb_setup_roots_iterator(xcb_get_setup(m_xcb)).data->root;
    m_clientList = atom("_NET_CLIENT_LIST");
}

std::uint32_t XDisplay::atom(const char *name) const {
    const auto cookie = xcb_intern_atom(m_xcb, 0, static_cast<std::uint16_t>(std::strlen(name)), name);
    const std::unique_ptr<xcb_intern_atom_reply_t, Free> reply(xcb_intern_atom_reply(m_xcb, cookie, nullptr));
    return reply ? reply->atom : 0;
}

std::vector<std::uint32_t> XDisplay::windowList() const {
    const Property reply = take(ask(m_root, m_clientList, 16384));
    if (!reply)
        return {};
    const auto *windows = static_cast<const std::uint32_t *>(xcb_get_property_value(reply.get()));
    return {windows, windows + xcb_get_property_value_length(reply.get()) / 4};
}

} // namespace kestrin::bench
