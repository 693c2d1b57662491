// What the runtime asks of its surroundings, and in which order; what it records and publishes; and several
// processes over the same files.

#include "runtime/FirstStart.h"
#include "runtime/MonitoringClaim.h"
#include "runtime/PrivacyModeFlag.h"
#include "tests/support/Home.h"
#include "tests/support/MemoryHome.h"
#include "tests/support/Test.h"
#include "tests/support/Witness.h"

#include <QElapsedTimer>

#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
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
    void twoProcesses();
    void pausesOfOthers();
    void ownApplications_data();
    void ownApplications();
    void ownApplicationsOfOthers();
    void unreadable();
    void nobodysChoice();
    void severalAsOne();
    void claims();
    void claimsAreSeen();
};

void RuntimeTest::operations() {
    MemoryHome home;
    MacProtectionRuntime runtime(home.defaults, home.surroundings());
    QCOMPARE(home.asked(), (QStringList{u"load"_s, u"read 8"_s, u"list"_s, u"load"_s}));
    PrivacyModeFlag flag(home.defaults, runtime);
    QSignalSpy switched(&flag, &PrivacyModeFlag::changed);

    const auto asks = [&](const auto &operation, const QStringList &expected) {
        operation();
        const QStringList asked = home.asked();
        if (asked != expected)
            qWarning("%s", qUtf8Printable(u"It was "_s + asked.join(u" | "_s)));
        return asked == expected;
    };
    /// What an operation that changes a setting asks for after it has recorded.
    const QStringList shown{u"read 8"_s, u"list"_s, u"load"_s};
    const QStringList zoomIsAsked{
        u"list"_s,
        u"load"_s,
        u"list"_s,
        u"ask 10"_s,
        u"log Privacy Mode is on. Evaluating Mac protected apps."_s,
        u"log Zoom matches Zoom risk categories: Video call, Microphone, Camera."_s,
        u"log Asked Zoom to quit."_s,
        u"read 8"_s,
    };

    QVERIFY(asks([&] { flag.startRuntime(); }, {u"save on 12"_s, u"list"_s, u"load"_s, u"watched by 1"_s}));
    QVERIFY(
        asks([&] { runtime.start(true, {}); }, {u"save on 12"_s, u"list"_s, u"load"_s, u"watched by 1"_s}));
    QVERIFY(asks([&] { runtime.setProtectedDefinition(u"zoom"_s, true); }, {}));
    QVERIFY(asks([&] { runtime.setProtectedDefinition(u"zoom"_s, false); },
                 QStringList{u"save on 11"_s, u"log Zoom removed from Mac Privacy Mode."_s} + shown));
    QCOMPARE(matchIDs(runtime), QString());
    QVERIFY(asks([&] { runtime.setProtectedDefinition(u"skype"_s, true); },
                 QStringList{u"save on 12"_s, u"log Protected app added to Mac Privacy Mode."_s} + shown));
    QVERIFY(asks([&] { runtime.applyRecommendedRiskApps(); },
                 QStringList{u"save on 12"_s, u"log Recommended Mac protected app list applied."_s} + shown));
    QCOMPARE(matchIDs(runtime), u"zoom-10"_s);
    QCOMPARE(runtime.recentEvents().at(1).appName, u"Protected app"_s);

    const QStringList enforcing =
        QStringList{u"watched by 1"_s, u"log Mac app actions are enforcing for selected protected apps."_s,
                    u"read 8"_s} +
        zoomIsAsked;
    QVERIFY(
        asks([&] { runtime.setEnforceActions(true); }, QStringList{u"store enforceActions"_s} + enforcing));
    // Assigning the same value does all of it again.
    QVERIFY(asks([&] { runtime.setEnforceActions(true); }, enforcing));
    QVERIFY(asks([&] { runtime.runLiveCheck(); }, zoomIsAsked));

    // The flag is stored after the settings, for those who follow it. Only a change is recorded.
    QVERIFY(asks([&] { flag.setOn(false); },
                 QStringList{u"save off 12"_s, u"log Privacy Mode is off for this Mac."_s} + shown +
                     QStringList{u"store privacyModeOn"_s}));
    QVERIFY(asks([&] { flag.setOn(false); }, {u"save off 12"_s, u"list"_s, u"load"_s}));
    QCOMPARE(switched.size(), 1);
    QVERIFY(asks([&] { runtime.updatePrivacyMode(true, false); }, {u"save on 12"_s, u"list"_s, u"load"_s}));

    // Away lasts until six. Without a setter the runtime saves the change itself.
    flag.setOn(false);
    home.asked();
    for (const QString &asItIsOrUnknown : {u"sleep"_s, u"unknown"_s})
        QVERIFY(asks([&] { runtime.setMode(asItIsOrUnknown, false); }, {}));
    QVERIFY(asks([&] { runtime.setMode(u"away"_s, true); },
                 QStringList{u"store enabledModeIDs away"_s, u"log Away Mode enabled."_s, u"read 8"_s,
                             u"load"_s, u"log Schedule turned Privacy Mode on."_s, u"read 8"_s,
                             u"save on 12"_s, u"log Privacy Mode is on for this Mac."_s} +
                     shown));
    QVERIFY(asks([&] { runtime.evaluateSchedules(home.now); }, {u"load"_s}));
    home.defaults.setBoolean(PrivacyModeFlag::key, true);
    home.asked();
    runtime.setPrivacyModeSetter([&flag](bool on) { return flag.setOn(on); });
    home.now.setTime(QTime(18, 0));
    QVERIFY(asks([&] { runtime.evaluateSchedules(home.now); },
                 QStringList{u"load"_s, u"log Schedule turned Privacy Mode off."_s, u"read 8"_s,
                             u"save off 12"_s, u"log Privacy Mode is off for this Mac."_s} +
                     shown + QStringList{u"store privacyModeOn"_s}));
    QVERIFY(asks([&] { runtime.setMode(u"away"_s, false); },
                 {u"store enabledModeIDs"_s, u"log Away Mode disabled."_s, u"read 8"_s}));
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
    for (const auto &[file, isNew] : std::initializer_list<std::pair<QString, bool>>{
             {u"data/Kestrin/monitor.lock"_s, true},
             {u"data/Kestrin/privacy-mode-settings.json"_s, false},
             {u"data/Kestrin/activity-log.json"_s, false},
             {u"data/Kestrin/activity-log.json.damaged-2026-11-25T19-04-11"_s, false},
             {u"data/Kestrin/own-applications.json"_s, false},
             {u"config/user-defaults.json"_s, false},
         }) {
        samples::Home home;
        samples::write(home.folder.filePath(file), "no JSON");
        QCOMPARE(FirstStart(home.defaults, home.support()).isDue(), isNew);
    }
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
    MacProtectionRuntime runtime(home.defaults, home.surroundings());
    PrivacyModeFlag flag(home.defaults, runtime);
    flag.startRuntime();

    // Another process over the same files, as far as files can tell.
    JSONUserDefaults theirDefaults(home.preferences());
    InMemoryWorkspace noWorkspace;
    MacProtectionRuntime theirs(theirDefaults, {.workspace = noWorkspace,
                                                .settingsStore = settingsStoreIn(home.support()),
                                                .logStore = activityLogIn(home.support()),
                                                .ownApplications = ownApplicationsIn(home.support())});
    PrivacyModeFlag theirFlag(theirDefaults, theirs);

    theirs.setProtectedDefinition(u"zoom"_s, false);
    QTRY_VERIFY(!runtime.protectedDefinitionIDs().contains(u"zoom"_s));
    QTRY_COMPARE(runtime.recentEvents().size(), 1);
    QCOMPARE(matchIDs(runtime), QString());
    theirFlag.setOn(false);
    QTRY_VERIFY(!flag.isOn());
    theirs.setMode(u"travel"_s, true);
    QTRY_COMPARE(runtime.enabledScheduleCount(), 1);
    theirs.setEnforceActions(true);
    QTRY_VERIFY(runtime.enforceActions());
    QVERIFY(samples::everythingIsTold());
    // Nothing is recorded a second time here.
    const QStringList story{u"Zoom removed from Mac Privacy Mode."_s, u"Privacy Mode is off for this Mac."_s,
                            u"Travel Mode enabled."_s,
                            u"Mac app actions are enforcing for selected protected apps."_s,
                            u"Privacy Mode is off. No Mac app actions were taken."_s};
    QCOMPARE(home.story(), story);
    // The monitor here has followed the choice.
    theirFlag.setOn(true);
    home.workspace.launch(samples::running(u"FaceTime"_s, 20));
    QCOMPARE(home.workspace.terminationRequests(), QList<qint32>{20});
}

void RuntimeTest::twoProcesses() {
    Home home;
    JSONUserDefaults theirDefaults(home.preferences());
    MacProtectionRuntime ours(home.defaults, home.surroundings());
    MacProtectionRuntime theirs(theirDefaults, home.surroundings());
    ours.start(true, [](bool) { return Outcome(); });
    // No event loop runs in between, so neither hears of the other's changes by itself.
    theirs.setProtectedDefinition(u"zoom"_s, false);
    ours.setProtectedDefinition(u"teams"_s, false);
    theirs.updatePrivacyMode(false, true);
    const QSet<QString> both = defaultDefinitionIDs() - QSet<QString>{u"zoom"_s, u"teams"_s};
    QCOMPARE(home.settings.load(), (PrivacyModeSettings{false, both}));
    QCOMPARE(ours.protectedDefinitionIDs(), both);
    QCOMPARE(theirs.protectedDefinitionIDs(), both);
}

void RuntimeTest::pausesOfOthers() {
    Home home;
    home.defaults.setStringArray(samples::modesKey, {u"away"_s});
    JSONUserDefaults theirDefaults(home.preferences());
    MacProtectionRuntime ours(home.defaults, home.surroundings());
    PrivacyModeFlag ourFlag(home.defaults, ours);
    ourFlag.startRuntime();
    MacProtectionRuntime theirs(theirDefaults, home.surroundings());
    PrivacyModeFlag theirFlag(theirDefaults, theirs);
    QSignalSpy told(&ourFlag, &PrivacyModeFlag::changed);
    QElapsedTimer timer;

    // One pauses, the other one follows, and the schedule that wants it on waits.
    for (const int hours : {1, 2}) {
        const QDateTime end = home.now.addSecs(hours * 3600);
        timer.start();
        QVERIFY(theirFlag.pause(end).isKept());
        QTRY_COMPARE(ourFlag.pausedUntil(), end);
        QTRY_COMPARE(told.size(), 1);
        QVERIFY2(timer.elapsed() < 1000, "It took longer than a second to be heard of.");
        QVERIFY(ours.evaluateSchedules(home.now).isKept() && !ours.isSavedOn());
    }
    home.workspace.launch(samples::running(u"FaceTime"_s, 20));
    // The other one resumes.
    QVERIFY(ourFlag.setOn(true).isKept());
    QVERIFY(theirFlag.isOn() && !theirFlag.pausedUntil());
    // Whoever turns it off for good while it is paused has not paused it.
    QVERIFY(theirFlag.pause(home.now.addSecs(3600)).isKept());
    QTRY_VERIFY(ourFlag.pausedUntil());
    QVERIFY(theirFlag.setOn(false).isKept());
    QVERIFY(!ourFlag.pausedUntil() && !ourFlag.isOn());
    QCOMPARE(ours.evaluateSchedules(home.now).switchedBySchedules, true);
    // And one that ends by itself, in a program that runs.
    const Pause pause = Pause::between(home.now, home.now.addSecs(1));
    QVERIFY(ourFlag.pause(pause.until).isKept() && !ourFlag.isOn());
    home.now = pause.until;
    told.clear();
    QTRY_COMPARE(told.size(), 1);
    QVERIFY(ourFlag.isOn() && ours.isSavedOn() && theirFlag.isOn() && !Pause::stored(theirDefaults));
    const QString on = u"Privacy Mode is on for this Mac."_s;
    const QString off = u"Privacy Mode is off for this Mac."_s;
    QCOMPARE(home.story(), (QStringList{off, on, off, u"Schedule turned Privacy Mode on."_s, on, off, on}));
    // What is no pause is none.
    for (const QStringList &texts :
         {QStringList{u"2026-03-14T12:00:00Z"_s}, QStringList{u"soon"_s, u"later"_s},
          QStringList{u"2026-03-14T12:00:00Z"_s, u"2026-03-14T12:00:00Z"_s}}) {
        theirDefaults.setStringArray(Pause::key, texts);
        QVERIFY(!Pause::stored(theirDefaults));
    }
}

void RuntimeTest::ownApplications_data() {
    // What is selected when the runtime starts, what another process stores then, and what is selected after
    // each step: two are added, the twelve are chosen, one is removed.
    QTest::addColumn<std::optional<QStringList>>("stored");
    QTest::addColumn<std::optional<QStringList>>("storedMeanwhile");
    QTest::addColumn<QList<QStringList>>("selected");
    const QStringList all = samples::sorted(defaultDefinitionIDs());
    const auto with = [](const QStringList &ids, const QStringList &more) {
        return samples::sorted(ids + more);
    };
    const QStringList both{u"notes"_s, u"paint"_s};
    const std::optional<QStringList> nothing;
    QTest::newRow("nothing stored") << nothing << nothing
                                    << QList<QStringList>{with(all, both), with(all, both),
                                                          with(all, {u"paint"_s})};
    QTest::newRow("some selected") << std::optional(QStringList{u"zoom"_s}) << nothing
                                   << QList<QStringList>{with(both, {u"zoom"_s}), with(all, both),
                                                         with(all, {u"paint"_s})};
    // Nothing selected protects everything. A program that starts shows and stores that.
    QTest::newRow("empty") << std::optional(QStringList()) << nothing
                           << QList<QStringList>{with(all, both), with(all, both), with(all, {u"paint"_s})};
    // One that runs leaves it so: selecting what is added alone would leave the others unprotected.
    QTest::newRow("emptied meanwhile")
        << std::optional(QStringList{u"zoom"_s}) << std::optional(QStringList())
        << QList<QStringList>{QStringList(), with(all, both), with(all, {u"paint"_s})};
}

void RuntimeTest::ownApplications() {
    QFETCH(std::optional<QStringList>, stored);
    QFETCH(std::optional<QStringList>, storedMeanwhile);
    QFETCH(QList<QStringList>, selected);
    Home home;
    const auto store = [&](const std::optional<QStringList> &ids) {
        if (ids)
            home.settings.save({true, QSet<QString>(ids->cbegin(), ids->cend())});
    };
    store(stored);
    auto runtime = std::make_unique<MacProtectionRuntime>(home.defaults, home.surroundings());
    QSignalSpy changed(runtime.get(), &MacProtectionRuntime::catalogChanged);
    runtime->start(true, [](bool) { return Outcome(); });
    store(storedMeanwhile);
    const auto areSelected = [&](const QStringList &expected) {
        const PrivacyModeSettings settings = home.settings.load();
        const QStringList ids = samples::sorted(settings.protectedDefinitionIDs);
        return ids == expected &&
               (ids.isEmpty() || samples::sorted(runtime->protectedDefinitionIDs()) == ids);
    };
    home.workspace.add(samples::running(u"Paint"_s, 30));
    const Outcome added = runtime->addOwnApplication({.name = u"Notes"_s});
    QVERIFY(added.isKept() && added.changed == QStringList{u"notes"_s});
    QVERIFY(runtime->addOwnApplication({.name = u"Paint"_s}).isKept());
    QCOMPARE(changed.size(), 2);
    QCOMPARE(home.story(),
             (QStringList{u"Notes added to Mac Privacy Mode."_s, u"Paint added to Mac Privacy Mode."_s}));
    QVERIFY(areSelected(selected.at(0)));
    QVERIFY(matchIDs(*runtime).contains(u"paint-30"_s));
    runtime->applyRecommendedRiskApps();
    QVERIFY(areSelected(selected.at(1)));
    QVERIFY(runtime->removeOwnApplications({u"notes"_s}).isKept());
    QCOMPARE(home.story().last(), u"Notes removed from Mac Privacy Mode."_s);
    QVERIFY(areSelected(selected.at(2)));
    QCOMPARE(runtime->catalog().definitions.size(), 13);
    // Whoever starts over lost settings protects everything, the own ones too.
    runtime.reset();
    QVERIFY(QFile::remove(home.settings.file()));
    MacProtectionRuntime anew(home.defaults, home.surroundings());
    anew.start(true, [](bool) { return Outcome(); });
    QCOMPARE(home.settings.load().protectedDefinitionIDs, defaultDefinitionIDs() | QSet<QString>{u"paint"_s});
}

void RuntimeTest::ownApplicationsOfOthers() {
    Home home;
    home.defaults.setBoolean(MacProtectionRuntime::enforceActionsKey, true);
    JSONUserDefaults theirDefaults(home.preferences());
    MacProtectionRuntime ours(home.defaults, home.surroundings());
    ours.start(true, [](bool) { return Outcome(); });
    QSignalSpy changed(&ours, &MacProtectionRuntime::catalogChanged);
    QSignalSpy failed(&ours, &MacProtectionRuntime::storageFailed);
    QElapsedTimer timer;
    timer.start();
    MacProtectionRuntime theirs(theirDefaults, home.surroundings());
    QVERIFY(theirs.addOwnApplication({.name = u"Notes"_s}).isKept());
    QTRY_VERIFY(ours.protectedDefinitionIDs().contains(u"notes"_s) && changed.size() == 1);
    QVERIFY2(timer.elapsed() < 1000, "It took longer than a second to be heard of.");
    // The monitor is the same and knows it.
    home.workspace.launch(samples::running(u"notes"_s, 20));
    QCOMPARE(home.workspace.terminationRequests(), QList<qint32>{20});
    // What cannot be read any more is nobody's choice, and told once.
    const QString file = home.support() + u"/own-applications.json"_s;
    const QByteArray before = samples::contents(file);
    samples::write(file, "{");
    QTRY_COMPARE(failed.size(), 1);
    QVERIFY(failed.first().first().toString().startsWith(file));
    home.workspace.launch(samples::running(u"Notes"_s, 21));
    QCOMPARE(home.workspace.terminationRequests().last(), 21);
    QVERIFY(!ours.addOwnApplication({.name = u"Paint"_s}).isKept());
    QVERIFY(!ours.removeOwnApplications({u"notes"_s}).isKept());
    QVERIFY(ours.protectedDefinitionIDs().contains(u"notes"_s));
    QCOMPARE(samples::contents(file), QByteArray("{"));
    // Mended, or moved away.
    samples::write(file, before);
    QVERIFY(ours.addOwnApplication({.name = u"Paint"_s}).isKept());
    QVERIFY(QFile::remove(file));
    QTRY_COMPARE(ours.catalog().definitions.size(), 12);
    home.workspace.launch(samples::running(u"Notes"_s, 22));
    QCOMPARE(home.workspace.terminationRequests().last(), 21);
}

void RuntimeTest::unreadable() {
    // Settings that cannot be read any more are nobody's choice: what was selected stays selected, whoever
    // asks, and is stored as soon as that is possible.
    Home home;
    const QString file = home.settings.file();
    MacProtectionRuntime runtime(home.defaults, home.surroundings());
    PrivacyModeFlag flag(home.defaults, runtime);
    flag.startRuntime();
    for (const QString &id : defaultDefinitionIDs() - QSet<QString>{u"facetime"_s})
        runtime.setProtectedDefinition(id, false);
    QSignalSpy failed(&runtime, &MacProtectionRuntime::storageFailed);
    QSignalSpy setAside(&runtime, &MacProtectionRuntime::fileSetAside);
    samples::write(file, "{");
    QTRY_COMPARE(failed.size(), 1);
    QVERIFY(samples::everythingIsTold());
    QCOMPARE(runtime.protectedDefinitionIDs(), QSet<QString>{u"facetime"_s});
    QCOMPARE(matchIDs(runtime), QString());
    home.workspace.launch(samples::running(u"Zoom"_s, 12));
    QVERIFY(!home.story().contains(u"Zoom relaunched while Privacy Mode is on."_s));
    QVERIFY(flag.setOn(false).isKept());
    QCOMPARE(home.settings.load(), (PrivacyModeSettings{false, {u"facetime"_s}}));
    QVERIFY(setAside.size() == 1 && failed.size() == 1);
    // That was over, so the same again is news.
    samples::write(file, "{");
    QTRY_COMPARE(failed.size(), 2);

    // What is asked for but cannot be kept is told, and neither the flag nor the file says otherwise.
    QVERIFY(QFile::remove(file) && QDir().mkpath(file));
    QCOMPARE(flag.setOn(true).settings.problem, file + u" is a folder and not a file; move it away."_s);
    QVERIFY(!flag.isOn());
}

void RuntimeTest::nobodysChoice() {
    // Settings that cannot be read are set aside by a start; where they cannot be, nobody is asked to quit by
    // what takes their place.
    for (const bool isFolder : {false, true}) {
        Home home;
        const QString file = home.settings.file();
        home.defaults.setBoolean(MacProtectionRuntime::enforceActionsKey, true);
        home.defaults.setStringArray(samples::modesKey, {});
        if (isFolder)
            QVERIFY(QDir().mkpath(file));
        else
            samples::write(file, "{");
        MacProtectionRuntime runtime(home.defaults, home.surroundings());
        QSignalSpy failed(&runtime, &MacProtectionRuntime::storageFailed);
        QSignalSpy setAside(&runtime, &MacProtectionRuntime::fileSetAside);
        PrivacyModeFlag flag(home.defaults, runtime);
        flag.startRuntime();
        QVERIFY(failed.size() == (isFolder ? 1 : 0) && setAside.size() == (isFolder ? 0 : 1));
        home.workspace.launch(samples::running(u"FaceTime"_s, 12));
        runtime.runLiveCheck();
        QCOMPARE(home.workspace.terminationRequests().isEmpty(), isFolder);
        QCOMPARE(home.story().count(u"Zoom was not asked to quit, because the settings cannot be read."_s),
                 isFolder ? 1 : 0);
        QCOMPARE(QFileInfo(file).isDir(), isFolder);
        const QDir folder(QFileInfo(file).absolutePath());
        QCOMPARE(folder.entryList({u"*.damaged-*"_s}).size(), isFolder ? 0 : 1);

        QCOMPARE(flag.setOn(false).isKept(), !isFolder);
        QCOMPARE(runtime.setMode(u"away"_s, true).switchedBySchedules,
                 isFolder ? std::nullopt : std::optional(true));
        runtime.runLiveCheck();
        QCOMPARE(home.workspace.terminationRequests().isEmpty(), isFolder);
    }
}

void RuntimeTest::severalAsOne() {
    MemoryHome home;
    MacProtectionRuntime runtime(home.defaults, home.surroundings());
    runtime.setModes({u"sleep"_s, u"away"_s}, true);
    home.asked();
    // At noon only Away wants it on; nobody wants anything when both are disabled.
    for (const QStringList &order :
         {QStringList{u"sleep"_s, u"away"_s}, QStringList{u"away"_s, u"sleep"_s}}) {
        const Outcome disabled = runtime.setModes(order + QStringList{u"travel"_s, u"unknown"_s}, false);
        QVERIFY(disabled.isKept() && !disabled.switchedBySchedules && home.settings->settings.isEnabled);
        QCOMPARE(home.asked().filter(u"store "_s), QStringList{u"store enabledModeIDs"_s});
        runtime.setModes(order, true);
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
    QCOMPARE(::mkfifo(QFile::encodeName(file).constData(), 0600), 0);
    QVERIFY(!MonitoringClaim(home.support(), u"a"_s).isHeld());
    QString problem;
    QVERIFY(!MonitoringClaim::currentHolder(home.support(), problem) && problem.startsWith(file));
    QVERIFY(QFile::remove(file));

    // A claim survives its folder.
    const MonitoringClaim first(home.support(), u"first"_s);
    QSignalSpy lost(&first, &MonitoringClaim::lost);
    QVERIFY(first.isHeld() && QDir(home.support()).removeRecursively());
    QTRY_VERIFY(MonitoringClaim::currentHolder(home.support(), problem));
    const MonitoringClaim second(home.support(), u"second"_s);
    QVERIFY(second.holder().value_or(QString()).startsWith(u"first, process "));
    QVERIFY(first.isHeld() && lost.isEmpty());
    // Unless somebody else is faster.
    QVERIFY(QFile::remove(file));
    const MonitoringClaim faster(home.support(), u"faster"_s);
    QTRY_COMPARE(lost.size(), 1);
    QVERIFY(faster.isHeld() && !first.isHeld() && first.lossSentence().contains(u"faster, process "));
}

void RuntimeTest::claimsAreSeen() {
    const samples::Home home;
    const QByteArray file = QFile::encodeName(home.support()) + "/monitor.lock";
    // However it is removed while it is made.
    for (int i = 0; i < 50; ++i) {
        std::atomic<bool> enough = false;
        std::thread remover([&] {
            while (!enough)
                ::unlink(file.constData());
        });
        const MonitoringClaim claim(home.support(), u"a"_s);
        enough = true;
        remover.join();
        QString problem;
        QTRY_COMPARE(MonitoringClaim::currentHolder(home.support(), problem).has_value(), claim.isHeld());
    }
}

KESTRIN_TEST(RuntimeTest)
#include "tst_runtime.moc"
