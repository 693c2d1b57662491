// What the portal says about the appearance, and where its dialog lets a file go, on a session bus of the
// test's own.

#include "design/KestrinAppearance.h"
#include "desktop/appearance/Appearance.h"
#include "desktop/session/SaveDialog.h"
#include "tests/support/Test.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>

#include <utility>

using namespace kestrin::design;

const QString path = u"/org/freedesktop/portal/desktop"_s;

/// A portal that knows more than it is asked for, and names a space twice, as some do where several desktops
/// are installed.
class Portal : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

  public Q_SLOTS:
    void ReadAll(const QStringList &, const QDBusMessage &call) {
        const std::pair<QString, QVariantMap> spaces[] = {
            {u"org.freedesktop.appearance"_s,
             {{u"color-scheme"_s, 1U}, {u"contrast"_s, 1U}, {u"reduced-motion"_s, 1U}}},
            {u"org.gnome.desktop.interface"_s,
             {{u"enable-animations"_s, true},
              {u"color-scheme"_s, u"default"_s},
              {u"text-scaling-factor"_s, 1.5}}},
            {u"org.gnome.desktop.a11y.interface"_s, {{u"high-contrast"_s, false}}},
            // of the desktop that does not run
            {u"org.freedesktop.appearance"_s, {{u"color-scheme"_s, 2U}}},
        };
        QDBusArgument answer;
        answer.beginMap(QMetaType::fromType<QString>(), QMetaType::fromType<QVariantMap>());
        for (const auto &[space, keys] : spaces) {
            answer.beginMapEntry();
            answer << space << keys;
            answer.endMapEntry();
        }
        answer.endMap();
        call.setDelayedReply(true);
        QDBusConnection(u"portal"_s).send(call.createReply(QVariant::fromValue(answer)));
    }
};

/// The portal's dialog, and somebody who answers it.
class Chooser : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.FileChooser")
    Q_PROPERTY(uint version MEMBER version)

  public:
    uint version = 3;
    /// What was asked for last.
    QVariantMap options;
    uint response = 0;
    QString answer;

  public Q_SLOTS:
    QDBusObjectPath SaveFile(const QString &, const QString &, const QVariantMap &wanted,
                             const QDBusMessage &call) {
        options = wanted;
        const QString place = path + u"/request/"_s + call.service().mid(1).replace(u'.', u'_') + u'/' +
                              wanted.value(u"handle_token"_s).toString();
        QDBusMessage signal =
            QDBusMessage::createSignal(place, u"org.freedesktop.portal.Request"_s, u"Response"_s);
        signal << response << QVariantMap{{u"uris"_s, QStringList{answer}}};
        QDBusConnection(u"portal"_s).send(signal);
        return QDBusObjectPath(place);
    }
};

class PortalTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void changesWithoutPortal();
    void firstAnswerAndChanges();
    void filesAreChosen();

  private:
    static void change(const QString &key, uint value) {
        QDBusMessage signal =
            QDBusMessage::createSignal(path, u"org.freedesktop.portal.Settings"_s, u"SettingChanged"_s);
        signal << u"org.freedesktop.appearance"_s << key << QVariant::fromValue(QDBusVariant(value));
        QVERIFY(QDBusConnection::sessionBus().send(signal));
    }
};

// First, when nothing else has made the types of its signal known.
void PortalTest::changesWithoutPortal() {
    KestrinAppearance::shared().follow(makePreferences());
    change(u"color-scheme"_s, 1);
    QTRY_VERIFY(KestrinAppearance::shared().isDark());
}

void PortalTest::firstAnswerAndChanges() {
    Portal portal;
    QDBusConnection bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"portal"_s);
    QVERIFY(bus.registerObject(path, &portal, QDBusConnection::ExportAllSlots));
    QVERIFY(bus.registerService(u"org.freedesktop.portal.Desktop"_s));

    KestrinAppearance appearance(nullptr);
    appearance.follow(makePreferences());
    // Nobody has waited for the answer.
    QVERIFY(!appearance.isDark());
    QTRY_VERIFY(appearance.isDark());
    QVERIFY(appearance.reducedMotion() && appearance.highContrast());
    change(u"contrast"_s, 0);
    QTRY_VERIFY(!appearance.highContrast());
    QVERIFY(appearance.isDark() && appearance.reducedMotion());
    QCOMPARE(appearance.textScale(), 1.25); // no more than there is room for
    change(u"reduced-motion"_s, 0);
    QTRY_VERIFY(!appearance.reducedMotion());
    change(u"color-scheme"_s, 0);
    QTRY_VERIFY(!appearance.isDark());
}

void PortalTest::filesAreChosen() {
    SaveDialog dialog;
    QSignalSpy found(&dialog, &SaveDialog::found);
    QSignalSpy chosen(&dialog, &SaveDialog::chosen);
    Chooser chooser;
    QDBusConnection bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"portal"_s);
    QVERIFY(bus.registerObject(path, &chooser,
                               QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllProperties));
    static_cast<void>(bus.registerService(u"org.freedesktop.portal.Desktop"_s));
    dialog.look();
    QTRY_COMPARE(found.size(), 1);

    chooser.answer = u"file:///home/somebody/a%20log.csv"_s;
    dialog.open(u"/home/somebody/log.csv"_s, 42);
    QTRY_COMPARE(chosen.size(), 1);
    QCOMPARE(chosen.takeFirst().first().toString(), u"/home/somebody/a log.csv"_s);
    QCOMPARE(chooser.options.value(u"current_name"_s).toString(), u"log.csv"_s);
    QCOMPARE(chooser.options.value(u"current_folder"_s).toByteArray(), QByteArray("/home/somebody\0", 15));
    // Who goes back has chosen nothing; the next one counts again.
    chooser.response = 1;
    dialog.open(u"/x"_s, 42);
    QTRY_COMPARE(chooser.options.value(u"current_name"_s).toString(), u"x"_s);
    chooser.response = 0;
    dialog.open(u"/y"_s, 42);
    QTRY_COMPARE(chosen.size(), 1);
    QCOMPARE(chooser.options.value(u"current_name"_s).toString(), u"y"_s);
}

KESTRIN_TEST(PortalTest)

#include "tst_portal.moc"
