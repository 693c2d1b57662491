// Reading what members of the bus answer, which may be anything.
#pragma once

#include "desktop/quitting/TrayMenu.h"

#include <QByteArray>
#include <QList>

#include <systemd/sd-bus.h>

namespace kestrin::desktop {

/// The next value, of type 's', 'o' or 'g'; null when it is something else.
QByteArray readText(sd_bus_message *message, char type = 's');

/// An array of strings, up to the first that is none.
QList<QByteArray> readTexts(sd_bus_message *message);

/// A property that is a text or an object path; null when it is something else.
QByteArray readTextVariant(sd_bus_message *message);

/// A menu as com.canonical.dbusmenu lays it out, (ia{sv}av), as deep as the bus lets messages be. False when
/// it is something else, or more than any honest application has.
bool readTrayMenu(sd_bus_message *message, TrayMenuItem &root);

} // namespace kestrin::desktop
