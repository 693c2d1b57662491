#include "benchmarks/BareDesktop.h"

#include "benchmarks/Run.h"
#include "benchmarks/XDisplay.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>

namespace kestrin::bench {

namespace {

class BareX11 final : public BareDesktop {
  public:
    BareX11() {
        const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_change_window_attributes(m_display.xcb(), m_display.root(), XCB_CW_EVENT_MASK, &events);
        m_display.roundTrip();
    }

    std::vector<std::uint64_t> waitForWindows(std::size_t count) override {
        // What has happened up to now is in the list.
        while (const XDisplay::Event event{xcb_poll_for_event(m_display.xcb())}) {
        }
        for (;;) {
            const std::vector<std::uint32_t> windows = m_display.windowList();
            if (windows.size() == count)
                return {windows.begin(), windows.end()};
            const XDisplay::Event event(xcb_wait_for_event(m_display.xcb()));
            if (!event)
                giveUp("the X server has gone.");
        }
    }

    /// All questions under way at once.
    std::size_t readWindows() override {
        std::vector<xcb_get_property_cookie_t> questions;
        for (const std::uint32_t window : m_display.windowList()) {
            for (const std::uint32_t property : m_properties)
                questions.push_back(m_display.ask(window, property, 256));
        }
        std::size_t bytes = 0;
        for (const auto &question : questions) {
            if (const auto reply = m_display.take(question))
                bytes += static_cast<std::size_t>(xcb_get_property_value_length(reply.get()));
        }
        return bytes;
    }

    void requestClosing(std::uint64_t window) override {
        xcb_client_message_event_t message{};
        message.response_type = XCB_CLIENT_MESSAGE;
        message.format = 32;
        message.window = static_cast<std::uint32_t>(window);
        message.type = m_closeWindow;
        message.data.data32[1] = 2;
        xcb_send_event(m_display.xcb(), 0, m_display.root(),
                       XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                       reinterpret_cast<const char *>(&message));
        xcb_flush(m_display.xcb());
    }

  private:
    XDisplay m_display;
    std::uint32_t m_closeWindow = m_display.atom("_NET_CLOSE_WINDOW");
    std::vector<std::uint32_t> m_properties{XCB_ATOM_WM_CLASS,
                                            m_display.atom("_NET_WM_WINDOW_TYPE"),
                                            m_display.atom("_NET_WM_STATE"),
                                            m_display.atom("_GTK_APPLICATION_ID"),
                                            m_display.atom("_KDE_NET_WM_DESKTOP_FILE"),
                                            m_display.atom("_NET_WM_PID")};
};

/// Only looks for what it needs in the text.
class BareSway final : public BareDesktop {
  public:
    explicit BareSway(const char *path) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::strncpy(address.sun_path, path, sizeof address.sun_path - 1);
        if (::connect(m_socket, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0)
            giveUp("sway does not answer.");
        ask(subscribe, R"(["window"])");
    }
    ~BareSway() override { ::close(m_socket); }
    BareSway(const BareSway &) = delete;
    BareSway &operator=(const BareSway &) = delete;

    std::vector<std::uint64_t> waitForWindows(std::size_t count) override {
        for (;;) {
            const std::string tree = ask(getTree, {});
            std::vector<std::uint64_t> windows;
            // A container is told before its process, and what it contains in between.
            std::uint64_t container = 0;
            for (std::size_t at = tree.find('"'); at != std::string::npos; at = tree.find('"', at + 1)) {
                if (tree.compare(at, 6, "\"id\": ") == 0)
                    container = std::stoull(tree.substr(at + 6, 20));
                else if (tree.compare(at, 7, "\"pid\": ") == 0)
                    windows.push_back(container);
            }
            if (windows.size() == count)
                return windows;
            receive();
        }
    }

    std::size_t readWindows() override { return ask(getTree, {}).size(); }

    void requestClosing(std::uint64_t window) override {
        ask(runCommand, "[con_id=" + std::to_string(window) + "] kill");
    }

  private:
    static constexpr std::uint32_t runCommand = 0;
    static constexpr std::uint32_t subscribe = 2;
    static constexpr std::uint32_t getTree = 4;

    struct Message {
        std::uint32_t kind;
        std::string text;
    };

    /// Events that come before the answer are in what it tells.
    std::string ask(std::uint32_t kind, const std::string &text) {
        const std::uint32_t numbers[] = {static_cast<std::uint32_t>(text.size()), kind};
        std::string bytes = "i3-ipc";
        bytes.append(reinterpret_cast<const char *>(numbers), sizeof numbers).append(text);
        if (::write(m_socket, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size()))
            giveUp("sway does not listen.");
        Message message = receive();
        while (message.kind != kind)
            message = receive();
        return message.text;
    }

    Message receive() {
        char header[14];
        std::uint32_t numbers[2];
        read(header, sizeof header);
        std::memcpy(numbers, header + 6, sizeof numbers);
        Message message{numbers[1], std::string(numbers[0], '\0')};
        read(message.text.data(), message.text.size());
        return message;
    }

    void read(char *room, std::size_t size) const {
        if (::recv(m_socket, room, size, MSG_WAITALL) != static_cast<ssize_t>(size))
            giveUp("sway has gone.");
    }

    int m_socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
};

} // namespace

std::unique_ptr<BareDesktop> BareDesktop::ofEnvironment() {
    if (const char *const sway = std::getenv("SWAYSOCK"))
        return std::make_unique<BareSway>(sway);
    return std::make_unique<BareX11>();
}

std::string BareDesktop::label() {
    return std::getenv("SWAYSOCK") ? ", sway" : "";
}

} // namespace kestrin::bench
