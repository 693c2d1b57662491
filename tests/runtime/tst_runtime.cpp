// The runtime over an in-memory workspace and real files: what it does, records, publishes and stores.

#include "engine/JSONMacActivityLogStore.h"
#include "engine/JSONPrivacyModeSettingsStore.h"
#include "engine/workspace/InMemoryWorkspace.h"
#include "runtime/JSONUserDefaults.h"
#include "runtime/MacProtectionRuntime.h"
#include "runtime/MonitoringClaim.h"
#include "runtime/PrivacyModeFlag.h"
#include "runtime/StatusSummaries.h"
#include "tests/support/Samples.h"

#include <QFile>
#include <QLocale>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace kestrin;

namespace {

using Kind = MacProtectionEventKind;

const QSet<QString> &everything() {
    static const QSet<QString> ids = [] {
        QSet<QString> all;
        for (const RiskAppDefinition &definition : RiskAppCatalog::defaultDefinitions())
            all.insert(definition.id);
        return all;
    }();
    return ids;
}

/// A user's home: files, preferences, running applications. Schedules are off unless a test turns them on.
struct Home {
    QTemporaryDir folder;
    InMemoryWorkspace workspace;
    JSONUserDefaults defaults{folder.filePath(u"config/user-defaults.json"_s)};
    JSONPrivacyModeSettingsStore settings{QUrl::fromLocalFile(support() + u"/privacy-mode-settings.json"_s),
                                          {true, everything()}};
    JSONMacActivityLogStore log{QUrl::fromLocalFile(support() + u"/activity-log.json"_s)};

    Home() {
        defaults.setStringArray(u"kestrin.mac.enabledModeIDs"_s, {});
        workspace.add(samples::running(u"Zoom"_s, 10, u"us.zoom.xos"_s));
        workspace.add(samples::running(u"Editor"_s, 11));
    }

    QString support() const { return folder.filePath(u"data/Kestrin"_s); }
    MacProtectionSurroundings surroundings() { return {support(), &workspace, systemTime, nullptr, nullptr}; }
    /// Everything in the log, oldest first.
    QStringList story() {
        QStringList texts = samples::messages(log.recent(1000));
        std::reverse(texts.begin(), texts.end());
        return texts;
    }
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
    void constructionTouchesNothing();
    void startSavesTheFlagAndTheSelection();
    void startAgain();
    void updatePrivacyMode();
    void selection();
    void emptySelection();
    void recommended();
    void enforceActions();
    void storedChoices_data();
    void storedChoices();
    void checkAndPreviewDiffer();
    void relaunchesArePublishedLater();
    void teardownStopsEverything();
    void recentEventsAreEight();
    void summaries();
    void diagnostics();
    void flag();
    void otherProcesses();
    void selectionsOfTwoProcesses();
    void monitoringClaim();
};

void RuntimeTest::constructionTouchesNothing() {
    Home home;
    MacProtectionRuntime runtime(home.defaults, home.surroundings());
    QCOMPARE(runtime.protectedDefinitionIDs(), everything());
    QCOMPARE(runtime.runningAppCount(), 2);
    QCOMPARE(matchIDs(runtime), u"zoom-10"_s);
    QVERIFY(!runtime.isMonitoring() && !runtime.enforceActions() && !runtime.lastChecked());
    QVERIFY(runtime.recentEvents().isEmpty());
    QCOMPARE(home.workspace.subscriberCount(), 0);
    QVERIFY(!QFile::exists(home.support()));
}

void RuntimeTest::startSavesTheFlagAndTheSelection() {
    Home home;
    MacProtectionRuntime runtime(home.defaults, home.surroundings());
    QCOMPARE(runtime.monitorLabel(), u"Off"_s);
    runtime.start(false, [](bool) {});
    QCOMPARE(home.settings.load(), (PrivacyModeSettings{false, everything()}));
    QVERIFY(runtime.isMonitoring());
    QCOMPARE(runtime.monitorLabel(), u"Preview"_s);
    QCOMPARE(home.workspace.subscriberCount(), 1);
    QVERIFY(home.story().isEmpty());
    QCOMPARE(matchIDs(runtime), u"zoom-10"_s);
}

void RuntimeTest::startAgain() {
    Home home;
    MacProtectionRuntime runtime(home.defaults, home.surroundings());
    runtime.start(true, [](bool) {});
    runtime.start(false, [](bool) {});
    QCOMPARE(home.workspace.subscriberCount(), 1);
    QVERIFY(!home.settings.load().isEnabled);
}

void RuntimeTest::updatePrivacyMode() {
    Home home;
    MacProtectionRuntime runtime(home.defaults, home.surroundings());
    runtime.start(true, [](bool) {});
    runtime.updatePrivacyMode(false, true);
    runtime.updatePrivacyMode(false, true);
    runtime.updatePrivacyMode(true, false);
    runtime.updatePrivacyMode(false, false);
    runtime.updatePrivacyMode(true, true);
    const QStringList story{u"Privacy Mode is off for this Mac."_s, u"Privacy Mode is on for this Mac."_s};
    QCOMPARE(home.story(), story);
    QCOMPARE(runtime.recentEvents().first().kind, Kind::privacyModeOn);
    QCOMPARE(runtime.recentEvents().first().appName, std::nullopt);
    QVERIFY(home.workspace.terminationRequests().isEmpty());
    QCOMPARE(home.workspace.subscriberCount(), 1);
}

void RuntimeTest::selection() {
    Home home;
    MacProtectionRuntime runtime(home.defaults, home.surroundings());
    runtime.start(false, [](bool) {});
    runtime.setProtectedDefinition(u"zoom"_s, true);
    QVERIFY(home.story().isEmpty());
    runtime.setProtectedDefinition(u"zoom"_s, false);
    QCOMPARE(matchIDs(runtime), QString());
    runtime.setProtectedDefinition(u"skype"_s, true);
    runtime.setProtectedDefinition(u"skype"_s, false);
    runtime.setProtectedDefinition(u"zoom"_s, true);
    QCOMPARE(home.story(), (QStringList{u"Zoom removed from Mac Privacy Mode."_s,
                                        u"Protected app added to Mac Privacy Mode."_s,
                                        u"Protected app removed from Mac Privacy Mode."_s,
                                        u"Zoom added to Mac Privacy Mode."_s}));
    QCOMPARE(runtime.recentEvents().first().appName, u"Zoom"_s);
    QCOMPARE(runtime.recentEvents().first().kind, Kind::riskAppMatched);
    QCOMPARE(home.settings.load(), (PrivacyModeSettings{false, everything()}));
    QCOMPARE(matchIDs(runtime), u"zoom-10"_s);
}

void RuntimeTest::emptySelection() {
    Home home;
    {
        MacProtectionRuntime runtime(home.defaults, home.surroundings());
        runtime.start(true, [](bool) {});
        for (const QString &id : everything())
            runtime.setProtectedDefinition(id, false);
        QVERIFY(runtime.protectedDefinitionIDs().isEmpty());
        // The file notices that come back for our own writes must not fill it up again.
        QTest::qWait(100);
        QVERIFY(runtime.protectedDefinitionIDs().isEmpty());
        QCOMPARE(matchIDs(runtime), u"zoom-10"_s);
    }
    QVERIFY(home.settings.load().protectedDefinitionIDs.isEmpty());
    QCOMPARE(MacProtectionRuntime(home.defaults, home.surroundings()).protectedDefinitionIDs(), everything());
}

void RuntimeTest::recommended() {
    Home home;
    home.settings.save({false, {u"zoom"_s}});
    MacProtectionRuntime runtime(home.defaults, home.surroundings());
    QCOMPARE(runtime.protectedDefinitionIDs(), QSet<QString>{u"zoom"_s});
    runtime.applyRecommendedRiskApps();
    runtime.applyRecommendedRiskApps();
    QCOMPARE(home.settings.load(), (PrivacyModeSettings{false, everything()}));
    QCOMPARE(home.story(), QStringList(2, u"Recommended Mac protected app list applied."_s));
}

void RuntimeTest::enforceActions() {
    Home home;
    MacProtectionRuntime runtime(home.defaults, home.surroundings());
    runtime.start(true, [](bool) {});
    runtime.setEnforceActions(true);
    QCOMPARE(home.defaults.boolean(u"kestrin.mac.enforceActions"_s), true);
    QCOMPARE(runtime.monitorLabel(), u"Enforcing"_s);
    const QStringList story{u"Mac app actions are enforcing for selected protected apps."_s,
                            u"Privacy Mode is on. Evaluating Mac protected apps."_s,
                            u"Zoom matches Zoom risk categories: Video call, Microphone, Camera."_s,
                            u"Asked Zoom to quit."_s};
    QCOMPARE(home.story(), story);
    QCOMPARE(home.workspace.terminationRequests(), QList<qint32>{10});
    // The new monitor enforces, and only it watches.
    QCOMPARE(home.workspace.subscriberCount(), 1);
    home.workspace.launch(samples::running(u"FaceTime"_s, 12));
    QCOMPARE(home.workspace.terminationRequests().last(), 12);
    // Assigning the same value does all of it again.
    const qsizetype before = home.story().size();
    runtime.setEnforceActions(true);
    QCOMPARE(home.story().at(before), story.first());
    QCOMPARE(home.workspace.terminationRequests(), (QList<qint32>{10, 12, 10, 12}));
    // Previews are recorded, and nobody is asked any more.
    const qsizetype enforced = home.story().size();
    runtime.setEnforceActions(false);
    QCOMPARE(home.story().at(enforced), u"Mac app actions switched to preview mode."_s);
    QCOMPARE(home.story().last(), u"Preview: Kestrin would ask FaceTime to quit while Privacy Mode is on."_s);
    QCOMPARE(home.workspace.terminationRequests().size(), 4);
    QCOMPARE(home.defaults.boolean(u"kestrin.mac.enforceActions"_s), false);
}

void RuntimeTest::storedChoices_data() {
    QTest::addColumn<QByteArray>("preferences");
    QTest::addColumn<bool>("enforces");
    QTest::addColumn<bool>("privacyModeOn");
    QTest::addColumn<qint64>("enabledModes");
    QTest::newRow("absent") << QByteArray("{}") << false << true << qint64(3);
    QTest::newRow("stored") << QByteArray(
                                   R"({"kestrin.mac.enforceActions":true,"kestrin.mac.privacyModeOn":false,
                                            "kestrin.mac.enabledModeIDs":["travel","unknown"]})")
                            << true << false << qint64(1);
    QTest::newRow("empty list") << QByteArray(R"({"kestrin.mac.enabledModeIDs":[]})") << false << true
                                << qint64(0);
    QTest::newRow("other types") << QByteArray(
                                        R"({"kestrin.mac.enforceActions":"true","kestrin.mac.privacyModeOn":0,
                                                 "kestrin.mac.enabledModeIDs":["sleep",1]})")
                                 << false << true << qint64(3);
}

void RuntimeTest::storedChoices() {
    QFETCH(QByteArray, preferences);
    Home home;
    QFile file(home.folder.filePath(u"config/user-defaults.json"_s));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(preferences) == preferences.size());
    file.close();
    MacProtectionRuntime runtime(home.defaults, home.surroundings());
    QTEST(runtime.enforceActions(), "enforces");
    QTEST(PrivacyModeFlag(home.defaults, runtime).isOn(), "privacyModeOn");
    QTEST(runtime.enabledScheduleCount(), "enabledModes");
}

void RuntimeTest::checkAndPreviewDiffer() {
    Home home;
    home.settings.save({false, everything()});
    MacProtectionRuntime runtime(home.defaults, home.surroundings());
    QCOMPARE(matchIDs(runtime), u"zoom-10"_s);
    QCOMPARE(runtime.lastCheckedLabel(), u"Not checked yet"_s);
    runtime.runLiveCheck();
    QCOMPARE(matchIDs(runtime), QString());
    QCOMPARE(runtime.runningAppCount(), 2);
    const QDateTime checked = runtime.lastChecked().value();
    QCOMPARE(runtime.lastCheckedLabel(), QLocale()
                                             .toString(checked.toLocalTime().time(), QLocale::ShortFormat)
                                             .remove(checked.toString(u":ss"_s)));
    QCOMPARE(home.story(), QStringList{u"Privacy Mode is off. No Mac app actions were taken."_s});
    runtime.refreshInventoryPreview();
    QCOMPARE(matchIDs(runtime), u"zoom-10"_s);
    QCOMPARE(runtime.lastChecked(), checked);
}

void RuntimeTest::relaunchesArePublishedLater() {
    Home home;
    MacProtectionRuntime runtime(home.defaults, home.surroundings());
    runtime.start(true, [](bool) {});
    home.workspace.launch(samples::running(u"FaceTime"_s, 12));
    QCOMPARE(home.story().size(), 2);
    QVERIFY(runtime.recentEvents().isEmpty());
    QTRY_COMPARE(runtime.recentEvents().size(), 2);
    QCOMPARE(matchIDs(runtime), u"zoom-10,facetime-12"_s);
}

void RuntimeTest::teardownStopsEverything() {
    Home home;
    {
        MacProtectionRuntime runtime(home.defaults, home.surroundings());
        runtime.start(true, [](bool) {});
        // The refresh that this posts must not reach a runtime that has gone.
        home.workspace.launch(samples::running(u"FaceTime"_s, 12));
    }
    QCOMPARE(home.workspace.subscriberCount(), 0);
    QTest::qWait(10);
}

void RuntimeTest::recentEventsAreEight() {
    Home home;
    for (int i = 0; i < 10; ++i)
        home.log.append(samples::event(QString::number(i)));
    MacProtectionRuntime runtime(home.defaults, home.surroundings());
    QCOMPARE(samples::messages(runtime.recentEvents()).join(u','), u"9,8,7,6,5,4,3,2"_s);
    QCOMPARE(runtime.actionEventCount(), 8);
}

void RuntimeTest::summaries() {
    const auto mac = [](bool enabled, bool enforcing) {
        const ProtectionDevice device = devicesFor(enabled, enforcing).first();
        return device.status + u'/' + rawValue(device.tone) + u'/' + device.detail;
    };
    QCOMPARE(mac(true, true),
             u"On/protected/Selected protected apps are monitored and quit requests are sent"_s);
    QCOMPARE(mac(true, false), u"On/protected/Selected protected apps are monitored in preview mode"_s);
    QCOMPARE(mac(false, true), u"Off/attention/Privacy Mode paused on this Mac"_s);
    QCOMPARE(devicesFor(true, true).size(), 3);

    QList<MacProtectionEvent> events;
    for (const Kind kind : allCases<Kind>())
        events.append(MacProtectionEvent::create(systemTime(), kind, u"x"_s));
    QCOMPARE(actionEventCountOf(events), 3);
}

void RuntimeTest::diagnostics() {
    Home home;
    MacProtectionRuntime runtime(home.defaults, home.surroundings());
    const QString text = u"Kestrin Mac diagnostics\nRelaunch monitor: %1\nMac app actions: Preview\n"
                         "Selected protected apps: 12\nRunning apps scanned: 2\nProtected app matches: 1"_s;
    QCOMPARE(runtime.diagnosticsText(), text.arg(u"Off"_s));
    runtime.start(true, [](bool) {});
    QCOMPARE(runtime.diagnosticsText(), text.arg(u"Preview"_s));
    QCOMPARE(diagnosticsTextFor({false, true, 1234567, 1234567, 0}),
             u"Kestrin Mac diagnostics\nRelaunch monitor: Off\nMac app actions: Enforcing\n"
             "Selected protected apps: 1234567\nRunning apps scanned: 1234567\nProtected app matches: 0"_s);
}

void RuntimeTest::flag() {
    Home home;
    MacProtectionRuntime runtime(home.defaults, home.surroundings());
    PrivacyModeFlag flag(home.defaults, runtime);
    QSignalSpy spy(&flag, &PrivacyModeFlag::changed);
    flag.startRuntime();
    QVERIFY(flag.isOn());
    flag.setOn(false);
    QCOMPARE(spy.size(), 1);
    QCOMPARE(home.settings.load().isEnabled, false);
    flag.setOn(false);
    QCOMPARE(spy.size(), 1);
    QTest::qWait(50);
    QCOMPARE(home.story(), QStringList{u"Privacy Mode is off for this Mac."_s});

    // Settings that disagree with the flag are mended by setting it, changed or not.
    home.settings.save({true, everything()});
    flag.setOn(false);
    QCOMPARE(home.settings.load().isEnabled, false);
}

void RuntimeTest::otherProcesses() {
    Home home;
    MacProtectionRuntime runtime(home.defaults, home.surroundings());
    PrivacyModeFlag flag(home.defaults, runtime);
    flag.startRuntime();

    // Another process over the same files, as far as files can tell.
    JSONUserDefaults theirDefaults(home.folder.filePath(u"config/user-defaults.json"_s));
    InMemoryWorkspace noWorkspace;
    MacProtectionRuntime theirs(theirDefaults, {home.support(), &noWorkspace, systemTime, nullptr, nullptr});
    PrivacyModeFlag theirFlag(theirDefaults, theirs);

    theirs.setProtectedDefinition(u"zoom"_s, false);
    QTRY_VERIFY(!runtime.protectedDefinitionIDs().contains(u"zoom"_s));
    QTRY_COMPARE(runtime.recentEvents().size(), 1);
    QCOMPARE(matchIDs(runtime), QString());

    theirFlag.setOn(false);
    QTRY_VERIFY(!flag.isOn());
    QTRY_COMPARE(runtime.recentEvents().size(), 2);
    QCOMPARE(home.story().last(), u"Privacy Mode is off for this Mac."_s);

    theirs.setMode(u"travel"_s, true);
    QTRY_COMPARE(runtime.enabledScheduleCount(), 1);

    theirs.setProtectedDefinition(u"zoom"_s, true);
    QTRY_VERIFY(runtime.protectedDefinitionIDs().contains(u"zoom"_s));
    theirs.setEnforceActions(true);
    QTRY_VERIFY(runtime.enforceActions());
    QTest::qWait(50);
    const QStringList story{u"Zoom removed from Mac Privacy Mode."_s,
                            u"Privacy Mode is off for this Mac."_s,
                            u"Travel Mode enabled."_s,
                            u"Zoom added to Mac Privacy Mode."_s,
                            u"Mac app actions are enforcing for selected protected apps."_s,
                            u"Privacy Mode is off. No Mac app actions were taken."_s};
    QCOMPARE(home.story(), story);
    // The monitor here has followed the choice.
    theirFlag.setOn(true);
    home.workspace.launch(samples::running(u"Zoom"_s, 20));
    QCOMPARE(home.workspace.terminationRequests(), QList<qint32>{20});
}

void RuntimeTest::selectionsOfTwoProcesses() {
    Home home;
    MacProtectionRuntime ours(home.defaults, home.surroundings());
    MacProtectionRuntime theirs(home.defaults, home.surroundings());
    ours.start(true, [](bool) {});
    // No event loop runs in between, so neither hears of the other's changes by itself.
    theirs.setProtectedDefinition(u"zoom"_s, false);
    ours.setProtectedDefinition(u"teams"_s, false);
    theirs.updatePrivacyMode(false, true);
    const QSet<QString> both = everything() - QSet<QString>{u"zoom"_s, u"teams"_s};
    QCOMPARE(home.settings.load(), (PrivacyModeSettings{false, both}));
    QCOMPARE(ours.protectedDefinitionIDs(), both);
    QCOMPARE(theirs.protectedDefinitionIDs(), both);
}

void RuntimeTest::monitoringClaim() {
    Home home;
    QCOMPARE(MonitoringClaim::currentHolder(home.support()), std::nullopt);
    {
        const auto first = MonitoringClaim::make(home.support(), u"kestrinctl watch"_s);
        QVERIFY(first.lock && !first.holder);
        const auto second = MonitoringClaim::make(home.support(), u"kestrin"_s);
        QVERIFY(!second.lock);
        QCOMPARE(second.holder, u"kestrinctl watch, process %1"_s.arg(QCoreApplication::applicationPid()));
    }
    QCOMPARE(MonitoringClaim::currentHolder(home.support()), std::nullopt);
}

QTEST_GUILESS_MAIN(RuntimeTest)
#include "tst_runtime.moc"
