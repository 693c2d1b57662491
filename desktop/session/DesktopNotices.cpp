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
const QString acceptance = u"accept"_s;

/// Without an action of ours GNOME Shell brings the application of a clicked notice to the front itself. With
/// one, older versions tell of the click without a token, and then a window that is behind others stays
/// there.
bool opensTheWindow(const QString &gnomeVersion) {
    constexpr int firstWithTokens = 46;
    return gnomeVersion.section(u'.', 0, 0).toInt() < firstWithTokens;
}

} // namespace

DesktopNotices::DesktopNotices(QObject *parent) : QObject(parent) {
    auto bus = desktopBus();
    if (!bus)
        return;
    bus->connect({}, path, service, u"ActionInvoked"_s, this, SLOT(takeAction(uint, QString)));
    bus->connect({}, path, service, u"ActivationToken"_s, this, SLOT(takeToken(uint, QString)));
    bus->connect({}, path, service, u"NotificationClosed"_s, this, SLOT(forget(uint)));
}

bool DesktopNotices::show(const QString &text, const Offer &offer, const Told &told) {
    if (!desktopBus())
        return false;
    const QDBusMessage call =
        QDBusMessage::createMethodCall(service, path, service, u"GetServerInformation"_s);
    callDesktop(this, call, [=, this](const QDBusPendingReply<QString, QString, QString, QString> &reply) {
        const bool isGnome = !reply.isError() && reply.argumentAt<0>() == "gnome-shell"_L1;
        const bool opens = isGnome && opensTheWindow(reply.argumentAt<2>());
        // GNOME Shell takes away what a program has said that has gone.
        notify(text, offer, opens ? QStringList() : QStringList{u"default"_s, u"Open Kestrin"_s},
               [told, fate = isGnome ? Fate::shownWhileWeRun : Fate::shown](bool isShown) {
                   if (told)
                       told(isShown ? fate : Fate::notShown);
               });
    });
    return true;
}

void DesktopNotices::notify(const QString &text, const Offer &offer, QStringList actions,
                            const std::function<void(bool)> &answered) {
    const bool offers = !offer.title.isEmpty();
    if (offers)
        actions += {acceptance, offer.title};
    const QString icon = QStringLiteral(KESTRIN_DESKTOP_ID);
    QDBusMessage call = QDBusMessage::createMethodCall(service, path, service, u"Notify"_s);
    call.setArguments({u"Kestrin"_s, 0U, icon, text, QString(), actions,
                       QVariantMap{{u"desktop-entry"_s, icon}, {u"transient"_s, !offers}}, -1});
    callDesktop(this, call, [this, offer, answered](const QDBusPendingReply<uint> &reply) {
        if (!reply.isError())
            m_shown.insert(reply.value(), offer);
        answered(!reply.isError());
    });
}

void DesktopNotices::takeToken(uint id, const QString &token) {
    if (m_shown.contains(id))
        m_token = token;
}

void DesktopNotices::takeAction(uint id, const QString &action) {
    if (!m_shown.contains(id))
        return;
    const QString token = std::exchange(m_token, {});
    // Once: what was accepted is done.
    const Offer offer = std::exchange(m_shown[id], {});
    if (action != acceptance)
        Q_EMIT clicked(token);
    else if (offer.accept)
        offer.accept(token);
}

void DesktopNotices::forget(uint id) {
    m_shown.remove(id);
}

} // namespace kestrin::desktop
