// What windows tell about themselves, also when what they tell is nonsense.

#include "engine/workspace/x11/WindowFacts.h"

#include <QTest>

#include <initializer_list>

using namespace Qt::StringLiterals;
using namespace kestrin;

namespace {

/// The numbers that a server might give.
const X11Atoms &atoms() {
    static const X11Atoms numbers = [] {
        X11Atoms given;
        quint32 next = 100;
        for (const X11AtomName &atom : x11AtomNames)
            given.*atom.number = next++;
        return given;
    }();
    return numbers;
}

QByteArray items(std::initializer_list<quint32> values) {
    QByteArray bytes;
    for (const quint32 value : values)
        bytes.append(reinterpret_cast<const char *>(&value), sizeof value);
    return bytes;
}

} // namespace

class WindowFactsTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void windowClass_data();
    void windowClass();
    void regularWindows_data();
    void regularWindows();
    void numbers();
    void machines_data();
    void machines();
};

void WindowFactsTest::windowClass_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("format");
    QTest::addColumn<QString>("expected"); // instance|class

    QTest::newRow("both") << QByteArray("zoom\0Zoom\0", 10) << 8 << u"zoom|Zoom"_s;
    QTest::newRow("without the last NUL") << QByteArray("zoom\0Zoom", 9) << 8 << u"zoom|Zoom"_s;
    QTest::newRow("one") << QByteArray("zoom") << 8 << u"zoom|"_s;
    QTest::newRow("empty class") << QByteArray("zoom\0", 5) << 8 << u"zoom|"_s;
    QTest::newRow("more than two") << QByteArray("a\0b\0c\0", 6) << 8 << u"a|b"_s;
    QTest::newRow("nothing") << QByteArray() << 8 << u"|"_s;
    QTest::newRow("numbers") << items({1, 2}) << 32 << u"|"_s;
    QTest::newRow("Latin-1") << QByteArray("\xE9\0\xE8\0", 4) << 8 << u"é|è"_s;
}

void WindowFactsTest::windowClass() {
    QFETCH(QByteArray, bytes);
    QFETCH(int, format);
    WindowFacts facts;
    facts.takeWindowClass({31, static_cast<quint8>(format), bytes});
    QTEST(QString(facts.instanceName + u'|' + facts.className), "expected");
    QCOMPARE(facts.isNamed(), facts.instanceName.size() + facts.className.size() > 0);
}

void WindowFactsTest::regularWindows_data() {
    QTest::addColumn<QByteArray>("types");
    QTest::addColumn<QByteArray>("states");
    QTest::addColumn<bool>("regular");

    const X11Atoms &a = atoms();
    const QByteArray none;
    QTest::newRow("no type") << none << none << true;
    QTest::newRow("normal") << items({a.typeNormal}) << none << true;
    QTest::newRow("dialog") << items({a.typeDialog}) << none << true;
    QTest::newRow("private type first") << items({9999, a.typeDock, a.typeNormal}) << none << false;
    QTest::newRow("private type only") << items({9999}) << none << true;
    QTest::newRow("splash") << items({a.typeSplash}) << none << false;
    QTest::newRow("notification") << items({a.typeNotification}) << none << false;
    QTest::newRow("desktop") << items({a.typeDesktop}) << none << false;
    QTest::newRow("skips the task bar") << items({a.typeNormal}) << items({9999, a.skipTaskbar}) << false;
    QTest::newRow("half an item") << items({a.typeNormal}) << items({a.skipTaskbar}).first(3) << true;
}

void WindowFactsTest::regularWindows() {
    QFETCH(QByteArray, types);
    QFETCH(QByteArray, states);
    WindowFacts facts;
    facts.takeWindowType({core_atoms::atom, 32, types}, atoms());
    facts.takeWindowState({core_atoms::atom, 32, states}, atoms());
    QTEST(facts.isRegular(), "regular");
}

void WindowFactsTest::numbers() {
    WindowFacts facts;
    facts.takeProcess({core_atoms::cardinal, 32, items({4123})});
    QCOMPARE(facts.claimedProcess, 4123);
    // Neither text nor a number that no process can have.
    for (const RawProperty &property : {RawProperty{core_atoms::cardinal, 8, "4123"},
                                        RawProperty{core_atoms::cardinal, 32, "\xFF\xFF\xFF\xFF"},
                                        RawProperty{core_atoms::atom, 32, "\1\1\1\1"}, RawProperty{}}) {
        WindowFacts others;
        others.takeProcess(property);
        QCOMPARE(others.claimedProcess, 0);
    }
    const QByteArray protocols = items({5, atoms().wmDeleteWindow});
    facts.takeProtocols({core_atoms::atom, 32, protocols}, atoms());
    QVERIFY(facts.takesPartInClosing);
    facts.takeProtocols({core_atoms::cardinal, 32, protocols}, atoms());
    QVERIFY(!facts.takesPartInClosing);
}

void WindowFactsTest::machines_data() {
    QTest::addColumn<QString>("client");
    QTest::addColumn<QString>("host");
    QTest::addColumn<bool>("same");

    QTest::newRow("equal") << u"desk"_s << u"Desk"_s << true;
    QTest::newRow("with its domain") << u"desk.home"_s << u"desk"_s << true;
    QTest::newRow("without its domain") << u"desk"_s << u"desk.home"_s << true;
    QTest::newRow("two domains") << u"desk.home"_s << u"desk.work"_s << false;
    QTest::newRow("another") << u"laptop"_s << u"desk"_s << false;
    QTest::newRow("untold") << QString() << u"desk"_s << false;
}

void WindowFactsTest::machines() {
    QFETCH(QString, client);
    QFETCH(QString, host);
    QTEST(isSameMachine(client, host), "same");
}

QTEST_APPLESS_MAIN(WindowFactsTest)
#include "tst_windowfacts.moc"
