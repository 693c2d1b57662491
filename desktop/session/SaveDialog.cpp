#include "desktop/session/SaveDialog.h"

#include "desktop/session/DesktopBus.h"

#include <QDBusMessage>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QUrl>
#include <QUuid>

using namespace Qt::StringLiterals;

namespace kestrin::desktop {

namespace {

const QString service = u"org.freedesktop.portal.Desktop"_s;
const QString path = u"/org/freedesktop/portal/desktop"_s;
const QString chooser = u"org.freedesktop.portal.FileChooser"_s;

/// Wayland's windows have no name that another program knows.
QString nameOf(quintptr window) {
    return QGuiApplication::platformName() == "xcb"_L1 ? u"x11:"_s + QString::number(window, 16) : QString();
}

/// As the portal wants it: in the encoding of file names, and with a null behind it.
QByteArray folderOf(const QString &file) {
    return QFile::encodeName(QFileInfo(file).absolutePath()) + '\0';
}

} // namespace

SaveDialog::SaveDialog(QObject *parent) : QObject(parent) {}

void SaveDialog::look() {
    if (!desktopBus())
        return;
    QDBusMessage call =
        QDBusMessage::createMethodCall(service, path, u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    call.setArguments({chooser, u"version"_s});
    callDesktop(this, call, [this](const QDBusPendingReply<QDBusVariant> &reply) {
        if (!reply.isError())
            Q_EMIT found();
    });
}

void SaveDialog::open(const QString &file, quintptr window) {
    auto bus = desktopBus();
    if (!bus)
        return;
    // The answer may come before the reply, so one has to listen at the place where it will be.
    const QString token = u"kestrin"_s + QUuid::createUuid().toString(QUuid::Id128);
    const QString sender = bus->baseService().mid(1).replace(u'.', u'_');
    const QString interface = u"org.freedesktop.portal.Request"_s;
    if (!m_request.isEmpty())
        bus->disconnect(service, m_request, interface, u"Response"_s, this, SLOT(take(uint, QVariantMap)));
    m_request = path + u"/request/"_s + sender + u'/' + token;
    bus->connect(service, m_request, interface, u"Response"_s, this, SLOT(take(uint, QVariantMap)));
    QDBusMessage call = QDBusMessage::createMethodCall(service, path, chooser, u"SaveFile"_s);
    call.setArguments({nameOf(window), u"Export"_s,
                       QVariantMap{{u"handle_token"_s, token},
                                   {u"modal"_s, true},
                                   {u"current_name"_s, QFileInfo(file).fileName()},
                                   {u"current_folder"_s, folderOf(file)}}});
    bus->asyncCall(call);
}

void SaveDialog::take(uint response, const QVariantMap &results) {
    constexpr uint done = 0;
    const QStringList uris = results.value(u"uris"_s).toStringList();
    if (response == done && !uris.isEmpty())
        Q_EMIT chosen(QUrl(uris.first()).toLocalFile());
}

} // namespace kestrin::desktop
