#include "desktop/session/TrayHost.h"

#include "desktop/session/DesktopBus.h"

#include <QDBusMessage>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>

using namespace Qt::StringLiterals;

namespace kestrin::desktop {

namespace {

const QString watcher = u"org.kde.StatusNotifierWatcher"_s;
const QString watcherPath = u"/StatusNotifierWatcher"_s;

} // namespace

TrayHost::TrayHost(QObject *parent) : QObject(parent) {
    auto bus = desktopBus();
    if (!bus)
        return;
    auto *const services =
        new QDBusServiceWatcher(watcher, *bus, QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(services, &QDBusServiceWatcher::serviceRegistered, this, &TrayHost::ask);
    connect(services, &QDBusServiceWatcher::serviceUnregistered, this, [this] { set(false); });
    // The watcher may be there before a panel shows what it knows.
    for (const char *const signal : {"StatusNotifierHostRegistered", "StatusNotifierHostUnregistered"})
        bus->connect({}, watcherPath, watcher, QString::fromLatin1(signal), this, SLOT(ask()));
    ask();
}

void TrayHost::ask() {
    QDBusMessage call =
        QDBusMessage::createMethodCall(watcher, watcherPath, u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    call.setAutoStartService(false);
    call.setArguments({watcher, u"IsStatusNotifierHostRegistered"_s});
    callDesktop(this, call, [this](const QDBusPendingReply<QDBusVariant> &reply) {
        set(!reply.isError() && reply.value().variant().toBool());
    });
}

void TrayHost::set(bool isPresent) {
    if (m_isPresent == isPresent)
        return;
    m_isPresent = isPresent;
    Q_EMIT changed();
}

} // namespace kestrin::desktop
