// What only X11 has: which windows are seen and asked to close, who says which application they are, window
// managers that go, and servers that are absent. What is expected of every desktop is in tst_desktops.

#include "desktop/Platform.h"
#include "desktop/x11/X11Workspace.h"
#include "tests/support/SampleApp.h"
#include "tests/support/TestClass.h"
#include "tests/support/Unanswered.h"

#include <csignal>

using namespace Qt::StringLiterals;
using namespace kestrin;
using namespace kestrin::engine;
using namespace kestrin::desktop;
using samples::callEverythingInVain;
using samples::installEntry;
using samples::running;
using samples::SampleApp;
namespace display = samples::display;

class X11WorkspaceTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void regularWindows();
    void identities();
    void whichWindowsAreAsked();
    void unsubscribing();
    void theLastSubscription();
    void noDisplay();
    void noWindowManager();

  private:
    /// Sees an application without telling the subscribers of another workspace about it.
    void awaitUnheard(const SampleApp &app) {
        QVERIFY(samples::waitBlocking([&] { return running(m_other).contains(app.pid()); }));
    }

    X11Workspace m_other;
};

void X11WorkspaceTest::regularWindows() {
    X11Workspace workspace;
    std::vector<std::unique_ptr<SampleApp>> apps;
    const auto open = [&](const char *options) {
        apps.push_back(std::make_unique<SampleApp>(QString::fromLatin1(options)));
        QTRY_COMPARE(apps.back()->said(u"mapped 1"_s), 1);
    };
    for (const char *options :
         {"--type DESKTOP", "--type UTILITY", "--window --type DOCK --window --skip-taskbar"})
        open(options);
    QList<qint32> expected;
    for (const char *options :
         {"--type NORMAL", "--type DIALOG", "--window --type DOCK --window --type NORMAL", ""}) {
        open(options);
        // The window manager takes one window after the other, so it has dealt with the earlier ones.
        expected.append(apps.back()->pid());
        QTRY_COMPARE(running(workspace), expected);
    }
}

void X11WorkspaceTest::identities() {
    qputenv("LANG", "de_AT.UTF-8");
    installEntry(u"google-chrome"_s, u"Google Chrome"_s);
    installEntry(u"chrome-abcdef-Default"_s, u"A Site"_s,
                 {u"StartupWMClass=crx_abcdef"_s, u"Exec=google-chrome --app-id=abcdef"_s});
    installEntry(u"org.example.Notes"_s, u"Notes"_s, {u"Name[de]=Notizen"_s, u"Name[fr]=Notes"_s});
    installEntry(u"org.example.Painter"_s, u"Painter"_s);

    const QString browser = u" --window --class google-chrome/Google-chrome"_s;
    const QString site = u" --window --class crx_abcdef/Google-chrome"_s;
    for (const auto &[options, expected] : {
             std::pair{browser + site, u"Google Chrome, com.google.Chrome"_s},
             std::pair{site + browser, u"Google Chrome, com.google.Chrome"_s},
             std::pair{u"--gtk-id org.example.Notes --class other/Other --pid none"_s,
                       u"Notizen, org.example.Notes"_s},
             std::pair{u"--kde-entry org.example.Painter --class other/Other --pid 1"_s,
                       u"Painter, org.example.Painter"_s},
         }) {
        X11Workspace workspace;
        const SampleApp app(options);
        const auto windows = qMax<qsizetype>(options.count(u"--window"_s), 1);
        QTRY_COMPARE(app.said(u"mapped %1"_s.arg(windows)), 1);
        QTRY_COMPARE(samples::identities(workspace), QStringList{expected});
        const auto application = workspace.runningApplications().value(0);
        QVERIFY(application.executablePath.value_or(QString()).endsWith(u"/sample-app"_s));
    }
}

void X11WorkspaceTest::whichWindowsAreAsked() {
    for (const auto &[options, asked] : {
             // A kill on behalf of the window that refuses would end the process.
             std::pair{u"--window --manner no-delete --window"_s, QList<int>{2}},
             std::pair{u"--window --type DOCK --window"_s, QList<int>{2}},
         }) {
        const qsizetype windows = options.count(u"--window"_s);
        X11Workspace workspace;
        const SampleApp app(options);
        QTRY_COMPARE(app.said(u"mapped %1"_s.arg(windows)), 1);
        const SampleApp fence;
        QTRY_VERIFY(running(workspace).contains(fence.pid()));
        QCOMPARE(workspace.terminate(app.pid()), Termination::delivered);
        for (const int number : asked)
            QTRY_COMPARE(app.said(u"closed %1"_s.arg(number)), 1);
        // The windows that are left cannot be asked.
        QTRY_COMPARE(workspace.terminate(app.pid()),
                     options.contains(u"no-delete"_s) ? Termination::refused : Termination::gone);
        for (const qint32 nobody : {0, -1})
            QCOMPARE(workspace.terminate(nobody), Termination::gone);
        QCOMPARE(workspace.terminate(fence.pid()), Termination::delivered);
        QTRY_VERIFY(!fence.isRunning());
        QTRY_COMPARE(app.isRunning(), asked.size() < windows);
        QCOMPARE(app.said(u"asked 1"_s), asked.contains(1) ? 1 : 0);
    }
}

void X11WorkspaceTest::unsubscribing() {
    X11Workspace workspace;
    samples::Launches leaving(workspace);
    samples::Launches staying(workspace);
    const SampleApp app;
    awaitUnheard(app);
    // Noticed, but not told yet.
    QVERIFY(running(workspace).contains(app.pid()));
    leaving.subscription.reset();
    // For who comes now, it ran before.
    samples::Launches coming(workspace);
    const SampleApp fence;
    QTRY_COMPARE(coming.pids, QList<qint32>{fence.pid()});
    QCOMPARE(staying.pids, (QList<qint32>{app.pid(), fence.pid()}));
    QVERIFY(leaving.pids.isEmpty());
}

void X11WorkspaceTest::theLastSubscription() {
    X11Workspace workspace;
    QList<qint32> pids;
    std::unique_ptr<LaunchSubscription> subscription;
    subscription = workspace.subscribeToLaunches([&](const WorkspaceApplication &application) {
        pids.append(application.processIdentifier);
        subscription.reset();
    });
    const SampleApp first;
    awaitUnheard(first);
    const SampleApp second;
    awaitUnheard(second);
    // Both are found in one go, the second when nobody listens any more.
    QTRY_COMPARE(pids, QList<qint32>{first.pid()});
    // And again from the start, for whoever takes the place of the last one.
    samples::Launches former(workspace);
    const SampleApp third;
    awaitUnheard(third);
    former.subscription.reset();
    const samples::Launches next(workspace);
    QTRY_COMPARE(next.pids, QList<qint32>{third.pid()});
    QVERIFY(former.pids.isEmpty());
    QCOMPARE(pids, QList<qint32>{first.pid()});
}

void X11WorkspaceTest::noDisplay() {
    for (const QString &display : {u":9999"_s, u"nonsense"_s, u"no-such-host.invalid:0"_s}) {
        X11Workspace workspace(display);
        callEverythingInVain(workspace, static_cast<qint32>(QCoreApplication::applicationPid()));
        QVERIFY(workspace.sight().reason.contains(display));
    }
    // Left over from a session that has ended.
    qputenv("SWAYSOCK", "/nowhere");
    qputenv("WAYLAND_DISPLAY", "nowhere");
    QVERIFY(makeWorkspace()->sight().isFull());
    qunsetenv("SWAYSOCK");
    qunsetenv("WAYLAND_DISPLAY");
}

void X11WorkspaceTest::noWindowManager() {
    for (const int signal : {SIGTERM, SIGKILL}) {
        X11Workspace workspace;
        const SampleApp before(u"--windows 2"_s);
        // Until then its windows may have the numbers of some that have just gone, and come and go with them.
        QTRY_COMPARE(before.said(u"mapped 2"_s), 1);
        QTRY_COMPARE(running(workspace), QList<qint32>{before.pid()});
        // Who ran before would count as launched as soon as it was forgotten.
        samples::Launches launches(workspace);
        SampleApp ends;
        QTRY_COMPARE(launches.pids, QList<qint32>{ends.pid()});
        launches.pids.clear();
        display::stopWindowManager(signal);
        // Nobody passes a request on, so it must not be told as delivered. Who took leave took the list
        // along.
        QCOMPARE(workspace.terminate(before.pid()),
                 signal == SIGTERM ? Termination::gone : Termination::refused);
        // What was told about the windows stays behind where it could not be taken back.
        QCOMPARE(running(workspace).isEmpty(), signal == SIGTERM);
        QVERIFY(!workspace.sight().isFull());

        // One application ends meanwhile, and one begins.
        ends.kill();
        const SampleApp meanwhile;
        QTRY_COMPARE(meanwhile.said(u"mapped 1"_s), 1);
        running(workspace);
        display::startWindowManager();
        QTRY_COMPARE(running(workspace).size(), 2);
        QVERIFY(workspace.sight().isFull());
        const SampleApp after;
        QTRY_VERIFY(launches.pids.contains(after.pid()));
        QCOMPARE(launches.pids, (QList<qint32>{meanwhile.pid(), after.pid()}));
        QCOMPARE(workspace.terminate(before.pid()), Termination::delivered);
        QTRY_VERIFY(!before.isRunning());
    }
}

KESTRIN_TEST(X11WorkspaceTest)
#include "tst_x11workspace.moc"
