#include "desktop/session/DesktopNotices.h"

#include "desktop/session/DesktopBus.h"

#include <QDBusMessage>
#include <QDBusPendingReply>

#include <utility>

using namespace Qt::StringLiterals;

namespace kestrin::desktop {

namespace {

const QString service = u"org.freedesktop.Notifications"_s;
const QString path = u"/org/freedesktop/Notifications"_s;

} // namespace

DesktopNotices::DesktopNotices(QObject *parent) : QObject(parent) {
    auto bus = desktopBus();
    if (!bus)
        return;
    bus->connect({}, path, service, u"ActionInvoked"_s, this, SLOT(takeAction(uint, QString)));
    bus->connect({}, path, service, u"ActivationToken"_s, this, SLOT(takeToken(uint, QString)));
    bus->connect({}, path, service, u"NotificationClosed"_s, this, SLOT(forget(uint)));
}

bool DesktopNotices::show(const QString &text) {
    if (!desktopBus())
        return false;
    const QString icon = QStringLiteral(KESTRIN_DESKTOP_ID);
    QDBusMessage call = QDBusMessage::createMethodCall(service, path, service, u"Notify"_s);
    call.setArguments({u"Kestrin"_s, 0U, icon, text, QString(), QStringList{u"default"_s, u"Open Kestrin"_s},
                       QVariantMap{{u"desktop-entry"_s, icon}, {u"transient"_s, true}}, -1});
    callDesktop(this, call, [this](const QDBusPendingReply<uint> &reply) {
        if (!reply.isError())
            m_ids.append(reply.value());
    });
    return true;
}

void DesktopNotices::takeToken(uint id, const QString &token) {
    if (m_ids.contains(id))
        m_token = token;
}

void DesktopNotices::takeAction(uint id, const QString &) {
    if (m_ids.contains(id))
        Q_EMIT clicked(std::exchange(m_token, {}));
}

void DesktopNotices::forget(uint id) {
    m_ids.removeOne(id);
}

} // namespace kestrin::desktop
