// Who an application is by its windows, its package, its executable and its desktop entry, also when they
// tell nonsense or nothing, and how often it counts as launched. What well-behaved windows tell is tested on
// a real desktop.

#include "desktop/applications/ApplicationClaims.h"
#include "desktop/applications/ApplicationIdentity.h"
#include "desktop/applications/DesktopEntryIndex.h"
#include "desktop/applications/LaunchLimit.h"
#include "desktop/applications/ProcessIdentity.h"
#include "desktop/x11/WindowFacts.h"
#include "tests/support/Property.h"
#include "tests/support/Test.h"

using samples::Property;

namespace {

/// Two data directories, the user's own before the system's.
struct Folders {
    QTemporaryDir root;
    DesktopEntryIndex index{{QFile::encodeName(own()), QFile::encodeName(system())}, {"de"}};

    QString own() const { return root.filePath(u"own"_s); }
    QString system() const { return root.filePath(u"system"_s); }
    static void install(const QString &folder, const QString &id, const QByteArray &name,
                        const QByteArray &more = {}) {
        samples::write(folder + u'/' + id + u".desktop"_s,
                       "[Desktop Entry]\nType=Application\nName=" + name + "\nExec=true\n" + more);
    }
    QString nameOf(const QString &id) {
        const auto found = index.withId(id);
        return found ? found->entry.name : u"none"_s;
    }
    QString idOfClass(const QString &windowClass) {
        const auto found = index.withWindowClass(windowClass);
        return found ? found->id : u"none"_s;
    }
};

} // namespace

class ApplicationsTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void identity();
    void processes();
    void entryTexts();
    void entriesInFolders();
    void properties();
    void launchedOnceInFiveSeconds();
};

void ApplicationsTest::identity() {
    Folders folders;
    folders.install(folders.own(), u"us.zoom.Zoom"_s, "Zoom Workplace");
    folders.install(folders.own(), u"my-zoom-starter"_s, "Meetings", "StartupWMClass=meetings\n");
    folders.install(folders.own(), u"nameless"_s, "");
    const auto identityOf = [&folders](const ApplicationClaims &facts, const ProcessIdentity &process = {}) {
        const auto identity = ApplicationIdentity::of(facts, process, folders.index);
        return QString(identity.name + u", "_s + identity.identifier.value_or(u"none"_s));
    };

    const ApplicationClaims video{u"a"_s, u"Video"_s, {}, {}, {}};
    QCOMPARE(identityOf(video, {u"/app/zoom"_s, u"us.zoom.Zoom"_s}), u"Zoom Workplace, us.zoom.xos"_s);
    // A sandbox without an entry, an unknown one and a known one.
    QCOMPARE(identityOf(video, {{}, u"us.zoom.Zoom2"_s}), u"Video, none"_s);
    QCOMPARE(identityOf({}, {u"/snap/z/zoom"_s, u"zoom-client_zoom-client"_s}), u"zoom, us.zoom.xos"_s);
    // A starter of one's own is what it says it is.
    QCOMPARE(identityOf({u"zoom"_s, u"meetings"_s, {}, {}, {}}), u"Meetings, my-zoom-starter"_s);
    QCOMPARE(identityOf({u"n"_s, u"nameless"_s, {}, {}, {}}), u"nameless, nameless"_s);
    QCOMPARE(identityOf({u"xclock"_s, {}, {}, {}, {}}, {u"/usr/bin/oclock"_s, {}}), u"xclock, none"_s);
    QCOMPARE(identityOf({}), u", none"_s);
}

void ApplicationsTest::processes() {
    QCOMPARE(snapIdOfSecurityLabel("snap.zoom-client.zoom-client (enforce)\n"), u"zoom-client_zoom-client"_s);
    QCOMPARE(snapIdOfSecurityLabel("unconfined\n"), QString());
    QCOMPARE(snapIdOfSecurityLabel("snap.x (enforce)"), QString()); // a service

    const QByteArray uuid = "0a1b2c3d-0000-4000-8000-0123456789ab";
    QCOMPARE(snapIdOfControlGroup("0::/user.slice/app.slice/snap.teams.teams-" + uuid + ".scope\n"),
             u"teams_teams"_s);
    QCOMPARE(snapIdOfControlGroup("1:x:/snap.a.b." + uuid + ".scope"), u"a_b"_s); // older ones
    QCOMPARE(snapIdOfControlGroup("0::/user.slice/app-gnome-xterm-12.scope\n"), QString());

    const QTemporaryDir proc;
    const auto executable = [&proc](qint32 pid) {
        return ProcessIdentity::of(pid, QFile::encodeName(proc.path())).executablePath;
    };
    QVERIFY(QDir(proc.path()).mkpath(u"12"_s) && QDir(proc.path()).mkpath(u"13"_s));
    // Links that lead nowhere, like those of /proc, are read and not followed.
    QVERIFY(QFile::link(u"/opt/zoom/zoom (deleted)"_s, proc.filePath(u"12/exe"_s)));
    QCOMPARE(executable(12), u"/opt/zoom/zoom"_s);
    QVERIFY(!executable(13) && !executable(14));

    QVERIFY((ProcessIdentity{u"/usr/bin/ssh"_s, {}}.forwardsWindows()));
    QVERIFY((!ProcessIdentity{u"/usr/bin/sshfs"_s, {}}.forwardsWindows()));
}

void ApplicationsTest::entryTexts() {
    const auto read = [](const QByteArray &lines) {
        return DesktopEntry::parse("[Desktop Entry]\n" + lines, {"de_AT", "de"}).value_or(DesktopEntry());
    };
    const DesktopEntry plain = read("Type=Application\nName=Editor\nStartupWMClass=Ed");
    QCOMPARE(plain, (DesktopEntry{u"Editor"_s, u"Ed"_s, true, false, false, false}));
    QCOMPARE(read("Name[de_AT]=Schreiberl\nName[de]=Schreiber\nName=Ed\n").name, u"Schreiberl"_s);
    QCOMPARE(read("Name=Editor\nName[fr]=Éditeur\nName[de]=\n").name, u"Editor"_s);
    QCOMPARE(read("  Name = A  B \r\n# Name=C\n[Desktop Action x]\nName=D\n").name, u"A  B"_s);
    QCOMPARE(read("Name=a\\sb\\\\c\\q").name, u"a b\\c\\q"_s);
    QCOMPARE(read("Name=\xFFX").name, u"\uFFFDX"_s);
    QVERIFY(read("Hidden=true\n").isHidden && read("NoDisplay = true\n").isOutsideMenus);
    QVERIFY(!read("Type=Link\n").isApplication);
    QVERIFY(read("Exec=/opt/b/b --profile-directory=D --app-id=abc\n").isWebApplication);
    QVERIFY(!read("Exec=b --no-app=1 %U\n").isWebApplication);
    for (const auto &[line, program] :
         QList<std::pair<QByteArray, QString>>{{"/usr/bin/zoom %U", u"/usr/bin/zoom"_s},
                                               {"  \"/opt/My App/\\\\\"app\" -x", u"/opt/My App/\"app"_s},
                                               {"env A=1 B=2 zoom", u"zoom"_s},
                                               {"\"open", u"open"_s},
                                               {"env", {}},
                                               {"", {}}})
        QCOMPARE(read("Exec=" + line).program, program);
    QCOMPARE(DesktopEntry::parse("\xEF\xBB\xBF# c\n\n[Before]\nName=No\n[Desktop Entry]\nName=X", {})->name,
             u"X"_s);

    QCOMPARE(entryLocales("sr_YU.UTF-8@Latn"), (EntryLocales{"sr_YU@Latn", "sr_YU", "sr@Latn", "sr"}));
    QVERIFY(entryLocales("C.UTF-8").isEmpty() && entryLocales({}).isEmpty());
}

void ApplicationsTest::entriesInFolders() {
    Folders folders;
    folders.install(folders.system(), u"editor"_s, "System's", "StartupWMClass=ed\n");
    folders.install(folders.own(), u"editor"_s, "Own", "Name[de]=Eigener\n");
    folders.install(folders.system(), u"gone"_s, "Gone");
    folders.install(folders.own(), u"gone"_s, "Gone", "Hidden=true\n");
    folders.install(folders.system(), u"kde/Viewer"_s, "Viewer");
    folders.install(folders.own(), u"org.Calls"_s, "Upper");
    folders.install(folders.system(), u"org.calls"_s, "Lower");

    // None of these is a file. Nobody writes into the pipe; opening it must not wait for somebody.
    QDir().mkpath(folders.own() + u"/folder.desktop"_s);
    QCOMPARE(::mkfifo(QFile::encodeName(folders.own() + u"/pipe.desktop"_s).constData(), 0600), 0);
    QVERIFY(QFile::link(folders.own(), folders.own() + u"/loop"_s));
    QVERIFY(QFile::link(u"/nowhere"_s, folders.own() + u"/broken.desktop"_s));

    QCOMPARE(folders.nameOf(u"editor"_s), u"Eigener"_s);
    QCOMPARE(folders.idOfClass(u"ed"_s), u"none"_s);
    // Who deleted an entry does not want to see the one behind it.
    for (const QString &id : {u"gone"_s, u"folder"_s, u"pipe"_s, u"broken"_s})
        QCOMPARE(folders.nameOf(id), u"none"_s);
    // Folders are part of the id, and case does not count, unless it tells two files apart.
    QCOMPARE(folders.nameOf(u"KDE-viewer"_s), u"Viewer"_s);
    QCOMPARE(folders.nameOf(u"org.calls"_s), u"Lower"_s);
    QCOMPARE(folders.nameOf(u"ORG.CALLS"_s), u"Upper"_s);

    // Written in place, so that the folder stays as it is; and a whole folder gone.
    folders.install(folders.own(), u"editor"_s, "Second", "StartupWMClass=second\n");
    folders.index.refresh();
    QCOMPARE(folders.nameOf(u"editor"_s), u"Second"_s);
    QCOMPARE(folders.idOfClass(u"second"_s), u"editor"_s);
    QVERIFY(QDir(folders.own()).removeRecursively());
    folders.index.refresh();
    QCOMPARE(folders.idOfClass(u"second"_s), u"none"_s);
    QCOMPARE(folders.idOfClass(u"ed"_s), u"editor"_s);
}

void ApplicationsTest::properties() {
    const auto classes = [](quint8 format, const QByteArray &bytes) {
        WindowFacts facts;
        facts.takeWindowClass(Property(XCB_ATOM_STRING, format, bytes).reply());
        return QString(facts.claims.instanceName + u'|' + facts.claims.className);
    };
    QCOMPARE(classes(8, QByteArray("zoom\0Zoom", 9)), u"zoom|Zoom"_s);
    QCOMPARE(classes(8, "zoom"), u"zoom|"_s);
    QCOMPARE(classes(8, QByteArray("a\0b\0c\0", 6)), u"a|b"_s);
    QCOMPARE(classes(8, QByteArray("\xE9\0\xE8\0", 4)), u"é|è"_s); // Latin-1
    QCOMPARE(classes(8, QByteArray(1024, 'a')), QString(1024, u'a') + u'|');
    QCOMPARE(classes(32, "zoom"), u"|"_s);
    QCOMPARE(propertyText(nullptr), QString());

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
    const Property none(0, 0, {});
    // The first type that is known counts.
    QVERIFY(!isRegular(atoms({unknown, a._NET_WM_WINDOW_TYPE_DOCK, a._NET_WM_WINDOW_TYPE_NORMAL}), none));
    QVERIFY(isRegular(atoms({unknown, a._NET_WM_WINDOW_TYPE_NORMAL, a._NET_WM_WINDOW_TYPE_DOCK}), none));
    QVERIFY(!isRegular(none, atoms({unknown, a._NET_WM_STATE_SKIP_TASKBAR})));
    // What is malformed says nothing.
    QVERIFY(isRegular(Property(XCB_ATOM_CARDINAL, {a._NET_WM_WINDOW_TYPE_DOCK}), none));
    QVERIFY(isRegular(Property(XCB_ATOM_ATOM, 8, "ggg"), Property(XCB_ATOM_ATOM, 16, "eeeeee")));
    QVERIFY(isRegular(atoms({}), atoms({})));

    QCOMPARE(propertyWindow(Property(XCB_ATOM_WINDOW, {42}).reply()), 42U);
    QCOMPARE(propertyWindow(Property(XCB_ATOM_WINDOW, {}).reply()), 0U);
    constexpr X11Atoms state{.wmState = 104};
    QVERIFY(isIconic(Property(state.wmState, {3, 0}).reply(), state));
    QVERIFY(!isIconic(Property(state.wmState, {1, 0}).reply(), state));
    QVERIFY(!isIconic(nullptr, state));
}

void ApplicationsTest::launchedOnceInFiveSeconds() {
    const LaunchLimit::Time start;
    LaunchLimit limit;
    int launches = 0;
    // It comes and goes for a minute.
    for (auto time = 0ms; time < 60s; time += 100ms) {
        if (limit.admits(7, 1, start + time))
            ++launches;
        QVERIFY(limit.takeDue(start + time).isEmpty());
    }
    QCOMPARE(launches, 12);
    QCOMPARE(limit.nextDue(), start + 60s);
    QVERIFY(limit.takeDue(start + 60s - 1ms).isEmpty());
    QCOMPARE(limit.takeDue(start + 60s), QList<qint32>{7});
    QVERIFY(!limit.nextDue());
    QVERIFY(limit.admits(7, 1, start + 60s));

    // Other processes are always launched, of the same number too.
    for (quint64 began = 2; began <= 4; ++began) {
        QVERIFY(limit.admits(7, began, start + 60s));
        QVERIFY(!limit.admits(7, began, start + 60s + 1ms));
    }
    QVERIFY(limit.admits(8, 4, start + 61s));
    // Who is due first need not be held back first.
    QVERIFY(!limit.admits(8, 4, start + 62s));
    QCOMPARE(limit.nextDue(), start + 65s);
    QCOMPARE(limit.takeDue(start + 65s), QList<qint32>{7});
    QCOMPARE(limit.nextDue(), start + 66s);
}

KESTRIN_TEST(ApplicationsTest)
#include "tst_applications.moc"
