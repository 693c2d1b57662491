#include "desktop/x11/X11Connection.h"

#include "desktop/x11/BrokenPipeGuard.h"

#include <poll.h>
#include <xcb/xcbext.h>

namespace kestrin::desktop {

using namespace foundation;

X11Connection::~X11Connection() {
    xcb_ewmh_connection_wipe(&m_server.hints);
    xcb_disconnect(m_connection);
}

void X11Connection::requestClosing(xcb_window_t window) {
    xcb_ewmh_request_close_window(&m_server.hints, m_server.screen, window, XCB_CURRENT_TIME,
                                  XCB_EWMH_CLIENT_SOURCE_TYPE_OTHER);
}

void X11Connection::flush() {
    const BrokenPipeGuard guard;
    xcb_flush(m_connection);
}

bool X11Connection::owesAnswers() {
    if (!m_lastQuestion || isBroken())
        return false;
    void *reply = nullptr;
    xcb_generic_error_t *error = nullptr;
    if (xcb_poll_for_reply(m_connection, *m_lastQuestion, &reply, &error) != 0)
        m_lastQuestion.reset();
    std::free(reply);
    std::free(error);
    return m_lastQuestion.has_value();
}

void X11Connection::noteSilence(std::chrono::milliseconds waited) {
    if (owesAnswers()) {
        m_waited += waited;
        return;
    }
    m_waited = waited;
    m_lastQuestion = xcb_get_input_focus(m_connection).sequence;
    flush();
}

std::pair<X11Connection::Outcome, void *> X11Connection::waitFor(unsigned sequence,
                                                                 const Deadline &deadline) {
    const auto patience = deadline.remaining();
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
        if (remaining.count() == 0) {
            noteSilence(patience);
            return {Outcome::silent, nullptr};
        }
        pollfd server{xcb_get_file_descriptor(m_connection), POLLIN, 0};
        ::poll(&server, 1, static_cast<int>(remaining.count()));
    }
}

} // namespace kestrin::desktop
