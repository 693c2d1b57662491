// The appearance as the settings portal tells it, on a session bus of the test's own.

#include "design/KestrinAppearance.h"
#include "design/platform/DesktopPreferences.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusVariant>
#include <QElapsedTimer>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace kestrin;

using Spaces = QMap<QString, QVariantMap>;

/// A portal that answers from `spaces`.
class Portal : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

  public:
    Spaces spaces;

  public Q_SLOTS:
    QMap<QString, QVariantMap> ReadAll(const QStringList &wanted) {
        Spaces answer;
        for (const QString &space : wanted) {
            if (spaces.contains(space))
                answer.insert(space, spaces.value(space));
        }
        return answer;
    }

  Q_SIGNALS:
    void SettingChanged(const QString &space, const QString &key, const QDBusVariant &value);
};

class PortalTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase();
    void withoutPortal();
    void firstAnswerAndChanges();

  private:
    Portal m_portal;
};

void PortalTest::initTestCase() {
    qDBusRegisterMetaType<QMap<QString, QVariantMap>>();
    QVERIFY(QDBusConnection::sessionBus().isConnected());
}

// First, when nothing else has made the types of its signal known.
void PortalTest::withoutPortal() {
    const KestrinAppearance appearance(DesktopPreferences::create());
    QVERIFY(!appearance.isDark());
    QTest::qWait(50);
    QVERIFY(!appearance.isDark());

    QDBusMessage change = QDBusMessage::createSignal(
        u"/org/freedesktop/portal/desktop"_s, u"org.freedesktop.portal.Settings"_s, u"SettingChanged"_s);
    change << u"org.freedesktop.appearance"_s << u"color-scheme"_s << QVariant::fromValue(QDBusVariant(1U));
    QVERIFY(QDBusConnection::sessionBus().send(change));
    QTRY_VERIFY(appearance.isDark());
}

void PortalTest::firstAnswerAndChanges() {
    m_portal.spaces = {
        {u"org.freedesktop.appearance"_s, {{u"color-scheme"_s, 1U}, {u"contrast"_s, 1U}}},
        {u"org.gnome.desktop.interface"_s, {{u"enable-animations"_s, false}}},
    };
    QDBusConnection bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"portal"_s);
    QVERIFY(bus.registerObject(u"/org/freedesktop/portal/desktop"_s, &m_portal,
                               QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals));
    QVERIFY(bus.registerService(u"org.freedesktop.portal.Desktop"_s));

    const KestrinAppearance appearance(DesktopPreferences::create());
    // Nobody has waited for the answer.
    QVERIFY(!appearance.isDark());
    QTRY_VERIFY(appearance.isDark());
    QVERIFY(appearance.reducedMotion());
    QVERIFY(appearance.highContrast());

    const auto change = [this](const QString &key, uint value) {
        Q_EMIT m_portal.SettingChanged(u"org.freedesktop.appearance"_s, key, QDBusVariant(value));
    };
    change(u"color-scheme"_s, 2);
    QTRY_VERIFY(!appearance.isDark());
    change(u"contrast"_s, 0);
    QTRY_VERIFY(!appearance.highContrast());
    change(u"color-scheme"_s, 1);
    QTRY_VERIFY(appearance.isDark());
    QVERIFY(appearance.reducedMotion());
}

QTEST_MAIN(PortalTest)

#include "tst_portal.moc"
