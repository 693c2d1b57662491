// What counts as a launch on a real desktop, and what the monitor does about it.

#include "engine/workspace/x11/X11Workspace.h"
#include "runtime/JSONUserDefaults.h"
#include "runtime/MacProtectionRuntime.h"
#include "tests/support/SampleApp.h"
#include "tests/support/Samples.h"

#include <QTemporaryDir>
#include <QTest>

#include <csignal>

using namespace Qt::StringLiterals;
using namespace kestrin;
using samples::installEntry;
using samples::Launches;
using samples::running;
using samples::SampleApp;

class X11LaunchesTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void eachProcessOnce();
    void becomingRegular();
    void whoAlwaysComesBack();
    void vanishingAtOnce();
    void unsubscribing();
    void unsubscribingInsideTheHandler();
    void relaunchWhileMonitoring();
    void windowManagerRestarts_data();
    void windowManagerRestarts();

  private:
    /// Sees an application without telling the subscribers of another one about it.
    void awaitUnheard(const SampleApp &app) {
        QVERIFY(samples::waitBlocking([&] { return running(m_other).contains(app.pid()); }));
    }

    X11Workspace m_other;
};

void X11LaunchesTest::eachProcessOnce() {
    SampleApp before(u"--commands"_s);
    QTRY_COMPARE(running(m_other), QList<qint32>{before.pid()});
    X11Workspace workspace;
    Launches launches(workspace);
    const SampleApp first(u"--windows 3"_s);
    QTRY_COMPARE(launches.pids, QList<qint32>{first.pid()});
    // A further window is no launch.
    before.command("open");
    QTRY_COMPARE(before.said(u"mapped 2"_s), 1);
    const SampleApp dock(u"--type DOCK"_s);
    const SampleApp skipping(u"--skip-taskbar"_s);
    QTRY_VERIFY(dock.said(u"mapped 1"_s) == 1 && skipping.said(u"mapped 1"_s) == 1);
    const SampleApp second;
    QTRY_COMPARE(launches.pids, (QList<qint32>{first.pid(), second.pid()}));
}

void X11LaunchesTest::becomingRegular() {
    X11Workspace workspace;
    Launches launches(workspace);
    SampleApp app(u"--commands --window --type DOCK --window --type NORMAL --later"_s);
    QTRY_COMPARE(app.said(u"mapped 1"_s), 1);
    const SampleApp fence;
    QTRY_COMPARE(launches.pids, QList<qint32>{fence.pid()});
    app.command("open");
    QTRY_COMPARE(launches.pids, (QList<qint32>{fence.pid(), app.pid()}));
    app.command("close");
    QTRY_VERIFY(!running(workspace).contains(app.pid()));
    // Whoever is told of this one has looked since.
    const SampleApp second;
    QTRY_COMPARE(launches.pids, (QList<qint32>{fence.pid(), app.pid(), second.pid()}));
    app.command("open");
    QTRY_COMPARE(launches.pids, (QList<qint32>{fence.pid(), app.pid(), second.pid(), app.pid()}));
}

void X11LaunchesTest::whoAlwaysComesBack() {
    X11Workspace workspace;
    Launches launches(workspace);
    const auto asking = workspace.subscribeToLaunches([&](const WorkspaceApplication &application) {
        QVERIFY(workspace.terminate(application.processIdentifier));
    });
    SampleApp app(u"--commands"_s);
    for (int time = 1; time <= 3; ++time) {
        QTRY_COMPARE(app.said(u"closed %1"_s.arg(time)), 1);
        QCOMPARE(launches.pids, QList<qint32>(time, app.pid()));
        app.command("open");
    }
}

void X11LaunchesTest::vanishingAtOnce() {
    X11Workspace workspace;
    Launches launches(workspace);
    for (int i = 0; i < 20; ++i) {
        const SampleApp brief(u"--manner vanishes"_s);
        QTRY_VERIFY(!brief.isRunning());
    }
    const SampleApp app;
    QTRY_VERIFY(launches.pids.contains(app.pid()));
    QCOMPARE(running(workspace), QList<qint32>{app.pid()});
}

void X11LaunchesTest::unsubscribing() {
    X11Workspace workspace;
    Launches leaving(workspace);
    Launches staying(workspace);
    const SampleApp app;
    awaitUnheard(app);
    // Noticed, but not told yet.
    QVERIFY(running(workspace).contains(app.pid()));
    leaving.subscription.reset();
    // For who comes now, it ran before.
    Launches coming(workspace);
    const SampleApp fence;
    QTRY_COMPARE(coming.pids, QList<qint32>{fence.pid()});
    QCOMPARE(staying.pids, (QList<qint32>{app.pid(), fence.pid()}));
    QVERIFY(leaving.pids.isEmpty());
}

void X11LaunchesTest::unsubscribingInsideTheHandler() {
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
    // And again from the start.
    Launches anew(workspace);
    const SampleApp third;
    QTRY_COMPARE(anew.pids, QList<qint32>{third.pid()});
    QCOMPARE(pids, QList<qint32>{first.pid()});
}

void X11LaunchesTest::relaunchWhileMonitoring() {
    installEntry(u"Zoom"_s, u"Zoom"_s, {u"StartupWMClass=zoom"_s});
    installEntry(u"teams-for-linux"_s, u"Teams for Linux"_s);
    const QTemporaryDir folder;
    JSONUserDefaults defaults(folder.filePath(u"user-defaults.json"_s));
    defaults.setStringArray(u"kestrin.mac.enabledModeIDs"_s, {});
    defaults.setBoolean(u"kestrin.mac.enforceActions"_s, true);
    X11Workspace workspace;
    MacProtectionRuntime runtime(defaults,
                                 {folder.filePath(u"Kestrin"_s), &workspace, systemTime, nullptr, nullptr});
    runtime.start(true, [](bool) {});
    // Newest first.
    const auto story = [&] { return samples::messages(runtime.recentEvents()); };

    const SampleApp zoom(u"--class zoom/zoom"_s);
    QStringList expected{u"Asked Zoom to quit."_s, u"Zoom relaunched while Privacy Mode is on."_s};
    QTRY_COMPARE(story(), expected);
    QTRY_VERIFY(!zoom.isRunning());
    QCOMPARE(zoom.said(u"closed 1"_s), 1);

    const SampleApp refusing(u"--class teams-for-linux/teams-for-linux --manner no-delete"_s);
    expected = QStringList{u"Could not ask Teams for Linux to quit."_s,
                           u"Teams for Linux relaunched while Privacy Mode is on."_s} +
               expected;
    QTRY_COMPARE(story(), expected);

    // What is on screen already is not asked by a monitor, also not by a new one.
    runtime.configureRelaunchMonitor();
    runtime.updatePrivacyMode(false, false);
    // Whoever subscribes later is told later: once this one has heard, so has the monitor.
    Launches heard(workspace);
    const SampleApp whileOff(u"--class zoom/zoom"_s);
    QTRY_VERIFY(heard.pids.contains(whileOff.pid()));
    runtime.updatePrivacyMode(true, false);
    const SampleApp again(u"--class zoom/zoom"_s);
    expected = expected.last(2) + expected;
    QTRY_COMPARE(story(), expected);
    QTRY_VERIFY(!again.isRunning());
    QVERIFY(whileOff.isRunning() && refusing.isRunning());
    QCOMPARE(whileOff.said(u"asked 1"_s), 0);
}

void X11LaunchesTest::windowManagerRestarts_data() {
    QTest::addColumn<int>("signal");
    QTest::newRow("takes leave") << SIGTERM;
    QTest::newRow("is killed") << SIGKILL;
}

void X11LaunchesTest::windowManagerRestarts() {
    QFETCH(int, signal);
    X11Workspace workspace;
    Launches launches(workspace);
    const SampleApp before(u"--windows 2"_s);
    SampleApp ends;
    QTRY_COMPARE(launches.pids.size(), 2);
    launches.pids.clear();

    samples::desktop::stopWindowManager(signal);
    // While nobody manages windows, one application ends and one begins.
    ends.kill();
    const SampleApp meanwhile;
    QTRY_COMPARE(meanwhile.said(u"mapped 1"_s), 1);
    running(workspace);
    samples::desktop::startWindowManager();
    QTRY_COMPARE(running(workspace).size(), 2);

    const SampleApp after;
    QTRY_VERIFY(launches.pids.contains(after.pid()));
    QCOMPARE(launches.pids, (QList<qint32>{meanwhile.pid(), after.pid()}));
}

QTEST_GUILESS_MAIN(X11LaunchesTest)
#include "tst_x11launches.moc"
