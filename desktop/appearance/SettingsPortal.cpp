#include "desktop/appearance/SettingsPortal.h"

#include "desktop/session/DesktopBus.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QGuiApplication>

using namespace Qt::StringLiterals;

namespace kestrin::desktop {

using namespace design;

namespace {

const QString service = u"org.freedesktop.portal.Desktop"_s;
const QString path = u"/org/freedesktop/portal/desktop"_s;
const QString interface = u"org.freedesktop.portal.Settings"_s;

const QString appearanceSpace = u"org.freedesktop.appearance"_s;
const QString gnomeSpace = u"org.gnome.desktop.interface"_s;
const QString gnomeAccessibilitySpace = u"org.gnome.desktop.a11y.interface"_s;

// Values of "color-scheme"; 0 is no preference.
constexpr uint preferDark = 1;
constexpr uint preferLight = 2;

/// On X11 desktops put the factor into the display's resolution, by which Qt draws the whole window larger.
bool isTextScaledByDisplay() {
    return QGuiApplication::platformName() == "xcb"_L1;
}

} // namespace

std::unique_ptr<DesktopPreferences> SettingsPortal::connectToSession() {
    auto bus = desktopBus();
    if (!bus)
        return nullptr;
    auto portal = std::make_unique<SettingsPortal>();
    // Otherwise a program's first connection to a slot that takes one fails, without a word.
    qRegisterMetaType<QDBusVariant>();
    // Without the name of a service: asking the bus who owns it would wait for the answer.
    bus->connect({}, path, interface, u"SettingChanged"_s, portal.get(),
                 SLOT(settingChanged(QString, QString, QDBusVariant)));
    portal->readAll();
    return portal;
}

void SettingsPortal::readAll() {
    // A dictionary of dictionaries is no type that Qt knows by itself; it ends the program over one.
    qDBusRegisterMetaType<QMap<QString, QVariantMap>>();
    QDBusMessage call = QDBusMessage::createMethodCall(service, path, interface, u"ReadAll"_s);
    call.setArguments({QStringList{appearanceSpace, gnomeSpace, gnomeAccessibilitySpace}});
    callDesktop(this, call, [this](const QDBusPendingReply<QMap<QString, QVariantMap>> &reply) {
        if (reply.isError())
            return;
        const QMap<QString, QVariantMap> spaces = reply.value();
        for (auto space = spaces.begin(); space != spaces.end(); ++space) {
            for (auto key = space->begin(); key != space->end(); ++key)
                take(space.key(), key.key(), key.value());
        }
        Q_EMIT changed();
    });
}

void SettingsPortal::settingChanged(const QString &space, const QString &key, const QDBusVariant &value) {
    take(space, key, value.variant());
    Q_EMIT changed();
}

void SettingsPortal::take(const QString &space, const QString &key, const QVariant &value) {
    if (space == appearanceSpace && key == "color-scheme"_L1) {
        const uint scheme = value.toUInt();
        m_prefersDark = scheme == preferDark    ? std::optional(true)
                        : scheme == preferLight ? std::optional(false)
                                                : std::nullopt;
    } else if (space == appearanceSpace && key == "reduced-motion"_L1) {
        m_motion.portals = value.toBool();
    } else if (space == gnomeSpace && key == "enable-animations"_L1) {
        m_motion.gnomes = !value.toBool();
    } else if (space == appearanceSpace && key == "contrast"_L1) {
        m_contrast.portals = value.toBool();
    } else if (space == gnomeAccessibilitySpace && key == "high-contrast"_L1) {
        m_contrast.gnomes = value.toBool();
    } else if (space == gnomeSpace && key == "text-scaling-factor"_L1 && !isTextScaledByDisplay()) {
        m_textScale = value.toDouble();
    }
    m_reducedMotion = m_motion.isWished();
    m_highContrast = m_contrast.isWished();
}

} // namespace kestrin::desktop
