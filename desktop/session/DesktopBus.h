#pragma once

#include <QDBusConnection>
#include <QDBusPendingCallWatcher>

#include <functional>
#include <optional>

namespace kestrin::desktop {

/// The session bus; absent where there is none. Never starts one, which libdbus would do, and which takes its
/// time and helps nobody.
std::optional<QDBusConnection> desktopBus();

/// Calls a method on the session bus, which is there, without waiting. `answered` is called with the reply,
/// or the error, unless `caller` has gone by then.
void callDesktop(QObject *caller, const QDBusMessage &call,
                 const std::function<void(const QDBusPendingCall &)> &answered);

} // namespace kestrin::desktop
