#include "desktop/session/DesktopBus.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace kestrin::desktop {

std::optional<QDBusConnection> desktopBus() {
    if (!qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS") &&
        !QFile::exists(qEnvironmentVariable("XDG_RUNTIME_DIR") + "/bus"_L1))
        return std::nullopt;
    QDBusConnection bus = QDBusConnection::sessionBus();
    return bus.isConnected() ? std::optional(bus) : std::nullopt;
}

void callDesktop(QObject *caller, const QDBusMessage &call,
                 const std::function<void(const QDBusPendingCall &)> &answered) {
    auto *const watcher = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(call), caller);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, caller, [watcher, answered] {
        watcher->deleteLater();
        answered(*watcher);
    });
}

} // namespace kestrin::desktop
