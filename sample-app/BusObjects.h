// What a sample application offers on the session bus.
#pragma once

#include "sample-app/Options.h"

#include <systemd/sd-bus.h>

namespace kestrin::sample {

/// Prints one line at once, for whoever waits for it.
void say(const std::string &fact);

class BusObjects {
  public:
    /// Where the GTK application is, in addition to where its name says.
    static constexpr const char *gtkPath = "/org/example/Sample";

    /// On the bus of the environment. Ends the process when there is none.
    explicit BusObjects(const Options &options);
    BusObjects(const BusObjects &) = delete;
    BusObjects &operator=(const BusObjects &) = delete;
    ~BusObjects();

    static bool isWanted(const Options &options);
    int descriptor() const { return sd_bus_get_fd(m_bus); }
    short events() const { return static_cast<short>(sd_bus_get_events(m_bus)); }
    /// Does one thing; false when there is nothing to do.
    bool process() { return sd_bus_process(m_bus, nullptr) > 0; }
    std::string uniqueName() const;
    /// Whether it has accepted a command to quit.
    bool hasQuit() const { return m_hasQuit; }

  private:
    static int receive(sd_bus_message *message, void *self, sd_bus_error *error);
    std::string kindAt(const std::string &path, const std::string &interface) const;
    void obey(sd_bus_message *message, const std::string &kind);
    void answer(sd_bus_message *message, const std::string &kind);
    void answerForTray(sd_bus_message *message, const std::string &member);
    void answerForWatcher(sd_bus_message *message, const std::string &member);
    bool isEnabled(const std::string &kind) const { return m_options.value(kind) != "disabled"; }

    const Options m_options;
    sd_bus *m_bus = nullptr;
    bool m_hasQuit = false;
    /// The labels of the tray icon's menu. Their numbers begin with 1.
    std::vector<std::string> m_menu;
    std::vector<std::string> m_icons;
};

} // namespace kestrin::sample
