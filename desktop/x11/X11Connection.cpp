#include "desktop/x11/X11Connection.h"

#include "desktop/x11/BrokenPipeGuard.h"

#include <poll.h>
#include <xcb/xcbext.h>

namespace kestrin::desktop {

using namespace foundation;

void X11Connection::flush() {
    const BrokenPipeGuard guard;
    xcb_flush(m_connection);
}

std::pair<X11Connection::Outcome, void *> X11Connection::waitFor(unsigned sequence,
                                                                 const Deadline &deadline) {
    while (true) {
        void *reply = nullptr;
        xcb_generic_error_t *rawError = nullptr;
        const bool settled = xcb_poll_for_reply(m_connection, sequence, &reply, &rawError) != 0;
        const XcbMessage<xcb_generic_error_t> error(rawError);
        if (isBroken()) {
            std::free(reply);
            return {Outcome::silent, nullptr};
        }
        if (settled)
            return {error ? Outcome::refused : Outcome::answered, reply};
        const auto remaining = deadline.remaining();
        if (remaining.count() == 0)
            return {Outcome::silent, nullptr};
        pollfd server{xcb_get_file_descriptor(m_connection), POLLIN, 0};
        ::poll(&server, 1, static_cast<int>(remaining.count()));
    }
}

} // namespace kestrin::desktop
