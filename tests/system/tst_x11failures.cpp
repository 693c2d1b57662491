// X servers that are absent, silent or gone.

#include "desktop/Platform.h"
#include "desktop/x11/X11Workspace.h"
#include "tests/support/SampleApp.h"
#include "tests/support/Unanswered.h"

#include <QTest>

#include <csignal>

using namespace Qt::StringLiterals;
using namespace kestrin;
using namespace kestrin::engine;
using namespace kestrin::desktop;
using samples::callEverythingInVain;
using samples::Launches;
using samples::running;
using samples::SampleApp;
namespace display = samples::display;

namespace {

const auto thisProcess = static_cast<qint32>(QCoreApplication::applicationPid());

} // namespace

class X11FailuresTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void noDisplay();
    void noWindowManager();
    void silentServer();
    void serverGoesAway();
};

void X11FailuresTest::noDisplay() {
    for (const QString &display : {u":9999"_s, u"nonsense"_s, u"no-such-host.invalid:0"_s}) {
        X11Workspace workspace(display);
        callEverythingInVain(workspace, thisProcess);
        QVERIFY(workspace.sight().reason.contains(display));
    }
    const QByteArray before = qgetenv("DISPLAY");
    qunsetenv("DISPLAY");
    X11Workspace workspace;
    callEverythingInVain(workspace, thisProcess);
    qputenv("DISPLAY", before);
    QVERIFY(workspace.sight().isFull());
    // Left over from a session that has ended.
    qputenv("SWAYSOCK", "/nowhere");
    qputenv("WAYLAND_DISPLAY", "nowhere");
    QVERIFY(makeWorkspace()->sight().isFull());
    qunsetenv("SWAYSOCK");
    qunsetenv("WAYLAND_DISPLAY");
}

void X11FailuresTest::noWindowManager() {
    for (const int signal : {SIGTERM, SIGKILL}) {
        X11Workspace workspace;
        const SampleApp before(u"--windows 2"_s);
        QTRY_COMPARE(running(workspace), QList<qint32>{before.pid()});
        // Who ran before would count as launched as soon as it was forgotten.
        Launches launches(workspace);
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

void X11FailuresTest::silentServer() {
    X11Workspace workspace;
    Launches launches(workspace);
    const SampleApp app;
    QTRY_COMPARE(launches.pids, QList<qint32>{app.pid()});
    X11Workspace other;
    QCOMPARE(running(other), QList<qint32>{app.pid()});
    std::optional<Launches> inSilence;
    {
        display::signalServer(SIGSTOP);
        const auto goesOn = qScopeGuard([] { display::signalServer(SIGCONT); });
        callEverythingInVain(workspace, app.pid());
        inSilence.emplace(other);
        // Also where it is the first call, and one that is given up meanwhile could hang or crash.
        X11Workspace abandoned;
        callEverythingInVain(abandoned, app.pid());
        QTest::qWait(1);
    }
    QTRY_COMPARE(running(workspace), QList<qint32>{app.pid()});
    QVERIFY(workspace.sight().isFull());
    const SampleApp later;
    QTRY_COMPARE(launches.pids, (QList<qint32>{app.pid(), later.pid()}));
    // Who ran when nothing was told yet is no launch.
    QTRY_COMPARE(inSilence->pids, QList<qint32>{later.pid()});
    QCOMPARE(workspace.terminate(later.pid()), Termination::delivered);
    QTRY_VERIFY(!later.isRunning());
    QVERIFY(app.isRunning());
}

void X11FailuresTest::serverGoesAway() {
    X11Workspace workspace;
    X11Workspace watching;
    Launches launches(watching);
    const SampleApp app;
    QTRY_COMPARE(launches.pids, QList<qint32>{app.pid()});
    QCOMPARE(running(workspace), QList<qint32>{app.pid()});

    display::killServer();
    // Writing to whoever has gone ends the process where nobody has made arrangements. QProcess has.
    const auto before = std::signal(SIGPIPE, SIG_DFL);
    callEverythingInVain(workspace, thisProcess);
    callEverythingInVain(watching, thisProcess);
    std::signal(SIGPIPE, before);
    QTRY_VERIFY(!app.isRunning());
    QCOMPARE(launches.pids.size(), 1);

    display::restartServer();
    const SampleApp again;
    QTRY_COMPARE(running(workspace), QList<qint32>{again.pid()});
    QVERIFY(running(watching).contains(again.pid()));
    // The next call has gone on watching for whoever had subscribed.
    const SampleApp later;
    QTRY_VERIFY(launches.pids.contains(later.pid()));
    QCOMPARE(workspace.terminate(later.pid()), Termination::delivered);
    QTRY_VERIFY(!later.isRunning());
}

QTEST_GUILESS_MAIN(X11FailuresTest)
#include "tst_x11failures.moc"
