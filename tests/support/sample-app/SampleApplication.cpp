#include "tests/support/sample-app/SampleApplication.h"

#include <xcb/xproto.h>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstdlib>

#include <fcntl.h>
#include <poll.h>
#include <sys/mman.h>
#include <unistd.h>

namespace kestrin::sample {

namespace {

void say(const char *fact, int number) {
    sample::say(std::string(fact) + ' ' + std::to_string(number));
}

std::string upperCase(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return text;
}

/// Left mapped until the process ends.
void mapFile(const std::string &path) {
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0 || ::mmap(nullptr, 1, PROT_READ, MAP_PRIVATE, file, 0) == MAP_FAILED)
        std::fprintf(stderr, "sample-app cannot map %s.\n", path.c_str());
    ::close(file);
}

} // namespace

SampleApplication::SampleApplication(const Options &options)
    : m_options(options)
    , m_connection(xcb_connect(nullptr, nullptr))
    , m_takesCommands(options.takesCommands) {}

int SampleApplication::run() {
    if (xcb_connection_has_error(m_connection.get()) != 0) {
        std::fputs("sample-app cannot reach an X server.\n", stderr);
        return 1;
    }
    m_screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection.get())).data;
    if (!m_options.mappedFile.empty())
        mapFile(m_options.mappedFile);
    if (m_options.bus.isAnything())
        m_bus = BusObjects::start(m_options.bus, [this] { m_isEnded = true; });
    for (const WindowOptions &window : m_options.windows) {
        if (!window.isLater)
            openNumbered(window);
    }
    while (!isDone()) {
        wait();
        if (xcb_connection_has_error(m_connection.get()) != 0)
            return 1;
        while (xcb_generic_event_t *event = xcb_poll_for_event(m_connection.get())) {
            handle(*event);
            std::free(event);
        }
        if (m_reappearsAt && Clock::now() >= *m_reappearsAt) {
            m_reappearsAt.reset();
            say("back");
            openNumbered(m_reappearing);
        }
    }
    xcb_flush(m_connection.get());
    return 0;
}

bool SampleApplication::isDone() const {
    return m_isEnded || (m_windows.empty() && !m_reappearsAt && !m_takesCommands);
}

/// For an event, a command, or the time to come back.
void SampleApplication::wait() {
    xcb_flush(m_connection.get());
    if (m_bus && m_bus->process())
        return;
    int patience = -1;
    if (m_reappearsAt) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(*m_reappearsAt - Clock::now());
        patience = static_cast<int>(std::max<std::int64_t>(left.count(), 0));
    }
    // poll() passes over negative ones.
    pollfd sources[] = {{xcb_get_file_descriptor(m_connection.get()), POLLIN, 0},
                        {m_takesCommands ? STDIN_FILENO : -1, POLLIN, 0},
                        {m_bus ? m_bus->descriptor() : -1, m_bus ? m_bus->events() : short{0}, 0}};
    ::poll(sources, std::size(sources), patience);
    if (m_takesCommands && sources[1].revents != 0)
        takeCommands();
}

void SampleApplication::takeCommands() {
    char text[256];
    const ssize_t got = ::read(STDIN_FILENO, text, sizeof text);
    if (got <= 0) {
        m_isEnded = true;
        return;
    }
    m_commands.append(text, static_cast<std::size_t>(got));
    for (std::size_t end = 0; (end = m_commands.find('\n')) != std::string::npos;
         m_commands.erase(0, end + 1)) {
        const std::string command = m_commands.substr(0, end);
        if (command == "open") {
            openNumbered(m_options.windows.back());
        } else if (command == "close" && !m_windows.empty()) {
            const auto last =
                std::max_element(m_windows.cbegin(), m_windows.cend(), [](const auto &a, const auto &b) {
                    return a.second.number < b.second.number;
                });
            close(last->first);
        }
    }
}

void SampleApplication::openNumbered(const WindowOptions &options) {
    const int number = ++m_lastNumber;
    const xcb_window_t window = open(options, number);
    m_windows[window] = {number, options, 0};
    if (m_firstWindow == 0)
        m_firstWindow = window;
}

xcb_window_t SampleApplication::open(const WindowOptions &options, int number) {
    const xcb_window_t window = xcb_generate_id(m_connection.get());
    const std::uint32_t values[] = {m_screen->white_pixel, XCB_EVENT_MASK_STRUCTURE_NOTIFY};
    const auto offset = static_cast<std::int16_t>(20 * (number % 40));
    xcb_create_window(m_connection.get(), XCB_COPY_FROM_PARENT, window, m_screen->root, offset, offset, 320,
                      200, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                      XCB_CW_BACK_PIXEL | XCB_CW_EVENT_MASK, values);
    describe(window, options);
    setMalformed(window, options);
    xcb_map_window(m_connection.get(), window);
    return window;
}

void SampleApplication::describe(xcb_window_t window, const WindowOptions &options) {
    setText(window, "_NET_WM_NAME", "UTF8_STRING", options.title);
    setText(window, "WM_NAME", "STRING", options.title);
    if (options.instanceName)
        setText(window, "WM_CLASS", "STRING", *options.instanceName + '\0' + options.className + '\0');
    if (!options.gtkApplicationId.empty())
        setText(window, "_GTK_APPLICATION_ID", "UTF8_STRING", options.gtkApplicationId);
    if (m_bus && m_options.bus.gtk != BusManner::absent) {
        setText(window, "_GTK_UNIQUE_BUS_NAME", "UTF8_STRING", m_bus->claimedName());
        setText(window, "_GTK_APPLICATION_OBJECT_PATH", "UTF8_STRING", BusObjects::gtkPath);
    }
    if (!options.kdeDesktopFile.empty())
        setText(window, "_KDE_NET_WM_DESKTOP_FILE", "UTF8_STRING", options.kdeDesktopFile);
    if (options.claimedProcess)
        setNumbers(window, "_NET_WM_PID", "CARDINAL", {*options.claimedProcess});
    setText(window, "WM_CLIENT_MACHINE", "STRING", options.machine);
    if (!options.type.empty())
        setAtoms(window, "_NET_WM_WINDOW_TYPE", {"_NET_WM_WINDOW_TYPE_" + upperCase(options.type)});
    if (options.skipsTaskbar)
        setAtoms(window, "_NET_WM_STATE", {"_NET_WM_STATE_SKIP_TASKBAR"});
    if (options.isTransient)
        setNumbers(window, "WM_TRANSIENT_FOR", "WINDOW", {m_firstWindow});
    if (options.manner != Manner::noDelete)
        setAtoms(window, "WM_PROTOCOLS", {"WM_DELETE_WINDOW"});
}

/// Another type, another format, another length, or bytes that are no text.
void SampleApplication::setMalformed(xcb_window_t window, const WindowOptions &options) {
    for (const std::string &property : options.malformed) {
        if (property == "class")
            setText(window, "WM_CLASS", "STRING", "\xff\xfe without end \x80");
        else if (property == "pid")
            setText(window, "_NET_WM_PID", "CARDINAL", "12345");
        else if (property == "type")
            setNumbers(window, "_NET_WM_WINDOW_TYPE", "CARDINAL", {0xffffffff, 0, 7});
        else if (property == "state")
            setText(window, "_NET_WM_STATE", "ATOM", "\x01\x02\x03");
        else if (property == "protocols")
            setText(window, "WM_PROTOCOLS", "STRING", "WM_DELETE_WINDOW");
        else if (property == "machine")
            setNumbers(window, "WM_CLIENT_MACHINE", "INTEGER", {});
    }
}

xcb_atom_t SampleApplication::atom(const std::string &name) {
    const auto known = m_atoms.find(name);
    if (known != m_atoms.end())
        return known->second;
    const auto cookie =
        xcb_intern_atom(m_connection.get(), 0, static_cast<std::uint16_t>(name.size()), name.c_str());
    xcb_intern_atom_reply_t *reply = xcb_intern_atom_reply(m_connection.get(), cookie, nullptr);
    const xcb_atom_t number = reply != nullptr ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
    std::free(reply);
    m_atoms[name] = number;
    return number;
}

void SampleApplication::setText(xcb_window_t window, const char *name, const char *type,
                                const std::string &value) {
    xcb_change_property(m_connection.get(), XCB_PROP_MODE_REPLACE, window, atom(name), atom(type), 8,
                        static_cast<std::uint32_t>(value.size()), value.data());
}

void SampleApplication::setNumbers(xcb_window_t window, const char *name, const char *type,
                                   const std::vector<std::uint32_t> &values) {
    xcb_change_property(m_connection.get(), XCB_PROP_MODE_REPLACE, window, atom(name), atom(type), 32,
                        static_cast<std::uint32_t>(values.size()), values.data());
}

void SampleApplication::setAtoms(xcb_window_t window, const char *name,
                                 const std::vector<std::string> &values) {
    std::vector<std::uint32_t> numbers;
    numbers.reserve(values.size());
    for (const std::string &value : values)
        numbers.push_back(atom(value));
    setNumbers(window, name, "ATOM", numbers);
}

void SampleApplication::handle(const xcb_generic_event_t &event) {
    switch (event.response_type & 0x7f) {
    case XCB_MAP_NOTIFY:
        mapped(reinterpret_cast<const xcb_map_notify_event_t &>(event).window);
        break;
    case XCB_CLIENT_MESSAGE: {
        const auto &message = reinterpret_cast<const xcb_client_message_event_t &>(event);
        if (message.type == atom("WM_PROTOCOLS") && message.data.data32[0] == atom("WM_DELETE_WINDOW"))
            askedToClose(message.window);
        break;
    }
    default:
        break;
    }
}

void SampleApplication::mapped(xcb_window_t window) {
    const auto found = m_windows.find(window);
    if (found == m_windows.end())
        return;
    const Window shown = found->second;
    // Who flickers tells it once, so that it never waits for a reader.
    if (shown.options.manner != Manner::flickers || shown.number == 1)
        say("mapped", shown.number);
    if (shown.options.manner == Manner::vanishes)
        m_isEnded = true;
    if (shown.options.manner == Manner::flickers) {
        xcb_destroy_window(m_connection.get(), window);
        m_windows.erase(window);
        openNumbered(shown.options);
    }
}

void SampleApplication::askedToClose(xcb_window_t window) {
    const auto found = m_windows.find(window);
    if (found == m_windows.end()) {
        const auto asking = std::find_if(m_windows.begin(), m_windows.end(),
                                         [&](const auto &other) { return other.second.dialog == window; });
        if (asking != m_windows.end()) {
            xcb_destroy_window(m_connection.get(), window);
            asking->second.dialog = 0;
        }
        return;
    }
    Window &asked = found->second;
    say("asked", asked.number);
    switch (asked.options.manner) {
    case Manner::asks:
        if (asked.dialog == 0) {
            WindowOptions question = asked.options;
            question.title = "Do you want to leave?";
            question.type = "dialog";
            question.isTransient = true;
            asked.dialog = open(question, asked.number);
            say("dialog", asked.number);
        }
        break;
    case Manner::ignores:
        break;
    case Manner::reappears:
        m_reappearing = asked.options;
        close(window);
        if (m_windows.empty()) {
            m_reappearsAt = Clock::now() + std::chrono::milliseconds(m_options.reappearsAfterMilliseconds);
            say("away");
        }
        break;
    case Manner::closes:
    case Manner::noDelete:
    case Manner::vanishes:
    case Manner::flickers:
        close(window);
        break;
    }
}

void SampleApplication::close(xcb_window_t window) {
    const Window closing = m_windows[window];
    if (closing.dialog != 0)
        xcb_destroy_window(m_connection.get(), closing.dialog);
    xcb_destroy_window(m_connection.get(), window);
    xcb_flush(m_connection.get());
    m_windows.erase(window);
    if (m_firstWindow == window)
        m_firstWindow = m_windows.empty() ? 0 : m_windows.begin()->first;
    say("closed", closing.number);
}

} // namespace kestrin::sample
