// An application whose windows look and behave as a test wants.
#pragma once

#include "tests/support/sample-app/BusObjects.h"
#include "tests/support/sample-app/Options.h"

#include <xcb/xcb.h>

#include <cstdint>
#include <map>
#include <memory>
#include <string>

namespace kestrin::sample {

class SampleApplication {
  public:
    explicit SampleApplication(const Instructions &instructions);

    /// Until the last window has been closed. The process's exit status: 1 without an X server, or when it
    /// went away.
    int run();

  private:
    struct Window {
        int number = 0;
        Options options;
    };
    struct Disconnect {
        void operator()(xcb_connection_t *connection) const { xcb_disconnect(connection); }
    };

    xcb_atom_t atom(const std::string &name);
    void open(const Options &options);
    void describe(xcb_window_t window, const Options &options);
    void setText(xcb_window_t window, const char *name, const char *type, const std::string &value);
    void setNumber(xcb_window_t window, const char *name, const char *type, std::uint32_t value);
    void close(xcb_window_t window);
    void handle(const xcb_generic_event_t &event);
    void mapped(xcb_window_t window);
    void askedToClose(xcb_window_t window);
    void takeCommand();
    void wait();
    bool isDone() const;

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

} // namespace kestrin::sample
