#include "benchmarks/SampleClient.h"

#include "benchmarks/Bench.h"
#include "benchmarks/XDisplay.h"

#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <utility>

namespace kestrin::bench {

namespace {

long long now() {
    return std::chrono::steady_clock::now().time_since_epoch().count();
}

/// The client's life, in a process of its own.
class Client {
  public:
    Client(const std::string &windowClass, Closing closing) : m_closing(closing) {
        m_window = xcb_generate_id(m_display.xcb());
        const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
        if (closing == Closing::requests)
            xcb_change_window_attributes(m_display.xcb(), m_display.root(), XCB_CW_EVENT_MASK, &events);
        xcb_create_window(m_display.xcb(), XCB_COPY_FROM_PARENT, m_window, m_display.root(), 10, 10, 200, 100,
                          0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
        const std::string both = windowClass + '\0' + windowClass + '\0';
        setProperty(XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8, both.size(), both.data());
        char machine[256] = "";
        ::gethostname(machine, sizeof machine - 1);
        setProperty(XCB_ATOM_WM_CLIENT_MACHINE, XCB_ATOM_STRING, 8, std::strlen(machine), machine);
        const auto process = static_cast<std::uint32_t>(::getpid());
        setProperty(m_display.atom("_NET_WM_PID"), XCB_ATOM_CARDINAL, 32, 1, &process);
        const std::uint32_t type = m_display.atom("_NET_WM_WINDOW_TYPE_NORMAL");
        setProperty(m_display.atom("_NET_WM_WINDOW_TYPE"), XCB_ATOM_ATOM, 32, 1, &type);
        setProperty(m_display.atom("WM_PROTOCOLS"), XCB_ATOM_ATOM, 32, 1, &m_deleteWindow);
        m_display.roundTrip();
    }

    ClosingTimes run() {
        ClosingTimes times;
        times.mapped = now();
        xcb_map_window(m_display.xcb(), m_window);
        xcb_flush(m_display.xcb());
        while (const XDisplay::Event event{xcb_wait_for_event(m_display.xcb())}) {
            const int type = event->response_type & 0x7f;
            const auto &message = reinterpret_cast<const xcb_client_message_event_t &>(*event);
            if (type == XCB_CLIENT_MESSAGE && message.data.data32[0] == m_deleteWindow) {
                times.askedToClose = now();
                break;
            }
            if (type == XCB_PROPERTY_NOTIFY && m_closing == Closing::requests && isListed())
                requestClosing();
        }
        return times;
    }

  private:
    void setProperty(std::uint32_t property, std::uint32_t type, std::uint8_t format, std::size_t count,
                     const void *data) {
        xcb_change_property(m_display.xcb(), XCB_PROP_MODE_REPLACE, m_window, property, type, format,
                            static_cast<std::uint32_t>(count), data);
    }

    bool isListed() {
        const auto windows = m_display.windowList();
        return std::find(windows.begin(), windows.end(), m_window) != windows.end();
    }

    void requestClosing() {
        xcb_client_message_event_t message{};
        message.response_type = XCB_CLIENT_MESSAGE;
        message.format = 32;
        message.window = m_window;
        message.type = m_closeWindow;
        message.data.data32[1] = 2;
        xcb_send_event(m_display.xcb(), 0, m_display.root(),
                       XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                       reinterpret_cast<const char *>(&message));
        xcb_flush(m_display.xcb());
        m_closing = Closing::awaits;
    }

    Closing m_closing;
    XDisplay m_display;
    std::uint32_t m_deleteWindow = m_display.atom("WM_DELETE_WINDOW");
    std::uint32_t m_closeWindow = m_display.atom("_NET_CLOSE_WINDOW");
    std::uint32_t m_window = 0;
};

} // namespace

SampleClient::SampleClient(const std::string &windowClass, Closing closing) {
    int ends[2] = {-1, -1};
    if (::pipe(ends) != 0)
        giveUp("there are no more pipes.");
    m_process = ::fork();
    if (m_process == 0) {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        const ClosingTimes times = Client(windowClass, closing).run();
        // Who reads nothing does not want to know.
        const ssize_t written = ::write(ends[1], &times, sizeof times);
        ::_exit(written == sizeof times ? 0 : 1);
    }
    ::close(ends[1]);
    m_times = ends[0];
}

SampleClient::SampleClient(SampleClient &&other) noexcept
    : m_process(std::exchange(other.m_process, -1))
    , m_times(std::exchange(other.m_times, -1)) {}

SampleClient::~SampleClient() {
    if (m_process <= 0)
        return;
    ::kill(m_process, SIGKILL);
    ::waitpid(m_process, nullptr, 0);
    ::close(m_times);
}

ClosingTimes SampleClient::times() {
    ClosingTimes times;
    if (::read(m_times, &times, sizeof times) != sizeof times)
        giveUp("a window was not asked to close.");
    return times;
}

void waitForWindows(std::size_t count) {
    XDisplay display;
    for (int tries = 0; display.windowList().size() != count; ++tries) {
        if (tries == 2000)
            giveUp("the window manager does not list the windows.");
        ::poll(nullptr, 0, 10);
    }
}

std::vector<SampleClient> openWindows(std::size_t count, const std::string &windowClass) {
    std::vector<SampleClient> clients;
    for (std::size_t i = 0; i < count; ++i)
        clients.emplace_back(windowClass + std::to_string(i));
    waitForWindows(count);
    return clients;
}

} // namespace kestrin::bench
