#include "desktop/session/RunningInstance.h"

#include "desktop/session/DesktopBus.h"

#include <QDBusAbstractAdaptor>
#include <QDBusMessage>
#include <QGuiApplication>

using namespace Qt::StringLiterals;

namespace kestrin::desktop {

using namespace foundation;

namespace {

const QString name = QStringLiteral(KESTRIN_DESKTOP_ID);
const QString interface = u"org.freedesktop.Application"_s;
const QString activationToken = u"activation-token"_s;
const QString display = u"x-kestrin-display"_s;
const QString otherDisplay = u"example.kestrin.Error.OtherDisplay"_s;

QString objectPath() {
    return u'/' + QString(name).replace(u'.', u'/').replace(u'-', u'_');
}

QString ownDisplay() {
    const char *const variable =
        QGuiApplication::platformName() == "wayland"_L1 ? "WAYLAND_DISPLAY" : "DISPLAY";
    return qEnvironmentVariable(variable);
}

/// The methods on the bus, which carry the names that are agreed there.
class ApplicationAdaptor : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

  public:
    explicit ApplicationAdaptor(RunningInstance &instance)
        : QDBusAbstractAdaptor(&instance)
        , m_instance(instance) {}

  public Q_SLOTS:
    void Activate(const QVariantMap &platformData, const QDBusMessage &call) {
        if (platformData.contains(display) && platformData.value(display).toString() != ownDisplay()) {
            call.setDelayedReply(true);
            QDBusConnection::sessionBus().send(
                call.createErrorReply(otherDisplay, u"Kestrin is on another display."_s));
            return;
        }
        Q_EMIT m_instance.activated(platformData.value(activationToken).toString());
    }
    /// There are no files to open.
    void Open(const QStringList &, const QVariantMap &platformData, const QDBusMessage &call) {
        Activate(platformData, call);
    }

  private:
    RunningInstance &m_instance;
};

} // namespace

RunningInstance::Answer RunningInstance::activateRunning(const QString &token, const Deadline &deadline) {
    auto bus = desktopBus();
    if (!bus)
        return Answer::none;
    QDBusMessage call = QDBusMessage::createMethodCall(name, objectPath(), interface, u"Activate"_s);
    call.setAutoStartService(false);
    call.setArguments({QVariantMap{{activationToken, token}, {display, ownDisplay()}}});
    const QDBusMessage reply = bus->call(call, QDBus::Block, static_cast<int>(deadline.remaining().count()));
    if (reply.type() == QDBusMessage::ReplyMessage)
        return Answer::activated;
    return reply.errorName() == otherDisplay ? Answer::otherDisplay : Answer::none;
}

bool RunningInstance::claim() {
    auto bus = desktopBus();
    if (!bus)
        return false;
    new ApplicationAdaptor(*this); // owned by this object
    return bus->registerObject(objectPath(), this) && bus->registerService(name);
}

} // namespace kestrin::desktop

#include "RunningInstance.moc"
