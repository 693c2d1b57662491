#pragma once

#include "sample-app/WindowSystem.h"

#include <map>
#include <memory>
#include <string>

#include <xcb/xcb.h>

namespace kestrin::sample {

class X11Windows final : public WindowSystem {
  public:
    /// `busName`: the name on the session bus at which its windows say that they have a GTK application;
    /// empty for none.
    X11Windows(Listener listener, std::string busName);

    bool isThere() const override { return xcb_connection_has_error(m_connection.get()) == 0; }
    int descriptor() const override { return xcb_get_file_descriptor(m_connection.get()); }
    void open(int number, const Options &options) override;
    void close(int number) override;
    void flush() override { xcb_flush(m_connection.get()); }
    void takeEvents() override;

  private:
    struct Disconnect {
        void operator()(xcb_connection_t *connection) const { xcb_disconnect(connection); }
    };

    xcb_atom_t atom(const std::string &name);
    void describe(xcb_window_t window, const Options &options);
    void setText(xcb_window_t window, const char *name, const char *type, const std::string &value);
    void setNumber(xcb_window_t window, const char *name, const char *type, std::uint32_t value);
    void handle(const xcb_generic_event_t &event);

    const Listener m_listener;
    const std::string m_busName;
    const std::unique_ptr<xcb_connection_t, Disconnect> m_connection;
    std::map<std::string, xcb_atom_t> m_atoms;
    std::map<xcb_window_t, int> m_numbers;
};

} // namespace kestrin::sample
