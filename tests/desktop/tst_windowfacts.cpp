// What is made of a window's properties, which may hold anything in any size.

#include "desktop/x11/WindowFacts.h"
#include "tests/support/Property.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace kestrin;
using namespace kestrin::desktop;
using samples::Property;

class WindowFactsTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void classes();
    void regularWindows();
    void references();
};

void WindowFactsTest::classes() {
    const auto read = [](quint8 format, const QByteArray &bytes) {
        WindowFacts facts;
        facts.takeWindowClass(Property(XCB_ATOM_STRING, format, bytes).reply());
        return QString(facts.claims.instanceName + u'|' + facts.claims.className);
    };
    QCOMPARE(read(8, QByteArray("zoom\0Zoom", 9)), u"zoom|Zoom"_s);
    QCOMPARE(read(8, "zoom"), u"zoom|"_s);
    QCOMPARE(read(8, QByteArray("a\0b\0c\0", 6)), u"a|b"_s);
    QCOMPARE(read(8, QByteArray("\xE9\0\xE8\0", 4)), u"é|è"_s); // Latin-1
    QCOMPARE(read(8, QByteArray(1024, 'a')), QString(1024, u'a') + u'|');
    QCOMPARE(read(8, {}), u"|"_s);
    QCOMPARE(read(32, "zoom"), u"|"_s);
    QCOMPARE(propertyText(nullptr), QString());
}

void WindowFactsTest::regularWindows() {
    xcb_ewmh_connection_t a{};
    a._NET_WM_STATE_SKIP_TASKBAR = 101;
    a._NET_WM_WINDOW_TYPE_NORMAL = 102;
    a._NET_WM_WINDOW_TYPE_DOCK = 103;
    const quint32 unknown = 9999;
    const auto isRegular = [&a](const Property &types, const Property &states) {
        WindowFacts facts;
        facts.takeWindowType(types.reply(), a);
        facts.takeWindowState(states.reply(), a);
        return facts.isRegular();
    };
    const auto atoms = [](std::initializer_list<quint32> values) { return Property(XCB_ATOM_ATOM, values); };
    const Property dock = atoms({a._NET_WM_WINDOW_TYPE_DOCK});
    const Property none(0, 0, {});
    // The first type that is known counts.
    QVERIFY(!isRegular(atoms({unknown, a._NET_WM_WINDOW_TYPE_DOCK, a._NET_WM_WINDOW_TYPE_NORMAL}), none));
    QVERIFY(isRegular(atoms({unknown, a._NET_WM_WINDOW_TYPE_NORMAL, a._NET_WM_WINDOW_TYPE_DOCK}), none));
    QVERIFY(isRegular(atoms({unknown}), none));
    QVERIFY(!isRegular(none, atoms({unknown, a._NET_WM_STATE_SKIP_TASKBAR})));
    QVERIFY(!isRegular(dock, none));
    // What is malformed says nothing.
    QVERIFY(isRegular(Property(XCB_ATOM_CARDINAL, {a._NET_WM_WINDOW_TYPE_DOCK}), none));
    QVERIFY(isRegular(Property(XCB_ATOM_ATOM, 8, "ggg"), Property(XCB_ATOM_ATOM, 16, "eeeeee")));
    QVERIFY(isRegular(atoms({}), atoms({})));
}

void WindowFactsTest::references() {
    QCOMPARE(propertyWindow(Property(XCB_ATOM_WINDOW, {42}).reply()), 42U);
    QCOMPARE(propertyWindow(Property(XCB_ATOM_CARDINAL, {42}).reply()), 0U);
    QCOMPARE(propertyWindow(Property(XCB_ATOM_WINDOW, {}).reply()), 0U);
    constexpr X11Atoms a{.wmState = 104};
    QVERIFY(isIconic(Property(a.wmState, {3, 0}).reply(), a));
    QVERIFY(!isIconic(Property(a.wmState, {1, 0}).reply(), a));
    QVERIFY(!isIconic(Property(a.wmState, {}).reply(), a));
    QVERIFY(!isIconic(nullptr, a));
}

QTEST_GUILESS_MAIN(WindowFactsTest)
#include "tst_windowfacts.moc"
