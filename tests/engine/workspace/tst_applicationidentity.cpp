// Who an application is by its windows, its package and its executable, also when they tell nonsense or
// nothing. What well-behaved windows tell is tested on a real desktop.

#include "engine/workspace/x11/ApplicationIdentity.h"
#include "engine/workspace/x11/DesktopEntryIndex.h"
#include "engine/workspace/x11/DesktopReading.h"
#include "engine/workspace/x11/ProcessIdentity.h"
#include "engine/workspace/x11/WindowFacts.h"
#include "tests/support/Files.h"

#include <QTemporaryDir>
#include <QTest>

#include <initializer_list>

using namespace Qt::StringLiterals;
using namespace kestrin;

namespace {

WindowFacts window(const QString &instance, const QString &windowClass) {
    WindowFacts facts;
    facts.instanceName = instance;
    facts.className = windowClass;
    return facts;
}

QByteArray items(std::initializer_list<quint32> values) {
    QByteArray bytes;
    for (const quint32 value : values)
        bytes.append(reinterpret_cast<const char *>(&value), sizeof value);
    return bytes;
}

} // namespace

class ApplicationIdentityTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void identity();
    void representative();
    void sandboxes();
    void executables();
    void windowClass();
    void regularWindows();
    void claimedProcesses();
    void machines();
};

void ApplicationIdentityTest::identity() {
    const QTemporaryDir folder;
    const auto install = [&folder](const QString &id, const QByteArray &lines) {
        samples::write(folder.filePath(id + u".desktop"_s), "[Desktop Entry]\nType=Application\n" + lines);
    };
    install(u"us.zoom.Zoom"_s, "Name=Zoom Workplace\n");
    install(u"my-zoom-starter"_s, "Name=Meetings\nStartupWMClass=meetings\n");
    install(u"teams-for-linux_teams-for-linux"_s, "Name=Teams for Linux\nStartupWMClass=teams-for-linux\n");
    install(u"nameless"_s, "Name=\n");
    DesktopEntryIndex entries({QFile::encodeName(folder.path())}, {});
    const auto identityOf = [&entries](const WindowFacts &facts, const ProcessIdentity &process = {}) {
        const auto identity = ApplicationIdentity::of(facts, process, entries);
        return QStringList{identity.name, identity.identifier.value_or(u"none"_s)};
    };

    const WindowFacts video = window(u"a"_s, u"Video"_s);
    QCOMPARE(identityOf(video, {u"/app/zoom"_s, u"us.zoom.Zoom"_s}),
             (QStringList{u"Zoom Workplace"_s, u"us.zoom.xos"_s}));
    // A sandbox without an entry, an unknown one and a known one.
    QCOMPARE(identityOf(video, {{}, u"us.zoom.Zoom2"_s}), (QStringList{u"Video"_s, u"none"_s}));
    QCOMPARE(identityOf({}, {u"/snap/z/zoom"_s, u"zoom-client_zoom-client"_s}),
             (QStringList{u"zoom"_s, u"us.zoom.xos"_s}));
    QCOMPARE(identityOf(window(u"teams-for-linux"_s, u"teams-for-linux"_s)),
             (QStringList{u"Teams for Linux"_s, u"com.microsoft.teams2"_s}));
    // A starter of one's own is what it says it is.
    QCOMPARE(identityOf(window(u"zoom"_s, u"meetings"_s)),
             (QStringList{u"Meetings"_s, u"my-zoom-starter"_s}));
    QCOMPARE(identityOf(window(u"n"_s, u"nameless"_s)), (QStringList{u"nameless"_s, u"nameless"_s}));
    QCOMPARE(identityOf(window(u"xclock"_s, {}), {u"/usr/bin/oclock"_s, {}}),
             (QStringList{u"xclock"_s, u"none"_s}));
    QCOMPARE(identityOf({}), (QStringList{QString(), u"none"_s}));
}

void ApplicationIdentityTest::representative() {
    const DesktopWindow unnamed{1, 7, {}};
    const DesktopWindow site{2, 7, window(u"crx_abc"_s, u"Google-chrome"_s)};
    const DesktopWindow browser{3, 7, window(u"google-chrome"_s, u"Google-chrome"_s)};
    QCOMPARE((DesktopApplication{7, {unnamed, site, browser}}.representative().id), 3U);
    QCOMPARE((DesktopApplication{7, {unnamed, site}}.representative().id), 2U);
    QCOMPARE((DesktopApplication{7, {unnamed}}.representative().id), 1U);
}

void ApplicationIdentityTest::sandboxes() {
    QCOMPARE(snapIdOfSecurityLabel("snap.zoom-client.zoom-client (enforce)\n"), u"zoom-client_zoom-client"_s);
    QCOMPARE(snapIdOfSecurityLabel("unconfined\n"), QString());
    QCOMPARE(snapIdOfSecurityLabel("snap.x (enforce)"), QString()); // a service

    const QByteArray uuid = "0a1b2c3d-0000-4000-8000-0123456789ab";
    QCOMPARE(snapIdOfControlGroup("0::/user.slice/app.slice/snap.teams.teams-" + uuid + ".scope\n"),
             u"teams_teams"_s);
    QCOMPARE(snapIdOfControlGroup("1:x:/snap.a.b." + uuid + ".scope"), u"a_b"_s); // older ones
    QCOMPARE(snapIdOfControlGroup("0::/user.slice/app-gnome-xterm-12.scope\n"), QString());
    QCOMPARE(snapIdOfControlGroup("\xFF\0/snap..-.scope"), QString());
}

void ApplicationIdentityTest::executables() {
    const QTemporaryDir proc;
    const auto executable = [&proc](qint32 pid) {
        return ProcessIdentity::of(pid, QFile::encodeName(proc.path())).executablePath;
    };
    QVERIFY(QDir(proc.path()).mkpath(u"12"_s) && QDir(proc.path()).mkpath(u"13"_s));
    // Links that lead nowhere, like those of /proc, are read and not followed.
    QVERIFY(QFile::link(u"/opt/zoom/zoom (deleted)"_s, proc.filePath(u"12/exe"_s)));
    QCOMPARE(executable(12), u"/opt/zoom/zoom"_s);
    QCOMPARE(executable(13), std::nullopt);
    QCOMPARE(executable(14), std::nullopt);

    QVERIFY((ProcessIdentity{u"/usr/bin/ssh"_s, {}}.forwardsWindows()));
    QVERIFY((!ProcessIdentity{u"/usr/bin/sshfs"_s, {}}.forwardsWindows()));
}

void ApplicationIdentityTest::windowClass() {
    const auto read = [](const QByteArray &bytes, quint8 format = 8) {
        WindowFacts facts;
        facts.takeWindowClass({31, format, bytes});
        return QString(facts.instanceName + u'|' + facts.className);
    };
    QCOMPARE(read(QByteArray("zoom\0Zoom\0", 10)), u"zoom|Zoom"_s);
    QCOMPARE(read(QByteArray("zoom\0Zoom", 9)), u"zoom|Zoom"_s);
    QCOMPARE(read("zoom"), u"zoom|"_s);
    QCOMPARE(read(QByteArray("a\0b\0c\0", 6)), u"a|b"_s);
    QCOMPARE(read({}), u"|"_s);
    QCOMPARE(read(items({1, 2}), 32), u"|"_s);
    QCOMPARE(read(QByteArray("\xE9\0\xE8\0", 4)), u"é|è"_s); // Latin-1
}

void ApplicationIdentityTest::regularWindows() {
    X11Atoms a;
    quint32 next = 100;
    for (const X11AtomName &atom : x11AtomNames)
        a.*atom.number = next++;
    const auto isRegular = [&a](const QByteArray &types, const QByteArray &states) {
        WindowFacts facts;
        facts.takeWindowType({core_atoms::atom, 32, types}, a);
        facts.takeWindowState({core_atoms::atom, 32, states}, a);
        return facts.isRegular();
    };
    const quint32 unknown = 9999;
    QVERIFY(isRegular({}, {}));
    // The first type that is known counts.
    QVERIFY(!isRegular(items({unknown, a.typeDock, a.typeNormal}), {}));
    QVERIFY(isRegular(items({unknown, a.typeNormal, a.typeDock}), {}));
    QVERIFY(isRegular(items({unknown}), {}));
    QVERIFY(!isRegular(items({a.typeNormal}), items({unknown, a.skipTaskbar})));
    QVERIFY(isRegular(items({a.typeNormal}), items({a.skipTaskbar}).first(3)));
}

void ApplicationIdentityTest::claimedProcesses() {
    const auto claimed = [](const RawProperty &property) {
        WindowFacts facts;
        facts.takeProcess(property);
        return facts.claimedProcess;
    };
    QCOMPARE(claimed({core_atoms::cardinal, 32, items({4123})}), 4123);
    // Neither text nor a number that no process can have.
    QCOMPARE(claimed({core_atoms::cardinal, 8, "4123"}), 0);
    QCOMPARE(claimed({core_atoms::cardinal, 32, "\xFF\xFF\xFF\xFF"}), 0);
    QCOMPARE(claimed({core_atoms::atom, 32, "\1\1\1\1"}), 0);
    QCOMPARE(claimed({}), 0);
}

void ApplicationIdentityTest::machines() {
    QVERIFY(isSameMachine(u"desk"_s, u"Desk"_s));
    QVERIFY(isSameMachine(u"desk.home"_s, u"desk"_s));
    QVERIFY(isSameMachine(u"desk"_s, u"desk.home"_s));
    QVERIFY(!isSameMachine(u"desk.home"_s, u"desk.work"_s));
    QVERIFY(!isSameMachine(u"laptop"_s, u"desk"_s));
    QVERIFY(!isSameMachine(QString(), u"desk"_s));
}

QTEST_GUILESS_MAIN(ApplicationIdentityTest)
#include "tst_applicationidentity.moc"
