// A program with a window, watched from outside: the X server tells what is drawn, so that every program is
// measured alike and none has to help.
#pragma once

#include "benchmarks/Child.h"
#include "benchmarks/Input.h"

#include <xcb/damage.h>

#include <chrono>
#include <utility>

namespace kestrin::bench {

/// The window of the same build, and the bare one that it is compared with.
Arguments kestrin();
Arguments bareWindow();

class WindowProgram {
  public:
    /// Starts the program. Returns once its window has been drawn for the first time, with the keyboard's
    /// focus and nothing more to draw.
    explicit WindowProgram(const Arguments &program);

    /// Milliseconds from the start to the time that the window manager lists the window.
    double listed() const { return m_listed; }
    /// Milliseconds from the start to the first time that the whole window was drawn.
    double firstFrame() const { return m_firstFrame; }

    /// Milliseconds from `act` to the time that so large a share of the window has been drawn anew; 0 stands
    /// for anything at all. Gives up when that does not happen.
    template <typename Act>
    double reaction(Act &&act, double share) {
        forgetDrawings();
        const auto start = std::chrono::steady_clock::now();
        act(m_input);
        return waitForDrawing(start, share);
    }

    /// The same, for a window that `act` opens: until all of it has been drawn. From then on this is the
    /// window that is looked at and has the focus, until it is closed.
    template <typename Act>
    double opening(Act &&act) {
        forgetDrawings();
        m_behind = std::exchange(m_window, XCB_NONE);
        const auto start = std::chrono::steady_clock::now();
        act(m_input);
        const double time = waitForDrawing(start, 0.95);
        takeFocus();
        return time;
    }
    /// Closes it by Ctrl+W, and goes back to the other one.
    void close();

    /// Waits until nothing has been drawn for a while.
    void settle();

    /// How often something is drawn in that time.
    int drawings(std::chrono::milliseconds time);

    Input &input() { return m_input; }
    /// Moves the pointer to the middle of the window.
    void pointToMiddle();

    const Child &process() const { return m_process; }

  private:
    using Time = std::chrono::steady_clock::time_point;

    /// The share of the window that the next drawing covers, or -1 when there is none in that time.
    double nextDrawing(std::chrono::milliseconds patience);
    double shareOf(const xcb_generic_event_t &event);
    double shareOfDrawing(const xcb_damage_notify_event_t &drawn);
    void noteList();
    double waitForDrawing(Time start, double share);
    bool isOwn(xcb_drawable_t window) const;
    void watchNewWindows();
    void forgetDrawings();
    void takeFocus();

    XDisplay m_display;
    Input m_input{m_display};
    std::uint8_t m_damageEvent = 0;
    xcb_window_t m_window = XCB_NONE;
    xcb_window_t m_behind = XCB_NONE;
    Time m_start;
    Child m_process;
    double m_listed = 0;
    double m_firstFrame = 0;
};

} // namespace kestrin::bench
