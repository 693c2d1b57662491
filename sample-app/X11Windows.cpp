#include "sample-app/X11Windows.h"

#include "sample-app/BusObjects.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include <unistd.h>

namespace kestrin::sample {

X11Windows::X11Windows(Listener listener, std::string busName)
    : m_listener(std::move(listener))
    , m_busName(std::move(busName))
    , m_connection(xcb_connect(nullptr, nullptr)) {}

xcb_atom_t X11Windows::atom(const std::string &name) {
    xcb_atom_t &known = m_atoms[name];
    if (known == XCB_ATOM_NONE) {
        const auto cookie =
            xcb_intern_atom(m_connection.get(), 0, static_cast<std::uint16_t>(name.size()), name.c_str());
        xcb_intern_atom_reply_t *reply = xcb_intern_atom_reply(m_connection.get(), cookie, nullptr);
        known = reply != nullptr ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
        std::free(reply);
    }
    return known;
}

void X11Windows::open(int number, const Options &options) {
    const xcb_screen_t *screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection.get())).data;
    const xcb_window_t window = xcb_generate_id(m_connection.get());
    const std::uint32_t values[] = {screen->white_pixel, XCB_EVENT_MASK_STRUCTURE_NOTIFY};
    const auto offset = static_cast<std::int16_t>(20 * (number % 40));
    xcb_create_window(m_connection.get(), XCB_COPY_FROM_PARENT, window, screen->root, offset, offset, 320,
                      200, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                      XCB_CW_BACK_PIXEL | XCB_CW_EVENT_MASK, values);
    describe(window, options);
    const auto now = std::chrono::steady_clock::now();
    xcb_map_window(m_connection.get(), window);
    xcb_flush(m_connection.get());
    m_numbers[window] = number;
    m_listener.shown(number, now);
}

void X11Windows::close(int number) {
    const auto known = std::find_if(m_numbers.begin(), m_numbers.end(),
                                    [number](const auto &window) { return window.second == number; });
    if (known == m_numbers.end())
        return;
    xcb_destroy_window(m_connection.get(), known->first);
    xcb_flush(m_connection.get());
    m_numbers.erase(known);
}

void X11Windows::describe(xcb_window_t window, const Options &options) {
    const auto tell = [&](const char *property, const char *type, const std::string &value) {
        if (!value.empty())
            setText(window, property, type, value);
    };
    tell("_NET_WM_NAME", "UTF8_STRING", options.value("title", "A title that is nobody's name"));
    tell("_GTK_APPLICATION_ID", "UTF8_STRING", options.value("gtk-id"));
    tell("_KDE_NET_WM_DESKTOP_FILE", "UTF8_STRING", options.value("kde-entry"));
    std::string name = options.value("class", "sample-app/Sample-app");
    std::replace(name.begin(), name.end(), '/', '\0');
    if (name != "none")
        tell("WM_CLASS", "STRING", name + '\0');
    if (!m_busName.empty()) {
        tell("_GTK_UNIQUE_BUS_NAME", "UTF8_STRING", options.value("claim", m_busName));
        tell("_GTK_APPLICATION_OBJECT_PATH", "UTF8_STRING", BusObjects::gtkPath);
    }
    const std::string process = options.value("pid", std::to_string(::getpid()));
    if (process != "none")
        setNumber(window, "_NET_WM_PID", "CARDINAL", static_cast<std::uint32_t>(std::stoul(process)));
    if (options.has("type"))
        setNumber(window, "_NET_WM_WINDOW_TYPE", "ATOM",
                  atom("_NET_WM_WINDOW_TYPE_" + options.value("type")));
    if (options.has("skip-taskbar"))
        setNumber(window, "_NET_WM_STATE", "ATOM", atom("_NET_WM_STATE_SKIP_TASKBAR"));
    if (options.value("manner") != "no-delete")
        setNumber(window, "WM_PROTOCOLS", "ATOM", atom("WM_DELETE_WINDOW"));
}

void X11Windows::setText(xcb_window_t window, const char *name, const char *type, const std::string &value) {
    xcb_change_property(m_connection.get(), XCB_PROP_MODE_REPLACE, window, atom(name), atom(type), 8,
                        static_cast<std::uint32_t>(value.size()), value.data());
}

void X11Windows::setNumber(xcb_window_t window, const char *name, const char *type, std::uint32_t value) {
    xcb_change_property(m_connection.get(), XCB_PROP_MODE_REPLACE, window, atom(name), atom(type), 32, 1,
                        &value);
}

void X11Windows::handle(const xcb_generic_event_t &event) {
    const auto tell = [this](const std::function<void(int)> &listener, xcb_window_t window) {
        if (const auto known = m_numbers.find(window); known != m_numbers.end())
            listener(known->second);
    };
    const int type = event.response_type & 0x7f;
    const auto &message = reinterpret_cast<const xcb_client_message_event_t &>(event);
    if (type == XCB_MAP_NOTIFY)
        tell(m_listener.mapped, reinterpret_cast<const xcb_map_notify_event_t &>(event).window);
    else if (type == XCB_CLIENT_MESSAGE && message.type == atom("WM_PROTOCOLS") &&
             message.data.data32[0] == atom("WM_DELETE_WINDOW"))
        tell(m_listener.askedToClose, message.window);
}

void X11Windows::takeEvents() {
    while (xcb_generic_event_t *event = xcb_poll_for_event(m_connection.get())) {
        handle(*event);
        std::free(event);
    }
}

} // namespace kestrin::sample
