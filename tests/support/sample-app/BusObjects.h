// What a sample application offers on the session bus.
#pragma once

#include "tests/support/sample-app/Options.h"

#include <systemd/sd-bus.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace kestrin::sample {

/// Prints one line at once, for whoever waits for it.
void say(const std::string &fact);

class BusObjects {
  public:
    /// Where the GTK application is, in addition to where its name says.
    static constexpr const char *gtkPath = "/org/example/Sample";

    /// On the bus of the environment; null when there is none. `quit` is called for every command to quit
    /// that is accepted.
    static std::unique_ptr<BusObjects> start(const BusOptions &options, std::function<void()> quit);

    BusObjects(const BusObjects &) = delete;
    BusObjects &operator=(const BusObjects &) = delete;
    ~BusObjects();

    int descriptor() const { return sd_bus_get_fd(m_bus); }
    short events() const { return static_cast<short>(sd_bus_get_events(m_bus)); }
    /// Does one thing; false when there is nothing to do.
    bool process();
    /// What its windows say.
    std::string claimedName() const;

  private:
    struct MenuEntry {
        int id;
        std::string label;
        std::vector<MenuEntry> children;
    };

    BusObjects(sd_bus *bus, const BusOptions &options, std::function<void()> quit);

    static int receive(sd_bus_message *message, void *self, sd_bus_error *error);
    static int registerIcon(sd_bus_message *message, void *self, sd_bus_error *error);
    static int readIcons(sd_bus *bus, const char *path, const char *interface, const char *property,
                         sd_bus_message *reply, void *self, sd_bus_error *error);
    static int registered(sd_bus_message *message, void *self, sd_bus_error *error);

    bool take(sd_bus_message *message);
    bool takeGtk(sd_bus_message *message, const std::string &member);
    bool takeKde(sd_bus_message *message, const std::string &member);
    bool takeTray(sd_bus_message *message, const std::string &member);
    void command(sd_bus_message *message, BusManner manner, const std::string &fact, const char *types);
    void appendMenu(sd_bus_message *reply, const MenuEntry &entry) const;
    void watch();
    void showIcon();

    static const sd_bus_vtable watcherTable[];

    sd_bus *m_bus;
    const BusOptions m_options;
    std::function<void()> m_quit;
    MenuEntry m_menu{0, "", {}};
    std::vector<std::string> m_icons;
};

} // namespace kestrin::sample
