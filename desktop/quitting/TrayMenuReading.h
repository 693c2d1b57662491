#pragma once

#include "desktop/quitting/TrayMenu.h"

#include <systemd/sd-bus.h>

namespace kestrin::desktop {

/// A menu as com.canonical.dbusmenu lays it out, (ia{sv}av), as deep as the bus lets messages be. False when
/// it is something else, or more than any honest application has.
bool readTrayMenu(sd_bus_message *message, TrayMenuItem &root);

} // namespace kestrin::desktop
