#include "benchmarks/WindowProgram.h"

#include "benchmarks/Run.h"

#include <poll.h>

namespace kestrin::bench {

namespace {

using Milliseconds = std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr Milliseconds patience{10'000};
constexpr Milliseconds quiet{200};

double elapsedSince(steady_clock::time_point start) {
    return std::chrono::duration<double, std::milli>(steady_clock::now() - start).count();
}

} // namespace

Arguments kestrin() {
    // By somebody who has used it before: the very first start puts questions over the pages.
    static const bool isUsed = (run({built("cli/kestrinctl"), "on"}), true);
    static_cast<void>(isUsed);
    return {built("app/Kestrin/kestrin")};
}

Arguments bareWindow() {
    return {built("benchmarks/bare-window/bare-window")};
}

WindowProgram::WindowProgram(const Arguments &program)
    : m_start((watchNewWindows(), steady_clock::now()))
    , m_process(program, Child::Readiness::isStarted)
    , m_firstFrame(waitForDrawing(m_start, 0.95)) {
    takeFocus();
    settle();
    if (m_listed == 0)
        giveUp("the window manager does not list a window.");
}

void WindowProgram::settle() {
    const auto start = steady_clock::now();
    while (nextDrawing(quiet) >= 0) {
        if (steady_clock::now() - start > patience)
            giveUp("a window is drawn all the time.");
    }
}

void WindowProgram::close() {
    m_input.typeWithControl(letter('w'));
    m_window = std::exchange(m_behind, XCB_NONE);
    settle();
    takeFocus();
}

int WindowProgram::drawings(Milliseconds time) {
    int count = 0;
    const auto end = steady_clock::now() + time;
    for (auto now = steady_clock::now(); now < end; now = steady_clock::now()) {
        if (nextDrawing(std::chrono::ceil<Milliseconds>(end - now)) >= 0)
            ++count;
    }
    return count;
}

void WindowProgram::pointToMiddle() {
    const auto geometryCookie = xcb_get_geometry(m_display.xcb(), m_window);
    const auto placeCookie = xcb_translate_coordinates(m_display.xcb(), m_window, m_display.root(), 0, 0);
    const std::unique_ptr<xcb_get_geometry_reply_t, XDisplay::Free> geometry(
        xcb_get_geometry_reply(m_display.xcb(), geometryCookie, nullptr));
    const std::unique_ptr<xcb_translate_coordinates_reply_t, XDisplay::Free> place(
        xcb_translate_coordinates_reply(m_display.xcb(), placeCookie, nullptr));
    if (!geometry || !place)
        giveUp("a window has gone.");
    m_input.point(place->dst_x + geometry->width / 2, place->dst_y + geometry->height / 2);
    settle();
}

double WindowProgram::nextDrawing(Milliseconds limit) {
    const auto end = steady_clock::now() + limit;
    for (;;) {
        while (const XDisplay::Event event{xcb_poll_for_event(m_display.xcb())}) {
            const double share = shareOf(*event);
            if (share >= 0)
                return share;
        }
        const auto left = std::chrono::ceil<Milliseconds>(end - steady_clock::now());
        if (left.count() <= 0)
            return -1;
        pollfd display{xcb_get_file_descriptor(m_display.xcb()), POLLIN, 0};
        ::poll(&display, 1, static_cast<int>(left.count()));
    }
}

/// -1 for what is no drawing of the program's.
double WindowProgram::shareOf(const xcb_generic_event_t &event) {
    const int type = event.response_type & 0x7f;
    if (type == m_damageEvent)
        return shareOfDrawing(reinterpret_cast<const xcb_damage_notify_event_t &>(event));
    if (type == XCB_PROPERTY_NOTIFY) {
        const auto &changed = reinterpret_cast<const xcb_property_notify_event_t &>(event);
        if (changed.atom == m_display.clientList() && m_listed == 0)
            noteList();
    } else if (type == XCB_CREATE_NOTIFY) {
        const auto &created = reinterpret_cast<const xcb_create_notify_event_t &>(event);
        xcb_damage_create(m_display.xcb(), xcb_generate_id(m_display.xcb()), created.window,
                          XCB_DAMAGE_REPORT_LEVEL_RAW_RECTANGLES);
        xcb_flush(m_display.xcb());
    }
    return -1;
}

double WindowProgram::shareOfDrawing(const xcb_damage_notify_event_t &drawn) {
    // The window manager's frame around the window is told of too.
    if (m_window == XCB_NONE && drawn.drawable != m_behind && isOwn(drawn.drawable))
        m_window = drawn.drawable;
    if (drawn.drawable != m_window)
        return -1;
    return static_cast<double>(drawn.area.width) * drawn.area.height /
           (static_cast<double>(drawn.geometry.width) * drawn.geometry.height);
}

void WindowProgram::noteList() {
    const double time = elapsedSince(m_start);
    const auto windows = m_display.windowList();
    // In the order in which they came.
    if (!windows.empty() && isOwn(windows.back()))
        m_listed = time;
}

double WindowProgram::waitForDrawing(Time start, double share) {
    double drawn = 0;
    do {
        const double more = nextDrawing(patience);
        if (more < 0)
            giveUp("a window draws " + std::to_string(drawn) + " of itself instead of " +
                   std::to_string(share) + ".");
        drawn += more;
    } while (drawn < share);
    return elapsedSince(start);
}

bool WindowProgram::isOwn(xcb_drawable_t window) const {
    const XDisplay::Property reply = m_display.take(m_display.ask(window, m_display.atom("_NET_WM_PID"), 1));
    return reply && xcb_get_property_value_length(reply.get()) == 4 &&
           *static_cast<const pid_t *>(xcb_get_property_value(reply.get())) == m_process.id();
}

void WindowProgram::watchNewWindows() {
    xcb_connection_t *const xcb = m_display.xcb();
    const xcb_query_extension_reply_t *const extension = xcb_get_extension_data(xcb, &xcb_damage_id);
    if (!extension || !extension->present)
        giveUp("the X server has no DAMAGE.");
    m_damageEvent = static_cast<std::uint8_t>(extension->first_event + XCB_DAMAGE_NOTIFY);
    const std::unique_ptr<xcb_damage_query_version_reply_t, XDisplay::Free> version(
        xcb_damage_query_version_reply(xcb, xcb_damage_query_version(xcb, 1, 1), nullptr));
    const std::uint32_t events = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(xcb, m_display.root(), XCB_CW_EVENT_MASK, &events);
    m_display.roundTrip();
}

void WindowProgram::forgetDrawings() {
    while (nextDrawing(Milliseconds(0)) >= 0) {
    }
}

/// Qt's windows learn of the focus from the X server, whoever gives it.
void WindowProgram::takeFocus() {
    settle();
    xcb_set_input_focus(m_display.xcb(), XCB_INPUT_FOCUS_PARENT, m_window, XCB_CURRENT_TIME);
    m_display.roundTrip();
}

} // namespace kestrin::bench
