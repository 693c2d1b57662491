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

} // namespace kestrin::desktop
