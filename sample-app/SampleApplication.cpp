// An application whose windows look and behave as a test wants.

#include "sample-app/BusObjects.h"
#include "sample-app/Options.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <map>
#include <memory>
#include <string>

#include <fcntl.h>
#include <poll.h>
#include <sys/mman.h>
#include <unistd.h>
#include <xcb/xcb.h>

namespace kestrin::sample {

namespace {

void say(const char *fact, int number) {
    sample::say(std::string(fact) + ' ' + std::to_string(number));
}

void sayTime(const char *fact, std::chrono::steady_clock::time_point time) {
    sample::say(std::string(fact) + ' ' +
                std::to_string(std::chrono::nanoseconds(time.time_since_epoch()).count()));
}

/// Left mapped until the process ends.
void mapFile(const std::string &path) {
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0 || ::mmap(nullptr, 1, PROT_READ, MAP_PRIVATE, file, 0) == MAP_FAILED)
        std::fprintf(stderr, "sample-app cannot map %s.\n", path.c_str());
    ::close(file);
}

class SampleApplication {
  public:
    explicit SampleApplication(const Instructions &instructions)
        : m_instructions(instructions)
        , m_takesCommands(instructions.application.has("commands"))
        , m_connection(xcb_connect(nullptr, nullptr)) {
        // What poll() sees is all that there is.
        std::setvbuf(stdin, nullptr, _IONBF, 0);
    }

    /// Until the last window has been closed. The process's exit status: 1 without an X server, or when it
    /// went away.
    int run() {
        if (xcb_connection_has_error(m_connection.get()) != 0) {
            std::fputs("sample-app cannot reach an X server.\n", stderr);
            return 1;
        }
        m_screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection.get())).data;
        if (m_instructions.application.has("map"))
            mapFile(m_instructions.application.value("map"));
        if (BusObjects::isWanted(m_instructions.application))
            m_bus = std::make_unique<BusObjects>(m_instructions.application);
        for (const Options &window : m_instructions.windows) {
            if (!window.has("later"))
                open(window);
        }
        while (!isDone()) {
            wait();
            if (xcb_connection_has_error(m_connection.get()) != 0)
                return 1;
            while (xcb_generic_event_t *event = xcb_poll_for_event(m_connection.get())) {
                handle(*event);
                std::free(event);
            }
        }
        xcb_flush(m_connection.get());
        return 0;
    }

  private:
    struct Window {
        int number = 0;
        Options options;
    };
    struct Disconnect {
        void operator()(xcb_connection_t *connection) const { xcb_disconnect(connection); }
    };

    xcb_atom_t atom(const std::string &name) {
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

    void open(const Options &options) {
        const int number = ++m_lastNumber;
        const xcb_window_t window = xcb_generate_id(m_connection.get());
        const std::uint32_t values[] = {m_screen->white_pixel, XCB_EVENT_MASK_STRUCTURE_NOTIFY};
        const auto offset = static_cast<std::int16_t>(20 * (number % 40));
        xcb_create_window(m_connection.get(), XCB_COPY_FROM_PARENT, window, m_screen->root, offset, offset,
                          320, 200, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                          XCB_CW_BACK_PIXEL | XCB_CW_EVENT_MASK, values);
        describe(window, options);
        const auto now = std::chrono::steady_clock::now();
        xcb_map_window(m_connection.get(), window);
        xcb_flush(m_connection.get());
        m_windows[window] = {number, options};
        if (options.has("times"))
            sayTime("shown-at", now);
    }

    void describe(xcb_window_t window, const Options &options) {
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
        if (m_bus && m_instructions.application.has("gtk")) {
            tell("_GTK_UNIQUE_BUS_NAME", "UTF8_STRING", options.value("claim", m_bus->uniqueName()));
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

    void setText(xcb_window_t window, const char *name, const char *type, const std::string &value) {
        xcb_change_property(m_connection.get(), XCB_PROP_MODE_REPLACE, window, atom(name), atom(type), 8,
                            static_cast<std::uint32_t>(value.size()), value.data());
    }

    void setNumber(xcb_window_t window, const char *name, const char *type, std::uint32_t value) {
        xcb_change_property(m_connection.get(), XCB_PROP_MODE_REPLACE, window, atom(name), atom(type), 32, 1,
                            &value);
    }

    void close(xcb_window_t window) {
        xcb_destroy_window(m_connection.get(), window);
        xcb_flush(m_connection.get());
        m_windows.erase(window);
    }

    void handle(const xcb_generic_event_t &event) {
        const int type = event.response_type & 0x7f;
        const auto &message = reinterpret_cast<const xcb_client_message_event_t &>(event);
        if (type == XCB_MAP_NOTIFY)
            mapped(reinterpret_cast<const xcb_map_notify_event_t &>(event).window);
        else if (type == XCB_CLIENT_MESSAGE && message.type == atom("WM_PROTOCOLS") &&
                 message.data.data32[0] == atom("WM_DELETE_WINDOW"))
            askedToClose(message.window);
    }

    void mapped(xcb_window_t window) {
        if (!m_windows.contains(window))
            return;
        const Window shown = m_windows[window];
        const bool flickers = shown.options.value("manner") == "flickers";
        // Who flickers tells it once, so that it never waits for a reader.
        if (!flickers || shown.number == 1)
            say("mapped", shown.number);
        if (flickers) {
            close(window);
            open(shown.options);
        }
    }

    void askedToClose(xcb_window_t window) {
        if (!m_windows.contains(window))
            return;
        const Window asked = m_windows[window];
        if (asked.options.has("times"))
            sayTime("asked-at", std::chrono::steady_clock::now());
        say("asked", asked.number);
        if (asked.options.value("manner") == "ignores")
            return;
        close(window);
        say("closed", asked.number);
    }

    void takeCommand() {
        std::string command;
        if (std::getline(std::cin, command))
            open(m_instructions.windows.back());
        else
            m_isEnded = true;
    }

    /// For an event or a command.
    void wait() {
        xcb_flush(m_connection.get());
        if (m_bus && m_bus->process())
            return;
        // poll() passes over negative ones.
        pollfd sources[] = {{xcb_get_file_descriptor(m_connection.get()), POLLIN, 0},
                            {m_takesCommands ? STDIN_FILENO : -1, POLLIN, 0},
                            {m_bus ? m_bus->descriptor() : -1, m_bus ? m_bus->events() : short{0}, 0}};
        ::poll(sources, std::size(sources), -1);
        if (sources[1].revents != 0)
            takeCommand();
    }

    bool isDone() const {
        return m_isEnded || (m_bus && m_bus->hasQuit()) || (m_windows.empty() && !m_takesCommands);
    }

    const Instructions m_instructions;
    const bool m_takesCommands;
    std::unique_ptr<xcb_connection_t, Disconnect> m_connection;
    const xcb_screen_t *m_screen = nullptr;
    std::map<std::string, xcb_atom_t> m_atoms;
    /// In the order in which they were opened.
    std::map<xcb_window_t, Window> m_windows;
    int m_lastNumber = 0;
    /// Null without a bus.
    std::unique_ptr<BusObjects> m_bus;
    bool m_isEnded = false;
};

} // namespace

} // namespace kestrin::sample

using namespace kestrin::sample;

int main(int count, char **arguments) {
    return SampleApplication(parseArguments({arguments + 1, arguments + count})).run();
}
