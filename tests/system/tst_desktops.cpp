// The same expectations of every desktop, over programs of X11 and, on Wayland, native ones. Which desktop it
// is, is said by tools/with-desktop.

#include "desktop/Platform.h"
#include "desktop/bus/BusNames.h"
#include "desktop/permission/GnomePermission.h"
#include "desktop/permission/LinuxPermission.h"
#include "desktop/permission/PlasmaPermission.h"
#include "desktop/wayland/PlasmaWindows.h"
#include "tests/support/ListeningSocket.h"
#include "tests/support/SampleApp.h"
#include "tests/support/TestClass.h"
#include "tests/support/Unanswered.h"

#include <QDir>
#include <QElapsedTimer>

#include <algorithm>
#include <csignal>
#include <functional>
#include <list>
#include <tuple>

using namespace Qt::StringLiterals;
using namespace kestrin;
using namespace kestrin::desktop;
using namespace kestrin::engine;
using namespace kestrin::runtime;
using foundation::Deadline;
using samples::callEverythingInVain;
using samples::installEntry;
using samples::running;
using samples::SampleApp;
namespace display = samples::display;

namespace {

/// What of a program can be reached.
enum class Reach {
    nothing,
    process, ///< that it runs, but neither what its windows say nor a way to close them
    windows,
};

/// What is different from one desktop to the other, and nothing else is.
struct Desktop {
    QString kind;
    /// What its user does so that this test sees something.
    std::function<DesktopPermission::Answer(const OwnPrograms &)> allow;
    Reach native;
    Reach x11;
    Sight::Extent sight;
    /// It tells which process a window belongs to, so that this has not to be found out by what the window
    /// claims.
    bool tellsProcesses;
    /// Its compositor can be started again without a new session.
    bool comesBack;
};

DesktopPermission::Answer allowAnybody(const OwnPrograms &) {
    return NoDesktopPermission().enable();
}

DesktopPermission::Answer allowInPlasma(const OwnPrograms &programs) {
    return PlasmaPermission(programs, qEnvironmentVariable("XDG_DATA_HOME") + u"/applications"_s,
                            std::make_unique<PlasmaWindows>())
        .enable();
}

DesktopPermission::Answer allowInGnome(const OwnPrograms &programs) {
    return GnomePermission(programs).enable();
}

const Desktop &thisDesktop() {
    using enum Reach;
    using enum Sight::Extent;
    static const QList<Desktop> desktops{
        {u"x11"_s, allowAnybody, windows, windows, full, true, true},
        {u"sway"_s, allowAnybody, windows, windows, full, true, true},
        {u"kwin"_s, allowInPlasma, windows, windows, full, true, true},
        {u"gnome-with-extension"_s, allowInGnome, windows, windows, full, true, false},
        {u"gnome"_s, allowAnybody, process, windows, partial, true, false},
        {u"phoc"_s, allowAnybody, windows, windows, full, false, true},
        // Its X server has no list of windows.
        {u"weston"_s, allowAnybody, nothing, nothing, none, true, true},
    };
    const QString kind = qEnvironmentVariable("KESTRIN_DESKTOP_KIND");
    for (const Desktop &desktop : desktops) {
        if (desktop.kind == kind)
            return desktop;
    }
    qFatal("No expectations are written down for the desktop \"%s\".", qUtf8Printable(kind));
}

/// A kind of programs: how the sample application becomes one, and what this desktop lets be reached of it.
struct Programs {
    QString options;
    Reach reach;

    /// The options of one with a name of its own.
    QString named(const char *name) const { return options + u"--class x/"_s + QLatin1StringView(name); }
    /// Those that are seen, of these.
    QList<qint32> seen(const QList<qint32> &pids) const {
        return reach == Reach::nothing ? QList<qint32>() : pids;
    }
};

bool isOnWayland() {
    return thisDesktop().kind != "x11"_L1;
}

Programs native() {
    return {isOnWayland() ? u"--wayland "_s : QString(), thisDesktop().native};
}

Programs ofX11() {
    return {QString(), thisDesktop().x11};
}

QList<qint32> sorted(QList<qint32> pids) {
    std::ranges::sort(pids);
    return pids;
}

} // namespace

class DesktopsTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase();
    void eachApplicationOnce_data() { kinds(); }
    void eachApplicationOnce();
    void identities_data() { kinds(); }
    void identities();
    void closing_data() { kinds(); }
    void closing();
    void hiding();
    void vanishing_data() { kinds(); }
    void vanishing();
    void silence();
    void strangers();
    void death();
    void newLogin();

  private:
    static void kinds() {
        QTest::addColumn<bool>("isNative");
        if (isOnWayland())
            QTest::newRow("native") << true;
        QTest::newRow("X11") << false;
    }
};

void DesktopsTest::initTestCase() {
    const auto answer = thisDesktop().allow({{QCoreApplication::applicationFilePath()}, false});
    QVERIFY2(answer.isDone, qUtf8Printable(answer.sentence));
    if (native().reach != Reach::process)
        return;
    // A process is an application by its executable.
    const SampleApp app;
    installEntry(u"org.example.Sample"_s, u"Sample"_s,
                 {u"Exec="_s + QFile::symLinkTarget(u"/proc/%1/exe"_s.arg(app.pid()))});
}

void DesktopsTest::eachApplicationOnce() {
    QFETCH(bool, isNative);
    const Programs programs = isNative ? native() : ofX11();
    const Programs others = isNative ? ofX11() : native();
    const auto workspace = makeWorkspace();
    // Those of the last test go, some more slowly.
    QTRY_COMPARE(running(*workspace), QList<qint32>());
    SampleApp before(programs.named("before --commands"));
    QTRY_COMPARE(before.said(u"mapped 1"_s), 1);
    QTRY_COMPARE(running(*workspace), programs.seen({before.pid()}));
    samples::Launches launches(*workspace);
    const SampleApp first(programs.named("first --windows 3"));
    QTRY_COMPARE(launches.pids, programs.seen({first.pid()}));
    // A further window is no launch.
    before.open();
    QTRY_COMPARE(before.said(u"mapped 2"_s), 1);
    const SampleApp second(others.named("second"));
    const QList<qint32> launched = programs.seen({first.pid()}) + others.seen({second.pid()});
    QTRY_COMPARE(launches.pids, launched);
    QCOMPARE(sorted(running(*workspace)), sorted(programs.seen({before.pid()}) + launched));
    QCOMPARE(workspace->sight().extent, thisDesktop().sight);
    before.kill();
    QTRY_COMPARE(sorted(running(*workspace)), sorted(launched));
}

void DesktopsTest::identities() {
    QFETCH(bool, isNative);
    const Programs programs = isNative ? native() : ofX11();
    installEntry(u"Zoom"_s, u"Zoom"_s, {u"StartupWMClass=zoom"_s});
    installEntry(u"google-chrome"_s, u"Google Chrome"_s);
    installEntry(u"org.example.Notes"_s, u"Notes"_s);
    const QString unknown =
        programs.reach == Reach::process ? u"Sample, org.example.Sample"_s : u"sample-app, no identifier"_s;
    for (const auto &[options, expected] : {
             std::pair{u"--class x/google-chrome"_s, u"Google Chrome, com.google.Chrome"_s},
             std::pair{u"--class x/ZOOM"_s, u"Zoom, us.zoom.xos"_s},
             std::pair{u"--class x/org.example.notes"_s, u"Notes, org.example.Notes"_s},
             // Never by the title.
             std::pair{u"--class none --title Zoom"_s, unknown},
         }) {
        const auto workspace = makeWorkspace();
        const SampleApp app(programs.options + options);
        QTRY_COMPARE(app.said(u"mapped 1"_s), 1);
        const bool isFound = expected != unknown || thisDesktop().tellsProcesses;
        QTRY_COMPARE(running(*workspace), isFound ? programs.seen({app.pid()}) : QList<qint32>());
        for (const QString &identity : samples::identities(*workspace))
            QCOMPARE(identity, programs.reach == Reach::windows ? expected : unknown);
    }
}

void DesktopsTest::closing() {
    QFETCH(bool, isNative);
    const Programs programs = isNative ? native() : ofX11();
    const bool isAsked = programs.reach == Reach::windows;
    const auto answer = isAsked                            ? Termination::delivered
                        : programs.reach == Reach::process ? Termination::refused
                                                           : Termination::gone;
    for (const auto &[options, windows, obeys] : {
             std::tuple{QString(), 1, true},
             std::tuple{u"--windows 3"_s, 3, true},
             std::tuple{u"--manner ignores"_s, 1, false},
             std::tuple{u"--manner asks"_s, 1, false},
         }) {
        const auto workspace = makeWorkspace();
        samples::Launches launches(*workspace);
        const SampleApp app(programs.named("app ") + options);
        QTRY_COMPARE(app.said(u"mapped %1"_s.arg(windows)), 1);
        // Once the desktop tells of whoever came later, it knows all of those windows.
        const SampleApp second(programs.named("second"));
        QTRY_COMPARE(launches.pids, programs.seen({app.pid(), second.pid()}));
        QCOMPARE(workspace->terminate(app.pid()), answer);
        for (int number = 1; number <= windows; ++number)
            QTRY_VERIFY2(app.said(u"asked %1"_s.arg(number)) == (isAsked ? 1 : 0), qPrintable(options));
        if (isAsked && options.contains(u"asks"_s))
            QTRY_COMPARE(app.said(u"mapped 2"_s), 1);
        QTRY_VERIFY2(app.isRunning() == (!isAsked || !obeys), qPrintable(options));
        // Its question is no launch.
        const SampleApp fence(programs.named("fence"));
        QTRY_COMPARE(fence.said(u"mapped 1"_s), 1);
        QTRY_COMPARE(launches.pids, programs.seen({app.pid(), second.pid(), fence.pid()}));
    }
}

/// As a client of video calls does it, which lives on in a tray.
void DesktopsTest::hiding() {
    QElapsedTimer timer;
    timer.start();
    const auto workspace = makeWorkspace();
    samples::Launches launches(*workspace);
    std::list<SampleApp> apps;
    QList<qint32> pids;
    for (const Programs &programs : {native(), ofX11()}) {
        if (programs.reach != Reach::windows)
            continue;
        SampleApp &app = apps.emplace_back(
            programs.named(programs.options.isEmpty() ? "x11 --commands" : "native --commands"));
        QTRY_COMPARE(app.said(u"mapped 1"_s), 1);
        pids.append(app.pid());
    }
    QTRY_COMPARE(launches.pids, pids);
    for (SampleApp &app : apps) {
        for (const QString &closed : {u"closed 1"_s, u"closed 2"_s, u"closed 3"_s}) {
            QCOMPARE(workspace->terminate(app.pid()), Termination::delivered);
            QTRY_COMPARE(app.said(closed), 1);
            QTRY_VERIFY(!running(*workspace).contains(app.pid()));
            QCOMPARE(workspace->terminate(app.pid()), Termination::gone);
            // Perhaps before anybody has been told that it went.
            app.open();
            QTRY_VERIFY(running(*workspace).contains(app.pid()));
        }
    }
    // It is launched again, and not more often than every five seconds.
    for (const qint32 pid : pids) {
        QTRY_VERIFY_WITH_TIMEOUT(launches.pids.count(pid) > 1, 10000);
        QVERIFY(launches.pids.count(pid) <= 2 + timer.elapsed() / 5000);
    }
}

void DesktopsTest::vanishing() {
    QFETCH(bool, isNative);
    const Programs programs = isNative ? native() : ofX11();
    const auto workspace = makeWorkspace();
    samples::Launches launches(*workspace);
    const SampleApp steady(programs.named("steady"));
    QTRY_COMPARE(launches.pids, programs.seen({steady.pid()}));
    {
        const SampleApp flickering(programs.named("flickering --manner flickers"));
        QTRY_COMPARE(flickering.said(u"mapped 1"_s), 1);
        for (int i = 0; i < 100; ++i) {
            QList<qint32> seen = running(*workspace);
            seen.removeAll(flickering.pid());
            QCOMPARE(seen, programs.seen({steady.pid()}));
            QCoreApplication::processEvents();
        }
    }
    const SampleApp later(programs.named("later"));
    QTRY_COMPARE(launches.pids.count(later.pid()), programs.seen({later.pid()}).size());
}

void DesktopsTest::silence() {
    const auto workspace = makeWorkspace();
    samples::Launches launches(*workspace);
    const SampleApp app(native().named("app"));
    QTRY_COMPARE(launches.pids, native().seen({app.pid()}));
    const auto other = makeWorkspace();
    QTRY_COMPARE(running(*other), native().seen({app.pid()}));
    std::optional<samples::Launches> inSilence;
    {
        display::signalServer(SIGSTOP);
        const auto goesOn = qScopeGuard([] { display::signalServer(SIGCONT); });
        callEverythingInVain(*workspace, app.pid());
        inSilence.emplace(*other);
        // Whom it has never answered waits once.
        QElapsedTimer timer;
        timer.start();
        callEverythingInVain(*makeWorkspace(), app.pid());
        QVERIFY(timer.elapsed() < 4000);
    }
    QTRY_COMPARE(running(*workspace), native().seen({app.pid()}));
    QTRY_COMPARE(running(*other), native().seen({app.pid()}));
    QCOMPARE(workspace->sight().extent, thisDesktop().sight);
    const SampleApp later(native().named("later"));
    QTRY_COMPARE(launches.pids, native().seen({app.pid(), later.pid()}));
    // Who ran when nothing was told yet is no launch.
    QTRY_COMPARE(inSilence->pids, native().seen({later.pid()}));
}

/// In the environment is the socket of a sway that is none of this session and does not answer, and on the
/// bus somebody calls himself as GNOME's shell does.
void DesktopsTest::strangers() {
    const SampleApp app(native().named("app --later --commands --qt accepts --bus-name org.gnome.Shell"));
    const QString shell = u"org.gnome.Shell"_s;
    QTRY_VERIFY(BusNames::owners({shell}, Deadline(desktopPatience)).contains(shell));
    const samples::ListeningSocket sway;
    const QByteArray before = qgetenv("SWAYSOCK");
    qputenv("SWAYSOCK", sway.path());
    const auto restore =
        qScopeGuard([&] { before.isEmpty() ? qunsetenv("SWAYSOCK") : qputenv("SWAYSOCK", before); });
    const auto workspace = makeWorkspace();
    // On X11 it cannot be told that it is none of this session.
    QCOMPARE(workspace->sight().extent, isOnWayland() ? thisDesktop().sight : Sight::Extent::partial);
    samples::Launches launches(*workspace);
    const SampleApp other(native().named("other"));
    QTRY_COMPARE(other.said(u"mapped 1"_s), 1);
    QTRY_COMPARE(launches.pids, native().seen({other.pid()}));
    // Nor that who shows nothing here shows nothing there.
    if (!isOnWayland())
        QCOMPARE(workspace->terminate(app.pid()), Termination::refused);
    if (!thisDesktop().kind.startsWith("gnome"_L1))
        QCOMPARE(LinuxPermission().enable().sentence, thisDesktop().allow(OwnPrograms::find()).sentence);
}

/// The last but one: what has died does not come back as it was everywhere.
void DesktopsTest::death() {
    const auto workspace = makeWorkspace();
    const auto unheard = makeWorkspace();
    samples::Launches launches(*workspace);
    const SampleApp app(native().named("app"));
    QTRY_COMPARE(launches.pids, native().seen({app.pid()}));
    QTRY_COMPARE(running(*unheard), native().seen({app.pid()}));
    const SampleApp other(ofX11().named("other"));
    const QList<qint32> before = native().seen({app.pid()}) + ofX11().seen({other.pid()});
    QTRY_COMPARE(launches.pids, before);

    display::killServer();
    // Writing to whoever has gone ends the process where nobody has made arrangements. QProcess has.
    const auto arranged = std::signal(SIGPIPE, SIG_DFL);
    for (const auto &asked : {workspace.get(), unheard.get()})
        callEverythingInVain(*asked, static_cast<qint32>(QCoreApplication::applicationPid()));
    std::signal(SIGPIPE, arranged);
    QTRY_VERIFY(!app.isRunning() && !other.isRunning());
    QCOMPARE(launches.pids, before);

    if (!thisDesktop().comesBack)
        return;
    display::restartServer();
    const SampleApp again(native().named("again"));
    QTRY_COMPARE(again.said(u"mapped 1"_s), 1);
    QTRY_COMPARE(running(*workspace), native().seen({again.pid()}));
    QTRY_COMPARE(running(*unheard), native().seen({again.pid()}));
    QCOMPARE(workspace->sight().extent, thisDesktop().sight);
    // The next call has gone on watching for whoever had subscribed, and what ran then is no launch.
    const SampleApp later(native().named("later"));
    QTRY_COMPARE(launches.pids, before + native().seen({later.pid()}));
    QCOMPARE(unheard->terminate(later.pid()) == Termination::delivered, native().reach == Reach::windows);
}

/// GNOME finds an extension that is new to it at the next login, and what was allowed before counts then. The
/// others need no login.
void DesktopsTest::newLogin() {
    if (thisDesktop().kind != "gnome"_L1)
        return;
    const auto tellsOf = [](const QByteArray &what, const QString &words, const QString &before = {}) {
        const QString call = before + u"exec \"$0\" "_s + words + u" 2>&1"_s;
        return samples::Program({u"sh"_s, u"-c"_s, call, QStringLiteral(KESTRINCTL)}).output().contains(what);
    };
    const QString status = u"status --json"_s;
    const QByteArray full = R"("extent": "full")";
    display::restartServer();
    QTRY_VERIFY(tellsOf("next login", u"desktop enable"_s));
    QVERIFY(!tellsOf(full, status));
    display::killServer();
    display::restartServer();
    QTRY_VERIFY(tellsOf(full, status));
    // It is taken back from anywhere.
    QVERIFY(tellsOf("taken back", u"desktop disable"_s, u"unset WAYLAND_DISPLAY; "_s));
    QTRY_VERIFY(!tellsOf(full, status));
    QVERIFY(QDir(qEnvironmentVariable("XDG_DATA_HOME") + u"/gnome-shell/extensions"_s).isEmpty());
}

KESTRIN_TEST(DesktopsTest)
#include "tst_desktops.moc"
