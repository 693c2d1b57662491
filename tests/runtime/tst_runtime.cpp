// What the runtime asks of its surroundings, and in which order; what it records and publishes; and several
// processes over the same files.

#include "runtime/FirstStart.h"
#include "runtime/MonitoringClaim.h"
#include "runtime/PrivacyModeFlag.h"
#include "tests/support/Home.h"
#include "tests/support/MemoryHome.h"
#include "tests/support/Test.h"
#include "tests/support/Witness.h"

#include <QDeadlineTimer>

#include <unistd.h>

#include <atomic>
#include <functional>
#include <thread>

namespace {

using Kind = MacProtectionEventKind;

/// Schedules are off unless a test turns them on.
struct MemoryHome : samples::MemoryHome {
    MemoryHome() {
        defaults.setStringArray(samples::modesKey, {});
        asked();
    }
};

struct Home : samples::Home {
    Home() { defaults.setStringArray(samples::modesKey, {}); }
};

/// One of several processes over the files of a home, as far as files can tell.
struct Process {
    JSONUserDefaults defaults;
    MacProtectionRuntime runtime;
    PrivacyModeFlag flag{defaults, runtime};
    QSignalSpy switched{&flag, &PrivacyModeFlag::changed};
    QSignalSpy failed{&runtime, &MacProtectionRuntime::storageFailed};
    QSignalSpy setAside{&runtime, &MacProtectionRuntime::fileSetAside};
    QSignalSpy catalogChanged{&runtime, &MacProtectionRuntime::catalogChanged};

    explicit Process(samples::Home &home)
        : defaults(home.preferences())
        , runtime(defaults, home.surroundings()) {}
};

QString matchIDs(const MacProtectionRuntime &runtime) {
    QStringList ids;
    for (const RiskAppMatch &match : runtime.matches())
        ids.append(match.id());
    return ids.join(u',');
}

} // namespace

class RuntimeTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void operations();
    void oneRefresh();
    void checks();
    void startingOverFiles();
    void firstStart();
    void publishedEvents();
    void otherProcesses();
    void pausesOfOthers();
    void ownApplications();
    void ownApplicationsOfOthers();
    void unreadable();
    void nobodysChoice();
    void severalAsOne();
    void claims();
};

void RuntimeTest::operations() {
    MemoryHome home;
    MacProtectionRuntime runtime(home.defaults, home.surroundings());
    PrivacyModeFlag flag(home.defaults, runtime);
    QSignalSpy switched(&flag, &PrivacyModeFlag::changed);
    const auto asks = [&home](const std::function<void()> &operation) {
        operation();
        return home.asked().join(u" | "_s);
    };
    QCOMPARE(asks([] {}), u"load | read 8 | list | load"_s);

    const QString started = u"save on 12 | list | load | watched by 1"_s;
    QCOMPARE(asks([&] { flag.startRuntime(); }), started);
    QCOMPARE(asks([&] { runtime.start(true, {}); }), started);
    // What an operation that changes a setting asks for after it has recorded.
    const QString shown = u" | read 8 | list | load"_s;
    QCOMPARE(asks([&] { runtime.setProtectedDefinition(u"zoom"_s, true); }), QString());
    QCOMPARE(asks([&] { runtime.setProtectedDefinition(u"zoom"_s, false); }),
             u"save on 11 | log Zoom removed from Mac Privacy Mode."_s + shown);
    QCOMPARE(matchIDs(runtime), QString());
    QCOMPARE(asks([&] { runtime.setProtectedDefinition(u"skype"_s, true); }),
             u"save on 12 | log Protected app added to Mac Privacy Mode."_s + shown);
    QCOMPARE(asks([&] { runtime.applyRecommendedRiskApps(); }),
             u"save on 12 | log Recommended Mac protected app list applied."_s + shown);
    QCOMPARE(matchIDs(runtime), u"zoom-10"_s);
    QCOMPARE(runtime.recentEvents().at(1).appName, u"Protected app"_s);

    const QString zoomIsAsked =
        u"list | load | list | ask 10 | log Privacy Mode is on. Evaluating Mac protected apps. | "
        "log Zoom matches Zoom risk categories: Video call, Microphone, Camera. | log Asked Zoom to quit. | "
        "read 8"_s;
    const QString enforcing =
        u"watched by 1 | log Mac app actions are enforcing for selected protected apps. | read 8 | "_s +
        zoomIsAsked;
    QCOMPARE(asks([&] { runtime.setEnforceActions(true); }), u"store enforceActions | "_s + enforcing);
    // Assigning the same value does all of it again.
    QCOMPARE(asks([&] { runtime.setEnforceActions(true); }), enforcing);
    QCOMPARE(asks([&] { runtime.runLiveCheck(); }), zoomIsAsked);

    // The flag is stored after the settings, for those who follow it. Only a change is recorded.
    const QString turnedOff = u"save off 12 | log Privacy Mode is off for this Mac."_s + shown;
    QCOMPARE(asks([&] { flag.setOn(false); }), turnedOff + u" | store privacyModeOn"_s);
    QCOMPARE(asks([&] { flag.setOn(false); }), u"save off 12 | list | load"_s);
    QCOMPARE(switched.size(), 1);
    QCOMPARE(asks([&] { runtime.updatePrivacyMode(true, false); }), u"save on 12 | list | load"_s);

    // Away lasts until six. Without a setter the runtime saves the change itself.
    flag.setOn(false);
    home.asked();
    for (const QString &asItIsOrUnknown : {u"sleep"_s, u"unknown"_s})
        QCOMPARE(asks([&] { runtime.setMode(asItIsOrUnknown, false); }), QString());
    QCOMPARE(asks([&] { runtime.setMode(u"away"_s, true); }),
             u"store enabledModeIDs away | log Away Mode enabled. | read 8 | load | "
             "log Schedule turned Privacy Mode on. | read 8 | save on 12 | "
             "log Privacy Mode is on for this Mac."_s +
                 shown);
    QCOMPARE(asks([&] { runtime.evaluateSchedules(home.now); }), u"load"_s);
    home.defaults.setBoolean(PrivacyModeFlag::key, true);
    home.asked();
    runtime.setPrivacyModeSetter([&flag](bool on) { return flag.setOn(on); });
    home.now.setTime(QTime(18, 0));
    QCOMPARE(asks([&] { runtime.evaluateSchedules(home.now); }),
             u"load | log Schedule turned Privacy Mode off. | read 8 | "_s + turnedOff +
                 u" | store privacyModeOn"_s);
    QCOMPARE(asks([&] { runtime.setMode(u"away"_s, false); }),
             u"store enabledModeIDs | log Away Mode disabled. | read 8"_s);
    QCOMPARE(runtime.recentEvents().first().kind, Kind::privacyModeOff);
}

void RuntimeTest::oneRefresh() {
    MemoryHome home;
    home.defaults.setBoolean(MacProtectionRuntime::enforceActionsKey, true);
    MacProtectionRuntime runtime(home.defaults, home.surroundings());
    runtime.start(true, {});
    QSignalSpy requests(&runtime, &MacProtectionRuntime::quitRequested);
    const QStringList reaction{u"load"_s, u"ask 12"_s, u"log FaceTime relaunched while Privacy Mode is on."_s,
                               u"log Asked FaceTime to quit."_s};
    for (const int together : {1, 3}) {
        home.asked();
        requests.clear();
        const QStringList before = samples::messages(runtime.recentEvents());
        QStringList expected;
        for (int i = 0; i < together; ++i) {
            home.workspace.launch(samples::running(u"FaceTime"_s, 12));
            expected += reaction;
        }
        // What a launch leads to is published later, once for all of them.
        QCOMPARE(home.asked(), expected);
        QVERIFY(samples::messages(runtime.recentEvents()) == before && requests.isEmpty());
        QCoreApplication::processEvents();
        QCOMPARE(home.asked(), (QStringList{u"read 8"_s, u"list"_s, u"load"_s}));
        QCOMPARE(runtime.recentEvents().first().message, u"Asked FaceTime to quit."_s);
        QCOMPARE(runtime.matches().last().id(), u"facetime-12"_s);
        QCOMPARE(requests.size(), together);
    }
}

void RuntimeTest::checks() {
    MemoryHome home;
    MacProtectionRuntime runtime(home.defaults, home.surroundings());
    runtime.refreshInventoryPreview();
    QCOMPARE(runtime.lastChecked(), std::nullopt);
    for (const bool on : {true, false}) {
        home.settings->settings.isEnabled = on;
        // It counts what it lists itself, and the controller matches what runs a little later.
        const qint64 running = home.workspace.InMemoryWorkspace::runningApplications().size();
        home.workspace.arriving = samples::running(u"FaceTime"_s, 20);
        runtime.runLiveCheck();
        QCOMPARE(runtime.runningAppCount(), running);
        QCOMPARE(matchIDs(runtime), on ? u"zoom-10,facetime-20"_s : QString());
        // The last look at the clock, after everything was recorded.
        QCOMPARE(runtime.lastChecked(), home.now);
        QVERIFY(runtime.recentEvents().first().date < home.now);
    }
    // A preview ignores whether Privacy Mode is on, and is no check.
    runtime.refreshInventoryPreview();
    QCOMPARE(matchIDs(runtime), u"zoom-10,facetime-20,facetime-20"_s);
    QCOMPARE(runtime.lastChecked(), home.now);
}

void RuntimeTest::startingOverFiles() {
    Home home;
    {
        MacProtectionRuntime runtime(home.defaults, home.surroundings());
        QCOMPARE(runtime.protectedDefinitionIDs(), defaultDefinitionIDs());
        // To construct it touches nothing.
        QVERIFY(!runtime.isMonitoring() && !QFile::exists(home.support()));
        runtime.start(false, [](bool) { return Outcome(); });
        QCOMPARE(home.settings.load(), (PrivacyModeSettings{false, defaultDefinitionIDs()}));
        QCOMPARE(runtime.monitorLabel(), u"Preview"_s);

        QSignalSpy noticed(&runtime, &MacProtectionRuntime::summariesChanged);
        for (const QString &id : defaultDefinitionIDs())
            runtime.setProtectedDefinition(id, false);
        // The file notice that comes back for our own writes must not fill the selection up again.
        QTRY_VERIFY(!noticed.isEmpty());
        QVERIFY(runtime.protectedDefinitionIDs().isEmpty());
        QCOMPARE(matchIDs(runtime), u"zoom-10"_s);
        // The refresh that is still posted must not reach a runtime that has gone.
        runtime.updatePrivacyMode(true, false);
        home.workspace.launch(samples::running(u"FaceTime"_s, 12));
    }
    QCoreApplication::processEvents();
    QCOMPARE(home.workspace.subscriberCount(), 0);
    QVERIFY(home.settings.load().protectedDefinitionIDs.isEmpty());
    QCOMPARE(MacProtectionRuntime(home.defaults, home.surroundings()).protectedDefinitionIDs(),
             defaultDefinitionIDs());
}

void RuntimeTest::firstStart() {
    // What a user may have left, and whether that is a new one.
    const auto row = [](const QString &file, bool isNew) {
        samples::Home home;
        samples::write(home.folder.filePath(file), "no JSON");
        QCOMPARE(FirstStart(home.defaults, home.support()).isDue(), isNew);
    };
    row(u"data/Kestrin/monitor.lock"_s, true);
    row(u"data/Kestrin/activity-log.json.damaged-2026-11-25T19-04-11"_s, false);
    row(u"data/Kestrin/own-applications.json"_s, false);
    row(u"config/user-defaults.json"_s, false);
    samples::Home home;
    FirstStart inBackground(home.defaults, home.support());
    inBackground.putOff();
    home.log.append(samples::event(u"Started."_s));
    FirstStart withWindow(home.defaults, home.support());
    QVERIFY(withWindow.isDue() && withWindow.begin() && !withWindow.isDue());
    QVERIFY(!FirstStart(home.defaults, home.support()).isDue());
    // What cannot be remembered would come again and again.
    samples::Home full;
    samples::write(full.folder.filePath(u"config"_s), {});
    QVERIFY(!FirstStart(full.defaults, full.support()).begin());
}

void RuntimeTest::publishedEvents() {
    Home home;
    for (int i = 0; i < 3; ++i)
        home.log.append(samples::event(QString::number(i)));
    for (const Kind kind : allCases<Kind>())
        home.log.append(MacProtectionEvent::create(systemTime(), kind, rawValue(kind)));
    MacProtectionRuntime runtime(home.defaults, home.surroundings());
    QCOMPARE(runtime.recentEvents(), home.log.recent(8));
    QCOMPARE(runtime.actionEventCount(), 4);

    // The log's watch hears of what the runtime itself records; that is read once all the same.
    runtime.start(true, [](bool) { return Outcome(); });
    QSignalSpy readings(&runtime, &MacProtectionRuntime::recentEventsChanged);
    home.workspace.launch(samples::running(u"FaceTime"_s, 12));
    QTRY_COMPARE(readings.size(), 1);
    runtime.applyRecommendedRiskApps();
    QCOMPARE(readings.size(), 2);
    // What another process records is news, and what comes back of our own records comes before it.
    home.log.append(samples::event(u"theirs"_s));
    QTRY_COMPARE(runtime.recentEvents().first().message, u"theirs"_s);
    QCOMPARE(readings.size(), 3);
}

void RuntimeTest::otherProcesses() {
    Home home;
    Process ours(home);
    ours.flag.startRuntime();
    std::optional<Process> theirs(std::in_place, home);
    // No event loop runs in between, so neither hears of the other's changes by itself.
    theirs->runtime.setProtectedDefinition(u"zoom"_s, false);
    ours.runtime.setProtectedDefinition(u"teams"_s, false);
    theirs->flag.setOn(false);
    const QSet<QString> both = defaultDefinitionIDs() - QSet<QString>{u"zoom"_s, u"teams"_s};
    QCOMPARE(home.settings.load(), (PrivacyModeSettings{false, both}));
    QCOMPARE(ours.runtime.protectedDefinitionIDs(), both);
    QCOMPARE(theirs->runtime.protectedDefinitionIDs(), both);
    // Then it does.
    QTRY_VERIFY(!ours.flag.isOn());
    theirs->runtime.setProtectedDefinition(u"zoom"_s, true);
    QTRY_COMPARE(matchIDs(ours.runtime), u"zoom-10"_s);
    theirs->runtime.setMode(u"travel"_s, true);
    QTRY_COMPARE(ours.runtime.enabledScheduleCount(), 1);
    theirs->runtime.setEnforceActions(true);
    QTRY_VERIFY(ours.runtime.enforceActions());
    QVERIFY(samples::everythingIsTold());
    // Nothing is recorded a second time here.
    const QStringList story{u"Zoom removed from Mac Privacy Mode."_s,
                            u"Microsoft Teams removed from Mac Privacy Mode."_s,
                            u"Privacy Mode is off for this Mac."_s,
                            u"Zoom added to Mac Privacy Mode."_s,
                            u"Travel Mode enabled."_s,
                            u"Mac app actions are enforcing for selected protected apps."_s,
                            u"Privacy Mode is off. No Mac app actions were taken."_s};
    QCOMPARE(home.story(), story);
    QCOMPARE(ours.runtime.recentEvents(), home.log.recent(8));
    // The monitor here has followed the choice.
    theirs->flag.setOn(true);
    theirs.reset();
    home.workspace.launch(samples::running(u"FaceTime"_s, 20));
    QCOMPARE(home.workspace.terminationRequests(), QList<qint32>{20});
}

void RuntimeTest::pausesOfOthers() {
    Home home;
    home.defaults.setStringArray(samples::modesKey, {u"away"_s});
    Process ours(home);
    ours.flag.startRuntime();
    Process theirs(home);

    // One pauses, the other one follows, and the schedule that wants it on waits.
    for (const int hours : {1, 2}) {
        const QDateTime end = home.now.addSecs(hours * 3600);
        const QDeadlineTimer second(1000);
        QVERIFY(theirs.flag.pause(end).isKept());
        QTRY_COMPARE(ours.flag.pausedUntil(), end);
        QTRY_COMPARE(ours.switched.size(), 1);
        QVERIFY2(!second.hasExpired(), "It took longer than a second to be heard of.");
        QVERIFY(ours.runtime.evaluateSchedules(home.now).isKept() && !ours.runtime.isSavedOn());
    }
    home.workspace.launch(samples::running(u"FaceTime"_s, 20));
    // The other one resumes.
    QVERIFY(ours.flag.setOn(true).isKept());
    QVERIFY(theirs.flag.isOn() && !theirs.flag.pausedUntil());
    // Whoever turns it off for good while it is paused has not paused it.
    QVERIFY(theirs.flag.pause(home.now.addSecs(3600)).isKept());
    QTRY_VERIFY(ours.flag.pausedUntil());
    QVERIFY(theirs.flag.setOn(false).isKept());
    QVERIFY(!ours.flag.pausedUntil() && !ours.flag.isOn());
    QCOMPARE(ours.runtime.evaluateSchedules(home.now).switchedBySchedules, true);
    // And one that ends by itself, in a program that runs.
    const Pause pause = Pause::between(home.now, home.now.addSecs(1));
    QVERIFY(ours.flag.pause(pause.until).isKept() && !ours.flag.isOn());
    home.now = pause.until;
    ours.switched.clear();
    QTRY_COMPARE(ours.switched.size(), 1);
    QVERIFY(ours.flag.isOn() && ours.runtime.isSavedOn() && theirs.flag.isOn());
    QVERIFY(!Pause::stored(theirs.defaults));
    const QString on = u"Privacy Mode is on for this Mac."_s;
    const QString off = u"Privacy Mode is off for this Mac."_s;
    QCOMPARE(home.story(), (QStringList{off, on, off, u"Schedule turned Privacy Mode on."_s, on, off, on}));
    // What is no pause is none.
    for (const QStringList &texts :
         {QStringList{u"2026-03-14T12:00:00Z"_s}, QStringList{u"soon"_s, u"later"_s},
          QStringList{u"2026-03-14T12:00:00Z"_s, u"2026-03-14T12:00:00Z"_s}}) {
        theirs.defaults.setStringArray(Pause::key, texts);
        QVERIFY(!Pause::stored(theirs.defaults));
    }
}

void RuntimeTest::ownApplications() {
    using IDs = QSet<QString>;
    const IDs all = defaultDefinitionIDs();
    const IDs both{u"notes"_s, u"paint"_s};
    const IDs zoom{u"zoom"_s};
    // What is selected when the runtime starts, by another process then, and when two have been added.
    const auto row = [&](const char *what, const std::optional<IDs> &stored,
                         const std::optional<IDs> &storedMeanwhile, const IDs &selected) {
        Home home;
        if (stored)
            home.settings.save({true, *stored});
        auto process = std::make_unique<Process>(home);
        MacProtectionRuntime &runtime = process->runtime;
        process->flag.startRuntime();
        if (storedMeanwhile)
            home.settings.save({true, *storedMeanwhile});
        const auto areSelected = [&](const IDs &expected) {
            return home.settings.load().protectedDefinitionIDs == expected &&
                   (expected.isEmpty() || runtime.protectedDefinitionIDs() == expected);
        };
        home.workspace.add(samples::running(u"Paint"_s, 30));
        const Outcome added = runtime.addOwnApplication({.name = u"Notes"_s});
        QVERIFY(added.isKept() && added.changed == QStringList{u"notes"_s});
        QVERIFY(runtime.addOwnApplication({.name = u"Paint"_s}).isKept());
        QCOMPARE(process->catalogChanged.size(), 2);
        QVERIFY2(areSelected(selected), what);
        QVERIFY(matchIDs(runtime).contains(u"paint-30"_s));
        runtime.applyRecommendedRiskApps();
        QVERIFY2(areSelected(all | both), what);
        QVERIFY(runtime.removeOwnApplications({u"notes"_s}).isKept());
        QVERIFY2(areSelected(all | IDs{u"paint"_s}), what);
        QCOMPARE(runtime.catalog().definitions.size(), 13);
        const QString name = u" Mac Privacy Mode."_s;
        QCOMPARE(home.story(), (QStringList{u"Notes added to"_s + name, u"Paint added to"_s + name,
                                            u"Recommended Mac protected app list applied."_s,
                                            u"Notes removed from"_s + name}));
        // Whoever starts over lost settings protects everything, the own ones too.
        process.reset();
        QVERIFY(QFile::remove(home.settings.file()));
        Process(home).flag.startRuntime();
        QCOMPARE(home.settings.load().protectedDefinitionIDs, all | IDs{u"paint"_s});
    };
    row("nothing stored", {}, {}, all | both);
    row("some selected", zoom, {}, zoom | both);
    // Nothing selected protects everything. A program that starts shows and stores that.
    row("empty", IDs(), {}, all | both);
    // One that runs leaves it so: selecting what is added alone would leave the others unprotected.
    row("emptied meanwhile", zoom, IDs(), {});
}

void RuntimeTest::ownApplicationsOfOthers() {
    Home home;
    home.defaults.setBoolean(MacProtectionRuntime::enforceActionsKey, true);
    Process ours(home);
    ours.flag.startRuntime();
    const QDeadlineTimer second(1000);
    QVERIFY(Process(home).runtime.addOwnApplication({.name = u"Notes"_s}).isKept());
    QTRY_VERIFY(ours.runtime.protectedDefinitionIDs().contains(u"notes"_s));
    QVERIFY2(!second.hasExpired(), "It took longer than a second to be heard of.");
    QCOMPARE(ours.catalogChanged.size(), 1);
    // The monitor is the same and knows it.
    home.workspace.launch(samples::running(u"notes"_s, 20));
    QCOMPARE(home.workspace.terminationRequests(), QList<qint32>{20});
    // What cannot be read any more is nobody's choice, and told once.
    const QString file = home.support() + u"/own-applications.json"_s;
    const QByteArray before = samples::contents(file);
    samples::write(file, "{");
    QTRY_COMPARE(ours.failed.size(), 1);
    QVERIFY(ours.failed.first().first().toString().startsWith(file));
    home.workspace.launch(samples::running(u"Notes"_s, 21));
    QCOMPARE(home.workspace.terminationRequests().last(), 21);
    QVERIFY(!ours.runtime.addOwnApplication({.name = u"Paint"_s}).isKept());
    QVERIFY(!ours.runtime.removeOwnApplications({u"notes"_s}).isKept());
    QVERIFY(ours.runtime.protectedDefinitionIDs().contains(u"notes"_s));
    QCOMPARE(samples::contents(file), QByteArray("{"));
    // Mended, or moved away.
    samples::write(file, before);
    QVERIFY(ours.runtime.addOwnApplication({.name = u"Paint"_s}).isKept());
    QVERIFY(QFile::remove(file));
    QTRY_COMPARE(ours.runtime.catalog().definitions.size(), 12);
    home.workspace.launch(samples::running(u"Notes"_s, 22));
    QCOMPARE(home.workspace.terminationRequests().last(), 21);
}

void RuntimeTest::unreadable() {
    // Settings that cannot be read any more are nobody's choice: what was selected stays selected, whoever
    // asks, and is stored as soon as that is possible.
    Home home;
    const QString file = home.settings.file();
    const QSet<QString> facetime{u"facetime"_s};
    home.settings.save({true, facetime});
    Process ours(home);
    ours.flag.startRuntime();
    samples::write(file, "{");
    QTRY_COMPARE(ours.failed.size(), 1);
    QVERIFY(samples::everythingIsTold());
    QCOMPARE(ours.runtime.protectedDefinitionIDs(), facetime);
    QCOMPARE(matchIDs(ours.runtime), QString());
    home.workspace.launch(samples::running(u"Zoom"_s, 12));
    QCOMPARE(home.story(), QStringList());
    QVERIFY(ours.flag.setOn(false).isKept());
    QCOMPARE(home.settings.load(), (PrivacyModeSettings{false, facetime}));
    QVERIFY(ours.setAside.size() == 1 && ours.failed.size() == 1);
    // That was over, so the same again is news.
    samples::write(file, "{");
    QTRY_COMPARE(ours.failed.size(), 2);

    // What is asked for but cannot be kept is told, and neither the flag nor the file says otherwise.
    QVERIFY(QFile::remove(file) && QDir().mkpath(file));
    QCOMPARE(ours.flag.setOn(true).settings.problem, file + u" is a folder and not a file; move it away."_s);
    QVERIFY(!ours.flag.isOn());
}

void RuntimeTest::nobodysChoice() {
    // Settings that cannot be read are set aside by a start; where they cannot be, nobody is asked to quit by
    // what takes their place.
    for (const bool isFolder : {false, true}) {
        Home home;
        const QString file = home.settings.file();
        home.defaults.setBoolean(MacProtectionRuntime::enforceActionsKey, true);
        if (isFolder)
            QVERIFY(QDir().mkpath(file));
        else
            samples::write(file, "{");
        Process ours(home);
        ours.flag.startRuntime();
        QVERIFY(ours.failed.size() == (isFolder ? 1 : 0) && ours.setAside.size() == (isFolder ? 0 : 1));
        home.workspace.launch(samples::running(u"FaceTime"_s, 12));
        ours.runtime.runLiveCheck();
        QCOMPARE(home.workspace.terminationRequests().isEmpty(), isFolder);
        QCOMPARE(home.story().count(u"Zoom was not asked to quit, because the settings cannot be read."_s),
                 isFolder ? 1 : 0);

        QCOMPARE(ours.flag.setOn(false).isKept(), !isFolder);
        QCOMPARE(ours.runtime.setMode(u"away"_s, true).switchedBySchedules,
                 isFolder ? std::nullopt : std::optional(true));
        ours.runtime.runLiveCheck();
        QCOMPARE(home.workspace.terminationRequests().isEmpty(), isFolder);
    }
}

void RuntimeTest::severalAsOne() {
    MemoryHome home;
    MacProtectionRuntime runtime(home.defaults, home.surroundings());
    runtime.setModes({u"sleep"_s, u"away"_s}, true);
    home.asked();
    // At noon only Away wants it on; nobody wants anything when both are disabled.
    for (const QString &order : {u"sleep away travel unknown"_s, u"away sleep travel unknown"_s}) {
        const Outcome disabled = runtime.setModes(order.split(u' '), false);
        QVERIFY(disabled.isKept() && !disabled.switchedBySchedules && home.settings->settings.isEnabled);
        QCOMPARE(home.asked().filter(u"store "_s), QStringList{u"store enabledModeIDs"_s});
        runtime.setModes({u"sleep"_s, u"away"_s}, true);
        home.asked();
    }
    QCOMPARE(runtime.setModes({u"away"_s}, false).switchedBySchedules, false);
    home.asked();
    runtime.setProtectedDefinitions({u"zoom"_s, u"teams"_s, u"zoom"_s}, false);
    QCOMPARE(home.asked().mid(0, 3),
             (QStringList{u"save off 10"_s, u"log Zoom removed from Mac Privacy Mode."_s, u"read 8"_s}));
    QCOMPARE(home.story().last(), u"Microsoft Teams removed from Mac Privacy Mode."_s);
}

void RuntimeTest::claims() {
    const samples::Home home;
    const QString file = home.support() + u"/monitor.lock"_s;
    // What is in the way of the claim is in everybody's way.
    QVERIFY(QDir().mkpath(file));
    QCOMPARE(MonitoringClaim(home.support(), u"a"_s).obstacle(),
             u"Nothing can be watched: "_s + file + u" is a folder and not a file; move it away."_s);
    QVERIFY(QDir().rmdir(file));

    // A claim survives its folder.
    const MonitoringClaim first(home.support(), u"first"_s);
    QSignalSpy lost(&first, &MonitoringClaim::lost);
    QVERIFY(first.isHeld() && QDir(home.support()).removeRecursively());
    QString problem;
    QTRY_VERIFY(MonitoringClaim::currentHolder(home.support(), problem));
    const MonitoringClaim second(home.support(), u"second"_s);
    QVERIFY(second.holder().value_or(QString()).startsWith(u"first, process "));
    QVERIFY(first.isHeld() && lost.isEmpty());
    // Unless somebody else is faster.
    QVERIFY(QFile::remove(file));
    const MonitoringClaim faster(home.support(), u"faster"_s);
    QTRY_COMPARE(lost.size(), 1);
    QVERIFY(faster.isHeld() && !first.isHeld() && first.lossSentence().contains(u"faster, process "));

    // One that is held is seen, however it was removed while it was made.
    const samples::Home racing;
    const QByteArray removed = QFile::encodeName(racing.support()) + "/monitor.lock";
    for (int i = 0; i < 50; ++i) {
        std::atomic<bool> enough = false;
        std::thread remover([&] {
            while (!enough)
                ::unlink(removed.constData());
        });
        const MonitoringClaim claim(racing.support(), u"a"_s);
        enough = true;
        remover.join();
        QTRY_COMPARE(MonitoringClaim::currentHolder(racing.support(), problem).has_value(), claim.isHeld());
    }
}

KESTRIN_TEST(RuntimeTest)
#include "tst_runtime.moc"
