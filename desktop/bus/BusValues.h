// Reading what members of the bus answer, which may be anything.
#pragma once

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

} // namespace kestrin::desktop
