#include "desktop/appearance/SettingsPortal.h"

#include "desktop/session/DesktopBus.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusVariant>
#include <QGuiApplication>
#include <QSet>

#include <utility>

using namespace Qt::StringLiterals;

namespace kestrin::desktop {

using namespace design;

namespace {

const QString service = u"org.freedesktop.portal.Desktop"_s;
const QString path = u"/org/freedesktop/portal/desktop"_s;
const QString interface = u"org.freedesktop.portal.Settings"_s;

/// Settings by their key, by the space that they belong to.
const QString answerSignature = u"a{sa{sv}}"_s;

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
    QDBusMessage call = QDBusMessage::createMethodCall(service, path, interface, u"ReadAll"_s);
    call.setArguments({QStringList{appearanceSpace, gnomeSpace, gnomeAccessibilitySpace}});
    callDesktop(this, call, [this](const QDBusPendingCall &reply) {
        const QDBusMessage answer = reply.reply();
        if (answer.signature() != answerSignature)
            return;
        takeAll(answer.arguments().constFirst().value<QDBusArgument>());
        Q_EMIT changed();
    });
}

void SettingsPortal::takeAll(const QDBusArgument &spaces) {
    // Where several desktops are installed, one after the other has answered: first the one that runs. A
    // dictionary of Qt would keep the last.
    QSet<std::pair<QString, QString>> taken;
    spaces.beginMap();
    while (!spaces.atEnd()) {
        QString space;
        QVariantMap settings;
        spaces.beginMapEntry();
        spaces >> space >> settings;
        spaces.endMapEntry();
        for (auto key = settings.cbegin(); key != settings.cend(); ++key) {
            const std::pair name(space, key.key());
            if (!taken.contains(name))
                take(space, key.key(), key.value());
            taken.insert(name);
        }
    }
    spaces.endMap();
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
