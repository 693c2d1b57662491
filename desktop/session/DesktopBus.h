#pragma once

#include <QDBusConnection>

#include <optional>

namespace kestrin::desktop {

/// The session bus; absent where there is none. Never starts one, which libdbus would do, and which takes its
/// time and helps nobody.
std::optional<QDBusConnection> desktopBus();

} // namespace kestrin::desktop
