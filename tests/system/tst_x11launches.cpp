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
using samples::SampleApp;

namespace {

QStringList options(const QString &text) {
    return text.split(u' ');
}

QList<qint32> running(Workspace &workspace) {
    QList<qint32> pids;
    for (const WorkspaceApplication &application : workspace.runningApplications())
        pids.append(application.processIdentifier);
    return pids;
}

/// Everything that was launched since, by process id.
struct Launches {
    X11Workspace workspace;
    QList<qint32> pids;
    std::unique_ptr<LaunchSubscription> subscription = workspace.subscribeToLaunches(
        [this](const WorkspaceApplication &application) { pids.append(application.processIdentifier); });
};

} // namespace

class X11LaunchesTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void eachProcessOnce();
    void whatRanBeforeIsNone();
    void becomingRegular();
    void reappearing();
    void vanishingAtOnce();
    void unsubscribing();
    void unsubscribingInsideTheHandler();
    void subscribersOfDifferentTimes();
    void relaunchWhileMonitoring();
    void whoAlwaysComesBack();
    void windowManagerRestarts_data();
    void windowManagerRestarts();
};

void X11LaunchesTest::eachProcessOnce() {
    Launches launches;
    const SampleApp first(options(u"--windows 3"_s));
    QTRY_COMPARE(launches.pids, QList<qint32>{first.pid()});
    const SampleApp second;
    QTRY_COMPARE(launches.pids, (QList<qint32>{first.pid(), second.pid()}));
    const SampleApp dock(options(u"--type dock"_s));
    const SampleApp skipping(options(u"--skip-taskbar"_s));
    QTRY_VERIFY(dock.said(u"mapped 1"_s) == 1 && skipping.said(u"mapped 1"_s) == 1);
    const SampleApp third;
    QTRY_COMPARE(launches.pids, (QList<qint32>{first.pid(), second.pid(), third.pid()}));
}

void X11LaunchesTest::whatRanBeforeIsNone() {
    X11Workspace other;
    const SampleApp before(options(u"--commands"_s));
    QTRY_COMPARE(running(other), QList<qint32>{before.pid()});
    Launches launches;
    SampleApp app(options(u"--commands"_s));
    QTRY_COMPARE(launches.pids, QList<qint32>{app.pid()});
    // A further window is no launch.
    app.command("open");
    QTRY_COMPARE(app.said(u"mapped 2"_s), 1);
    const SampleApp fence;
    QTRY_COMPARE(launches.pids, (QList<qint32>{app.pid(), fence.pid()}));
}

void X11LaunchesTest::becomingRegular() {
    Launches launches;
    SampleApp app(options(u"--commands --window --type dock --window --later"_s));
    QTRY_COMPARE(app.said(u"mapped 1"_s), 1);
    const SampleApp fence;
    QTRY_COMPARE(launches.pids, QList<qint32>{fence.pid()});
    app.command("open");
    QTRY_COMPARE(launches.pids, (QList<qint32>{fence.pid(), app.pid()}));
    app.command("close");
    QTRY_VERIFY(!running(launches.workspace).contains(app.pid()));
    // Whoever is told of this one has looked since.
    const SampleApp second;
    QTRY_COMPARE(launches.pids, (QList<qint32>{fence.pid(), app.pid(), second.pid()}));
    app.command("open");
    QTRY_COMPARE(launches.pids, (QList<qint32>{fence.pid(), app.pid(), second.pid(), app.pid()}));
}

void X11LaunchesTest::reappearing() {
    X11Workspace other;
    const SampleApp app(options(u"--manner reappears --reappear-after 500"_s));
    QTRY_COMPARE(running(other), QList<qint32>{app.pid()});
    Launches launches;
    QVERIFY(other.terminate(app.pid()));
    QTRY_COMPARE(app.said(u"away"_s), 1);
    QTRY_COMPARE(launches.pids, QList<qint32>{app.pid()});
    const SampleApp fence;
    QTRY_COMPARE(launches.pids, (QList<qint32>{app.pid(), fence.pid()}));
}

void X11LaunchesTest::vanishingAtOnce() {
    Launches launches;
    for (int i = 0; i < 20; ++i) {
        const SampleApp brief(options(u"--manner vanishes"_s));
        QTRY_VERIFY(!brief.isRunning());
    }
    const SampleApp app;
    QTRY_VERIFY(launches.pids.contains(app.pid()));
    QCOMPARE(running(launches.workspace), QList<qint32>{app.pid()});
}

void X11LaunchesTest::unsubscribing() {
    Launches launches;
    X11Workspace other;
    const SampleApp app;
    QVERIFY(samples::waitBlocking([&] { return running(other).contains(app.pid()); }));
    // Noticed, but not told yet.
    QVERIFY(running(launches.workspace).contains(app.pid()));
    launches.subscription.reset();
    Launches later;
    const SampleApp fence;
    QTRY_COMPARE(later.pids, QList<qint32>{fence.pid()});
    QVERIFY(launches.pids.isEmpty());
}

void X11LaunchesTest::unsubscribingInsideTheHandler() {
    X11Workspace workspace;
    X11Workspace other;
    QList<qint32> pids;
    std::unique_ptr<LaunchSubscription> subscription;
    subscription = workspace.subscribeToLaunches([&](const WorkspaceApplication &application) {
        pids.append(application.processIdentifier);
        subscription.reset();
    });
    Launches all;
    const SampleApp first;
    QVERIFY(samples::waitBlocking([&] { return running(other).contains(first.pid()); }));
    const SampleApp second;
    QVERIFY(samples::waitBlocking([&] { return running(other).contains(second.pid()); }));
    // Both are found in one go, the second when nobody listens any more.
    QTRY_COMPARE(all.pids.size(), 2);
    const SampleApp third;
    QTRY_COMPARE(all.pids.size(), 3);
    QCOMPARE(pids, QList<qint32>{first.pid()});
    // And again from the start.
    subscription = workspace.subscribeToLaunches(
        [&](const WorkspaceApplication &application) { pids.append(application.processIdentifier); });
    const SampleApp fourth;
    QTRY_COMPARE(pids, (QList<qint32>{first.pid(), fourth.pid()}));
}

void X11LaunchesTest::subscribersOfDifferentTimes() {
    Launches first;
    X11Workspace other;
    const SampleApp app;
    QVERIFY(samples::waitBlocking([&] { return running(other).contains(app.pid()); }));
    QList<qint32> pids;
    const auto second = first.workspace.subscribeToLaunches(
        [&](const WorkspaceApplication &application) { pids.append(application.processIdentifier); });
    // It ran before the second one began to watch, though the first has not been told of it.
    const SampleApp fence;
    QTRY_COMPARE(pids, QList<qint32>{fence.pid()});
    QCOMPARE(first.pids, (QList<qint32>{app.pid(), fence.pid()}));
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
    const auto story = [&] {
        QStringList texts = samples::messages(runtime.recentEvents());
        std::reverse(texts.begin(), texts.end());
        return texts;
    };

    const SampleApp zoom(options(u"--class zoom/zoom"_s));
    QStringList expected{u"Zoom relaunched while Privacy Mode is on."_s, u"Asked Zoom to quit."_s};
    QTRY_COMPARE(story(), expected);
    QTRY_VERIFY(!zoom.isRunning());
    QCOMPARE(zoom.said(u"closed 1"_s), 1);

    const SampleApp refusing(options(u"--class teams-for-linux/teams-for-linux --manner no-delete"_s));
    expected += {u"Teams for Linux relaunched while Privacy Mode is on."_s,
                 u"Could not ask Teams for Linux to quit."_s};
    QTRY_COMPARE(story(), expected);

    // What is on screen already is not asked by a monitor, also not by a new one.
    runtime.configureRelaunchMonitor();
    runtime.updatePrivacyMode(false, false);
    // Whoever subscribes later is told later: once this one has heard, so has the monitor.
    QList<qint32> heard;
    const auto listener = workspace.subscribeToLaunches(
        [&heard](const WorkspaceApplication &application) { heard.append(application.processIdentifier); });
    const SampleApp whileOff(options(u"--class zoom/zoom"_s));
    QTRY_VERIFY(heard.contains(whileOff.pid()));
    runtime.updatePrivacyMode(true, false);
    const SampleApp again(options(u"--class zoom/zoom"_s));
    expected += {u"Zoom relaunched while Privacy Mode is on."_s, u"Asked Zoom to quit."_s};
    QTRY_COMPARE(story(), expected);
    QTRY_VERIFY(!again.isRunning());
    QVERIFY(whileOff.isRunning() && refusing.isRunning());
    QCOMPARE(whileOff.said(u"asked 1"_s), 0);
}

void X11LaunchesTest::whoAlwaysComesBack() {
    installEntry(u"Zoom"_s, u"Zoom"_s, {u"StartupWMClass=zoom"_s});
    Launches launches;
    const auto asking = launches.workspace.subscribeToLaunches([&](const WorkspaceApplication &application) {
        QVERIFY(launches.workspace.terminate(application.processIdentifier));
    });
    const SampleApp app(options(u"--manner reappears --reappear-after 500"_s));
    QTRY_VERIFY(app.said(u"back"_s) >= 2);
    QTRY_VERIFY(launches.pids.size() >= 3);
    QCOMPARE(launches.pids.count(app.pid()), launches.pids.size());
}

void X11LaunchesTest::windowManagerRestarts_data() {
    QTest::addColumn<int>("signal");
    QTest::newRow("takes leave") << SIGTERM;
    QTest::newRow("is killed") << SIGKILL;
}

void X11LaunchesTest::windowManagerRestarts() {
    QFETCH(int, signal);
    Launches launches;
    X11Workspace other;
    const SampleApp before(options(u"--windows 2"_s));
    SampleApp ends;
    QTRY_COMPARE(launches.pids.size(), 2);
    launches.pids.clear();

    samples::desktop::stopWindowManager(signal);
    // While nobody manages windows, one application ends and one begins.
    ends.kill();
    const SampleApp meanwhile;
    QTRY_COMPARE(meanwhile.said(u"mapped 1"_s), 1);
    running(launches.workspace);
    running(other);
    samples::desktop::startWindowManager();
    QTRY_COMPARE(running(launches.workspace).size(), 2);

    const SampleApp after;
    QTRY_VERIFY(launches.pids.contains(after.pid()));
    QCOMPARE(launches.pids, (QList<qint32>{meanwhile.pid(), after.pid()}));
}

QTEST_GUILESS_MAIN(X11LaunchesTest)
#include "tst_x11launches.moc"
