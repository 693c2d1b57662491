// What our extension of the GNOME shell answers when it is asked for the windows.
#pragma once

#include "desktop/sources/WindowSource.h"

#include <systemd/sd-bus.h>

#include <optional>

namespace kestrin::desktop {

/// Far beyond what anybody has open.
constexpr qsizetype mostShellWindows = 5000;
/// Bytes; of a longer text only the beginning is read.
constexpr std::size_t mostShellText = 1000;

/// Those that the answer tells, as many as make sense; none at all when it is something else.
std::optional<QList<SourceWindow>> windowsOfShell(sd_bus_message *answer);

} // namespace kestrin::desktop
