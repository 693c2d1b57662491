// Which item of a menu quits, and what members of the bus tell about themselves.

#include "desktop/quitting/BusObject.h"
#include "desktop/quitting/QuitCommands.h"
#include "desktop/quitting/TrayMenu.h"
#include "tests/support/Test.h"

class QuitCommandsTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void labels();
    void items();
    void introspection();
};

void QuitCommandsTest::labels() {
    const auto means = [](const QString &label, const QStringList &languages) {
        return meansQuit(label, quitWords(languages), {QString(), u"Foo Talk"_s, u"foo-talk"_s});
    };
    const QStringList german{u"de-AT"_s, u"de"_s};
    for (const QString &label : {u"E_xit"_s, u"&Quit\tCtrl+Q"_s, u" exit "_s, u"Quit…"_s, u"QUIT..."_s,
                                 u"Quit Foo Talk"_s, u"Exit  foo talk"_s})
        QVERIFY2(means(label, {}), qPrintable(label));
    for (const QString &label : {u"_Beenden"_s, u"Foo Talk beenden"_s, u"Quit"_s, u"foo-talk beenden"_s})
        QVERIFY2(means(label, german), qPrintable(label));
    QVERIFY(means(u"終了(_Q)"_s, {u"ja-JP"_s}));
    QVERIFY(means(u"Foo Talk を終了"_s, {u"ja"_s}));
    QVERIFY(means(u"退出(&X)"_s, {u"zh-Hans-CN"_s}));
    QVERIFY(!means(u"Beenden"_s, {}));
    // What merely begins or ends like it does something else.
    for (const QString &label :
         {u""_s, u"Quit Meeting"_s, u"Quit on Close"_s, u"Exit Full Screen"_s, u"Close"_s, u"Foo Talk"_s,
          u"Quiet"_s, u"Don't Quit"_s, u"_"_s, u"Quit Foo__Talk"_s})
        QVERIFY2(!means(label, german), qPrintable(label));
}

void QuitCommandsTest::items() {
    const auto item = [](qint32 id, const QString &label) {
        TrayMenuItem result;
        result.id = id;
        result.label = label;
        return result;
    };
    const QStringList words = quitWords({});
    const auto chosen = [&words](const TrayMenuItem &root) { return quitItem(root, words, {}).value_or(-1); };

    TrayMenuItem root;
    root.children = {item(1, u"Open"_s), item(2, u"Call"_s), item(3, u"Leave"_s)};
    QCOMPARE(chosen(root), -1);
    root.children[2].iconName = u"application-exit"_s;
    QCOMPARE(chosen(root), 3);
    root.children[1].children = {item(4, u"_Quit"_s)};
    QCOMPARE(chosen(root), 4);
    root.children.push_back(item(5, u"E_xit"_s));
    QCOMPARE(chosen(root), 5);

    for (bool TrayMenuItem::*needed :
         {&TrayMenuItem::isEnabled, &TrayMenuItem::isVisible, &TrayMenuItem::isCommand}) {
        root.children[3].*needed = false;
        QCOMPARE(chosen(root), 4);
        root.children[3].*needed = true;
    }
    root.children[3].hasSubmenu = true;
    root.children[1].isEnabled = false;
    QCOMPARE(chosen(root), 3);
}

void QuitCommandsTest::introspection() {
    const auto read = [](const QString &xml) { // children, interfaces, methods of "a"
        const BusObject object = BusObject::fromIntrospection(xml);
        return QStringList{object.children.join(u' '), object.interfaces.join(u' '),
                           object.plainMethods.value(u"a"_s).join(u' ')}
            .join(u'|');
    };
    QCOMPARE(
        read(u"<!DOCTYPE node><node><interface name='a'><signal name='s'><arg type='s'/></signal>"
             "<method name='quit'><annotation name='x' value='y'/></method>"
             "<method name='out'><arg type='b' direction='out'/></method>"
             "<method name='in'><arg type='s'/></method>"
             "<method name='in2'><arg direction='in' type='s'/></method></interface>"
             "<interface name='b'/><node name='x'/><node name='y'><interface name='c'/></node></node>"_s),
        u"x y|a b|quit out"_s);
    QCOMPARE(read(u"<node><node name='x'/><interface name='a'><method name='quit'/>"_s), u"x|a|quit"_s);
    QCOMPARE(read(u"quit"_s), u"||"_s);
}

KESTRIN_TEST(QuitCommandsTest)
#include "tst_quitcommands.moc"
