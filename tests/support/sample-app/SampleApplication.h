// An application whose windows look and behave as a test wants.
#pragma once

#include "tests/support/sample-app/BusObjects.h"
#include "tests/support/sample-app/Options.h"

#include <xcb/xcb.h>

#include <chrono>
#include <map>
#include <memory>
#include <string>

namespace kestrin::sample {

class SampleApplication {
  public:
    explicit SampleApplication(const Options &options);

    /// Until the last window has been closed. The process's exit status: 1 without an X server, or when it
    /// went away.
    int run();

  private:
    struct Window {
        int number = 0;
        WindowOptions options;
        /// The question that it asks; 0 while it asks none.
        xcb_window_t dialog = 0;
    };
    struct Disconnect {
        void operator()(xcb_connection_t *connection) const { xcb_disconnect(connection); }
    };
    using Clock = std::chrono::steady_clock;

    xcb_atom_t atom(const std::string &name);
    xcb_window_t open(const WindowOptions &options, int number);
    void describe(xcb_window_t window, const WindowOptions &options);
    void setMalformed(xcb_window_t window, const WindowOptions &options);
    void setAtoms(xcb_window_t window, const char *name, const std::vector<std::string> &values);
    void setText(xcb_window_t window, const char *name, const char *type, const std::string &value);
    void setNumbers(xcb_window_t window, const char *name, const char *type,
                    const std::vector<std::uint32_t> &values);

    void openNumbered(const WindowOptions &options);
    void close(xcb_window_t window);
    void handle(const xcb_generic_event_t &event);
    void mapped(xcb_window_t window);
    void askedToClose(xcb_window_t window);
    void takeCommands();
    void wait();
    bool isDone() const;

    const Options m_options;
    std::unique_ptr<xcb_connection_t, Disconnect> m_connection;
    const xcb_screen_t *m_screen = nullptr;
    std::map<std::string, xcb_atom_t> m_atoms;
    std::map<xcb_window_t, Window> m_windows;
    xcb_window_t m_firstWindow = 0;
    int m_lastNumber = 0;
    /// Null without a bus.
    std::unique_ptr<BusObjects> m_bus;
    std::string m_commands;
    bool m_takesCommands = false;
    bool m_isEnded = false;
    /// While it is away.
    std::optional<Clock::time_point> m_reappearsAt;
    WindowOptions m_reappearing;
};

} // namespace kestrin::sample
