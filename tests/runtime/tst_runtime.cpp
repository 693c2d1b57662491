// The runtime over an in-memory workspace and real files: what it does, records, publishes and stores.

#include "runtime/PrivacyModeFlag.h"
#include "tests/support/Files.h"
#include "tests/support/Home.h"
#include "tests/support/Witness.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace kestrin;
using namespace kestrin::foundation;
using namespace kestrin::engine;
using namespace kestrin::runtime;
using namespace kestrin::desktop;

namespace {

using Kind = MacProtectionEventKind;

QSet<QString> everything() {
    QSet<QString> all;
    for (const RiskAppDefinition &definition : RiskAppCatalog::defaultDefinitions())
        all.insert(definition.id);
    return all;
}

/// Schedules are off unless a test turns them on.
struct Home : samples::Home {
    Home() { defaults.setStringArray(u"kestrin.mac.enabledModeIDs"_s, {}); }
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
    void starting();
    void selection();
    void emptySelection();
    void enforceActions();
    void publishedEvents();
    void flag();
    void otherProcesses();
    void selectionsOfTwoProcesses();
};

void RuntimeTest::starting() {
    Home home;
    MacProtectionRuntime runtime(home.defaults, home.surroundings());
    QCOMPARE(runtime.protectedDefinitionIDs(), everything());
    QCOMPARE(matchIDs(runtime), u"zoom-10"_s);
    // To construct it touches nothing.
    QVERIFY(!runtime.isMonitoring() && home.workspace.subscriberCount() == 0);
    QVERIFY(!QFile::exists(home.support()));

    for (const bool on : {true, false}) {
        runtime.start(on, [](bool) {});
        QCOMPARE(home.settings.load(), (PrivacyModeSettings{on, everything()}));
        QCOMPARE(home.workspace.subscriberCount(), 1);
    }
    QCOMPARE(runtime.monitorLabel(), u"Preview"_s);
    QVERIFY(home.story().isEmpty());
}

void RuntimeTest::selection() {
    Home home;
    home.settings.save({false, everything()});
    MacProtectionRuntime runtime(home.defaults, home.surroundings());
    runtime.setProtectedDefinition(u"zoom"_s, true); // as it is
    runtime.setProtectedDefinition(u"zoom"_s, false);
    QCOMPARE(matchIDs(runtime), QString());
    runtime.setProtectedDefinition(u"skype"_s, true);
    runtime.setProtectedDefinition(u"zoom"_s, true);
    QCOMPARE(matchIDs(runtime), u"zoom-10"_s);
    QCOMPARE(runtime.recentEvents().first().appName, u"Zoom"_s);
    QCOMPARE(runtime.recentEvents().first().kind, Kind::riskAppMatched);
    runtime.applyRecommendedRiskApps();
    runtime.applyRecommendedRiskApps();
    QCOMPARE(home.settings.load(), (PrivacyModeSettings{false, everything()}));
    const QString recommended = u"Recommended Mac protected app list applied."_s;
    QCOMPARE(home.story(), (QStringList{u"Zoom removed from Mac Privacy Mode."_s,
                                        u"Protected app added to Mac Privacy Mode."_s,
                                        u"Zoom added to Mac Privacy Mode."_s, recommended, recommended}));
}

void RuntimeTest::emptySelection() {
    Home home;
    {
        MacProtectionRuntime runtime(home.defaults, home.surroundings());
        runtime.start(true, [](bool) {});
        for (const QString &id : everything())
            runtime.setProtectedDefinition(id, false);
        // The file notices that come back for our own writes must not fill it up again.
        QVERIFY(samples::everythingIsTold());
        QVERIFY(runtime.protectedDefinitionIDs().isEmpty());
        QCOMPARE(matchIDs(runtime), u"zoom-10"_s);
    }
    QVERIFY(home.settings.load().protectedDefinitionIDs.isEmpty());
    QCOMPARE(MacProtectionRuntime(home.defaults, home.surroundings()).protectedDefinitionIDs(), everything());
}

void RuntimeTest::enforceActions() {
    Home home;
    MacProtectionRuntime runtime(home.defaults, home.surroundings());
    runtime.start(true, [](bool) {});
    runtime.setEnforceActions(true);
    QCOMPARE(home.defaults.boolean(u"kestrin.mac.enforceActions"_s), true);
    const QStringList story{u"Mac app actions are enforcing for selected protected apps."_s,
                            u"Privacy Mode is on. Evaluating Mac protected apps."_s,
                            u"Zoom matches Zoom risk categories: Video call, Microphone, Camera."_s,
                            u"Asked Zoom to quit."_s};
    QCOMPARE(home.story(), story);
    // The new monitor enforces, and only it watches.
    home.workspace.launch(samples::running(u"FaceTime"_s, 12));
    QCOMPARE(home.workspace.subscriberCount(), 1);
    // Assigning the same value does all of it again.
    runtime.setEnforceActions(true);
    QCOMPARE(home.story().at(6), story.first());
    QCOMPARE(home.workspace.terminationRequests(), (QList<qint32>{10, 12, 10, 12}));
    // Previews are recorded, and nobody is asked any more.
    const qsizetype enforced = home.story().size();
    runtime.setEnforceActions(false);
    QCOMPARE(home.story().at(enforced), u"Mac app actions switched to preview mode."_s);
    QCOMPARE(home.story().last(), u"Preview: Kestrin would ask FaceTime to quit while Privacy Mode is on."_s);
    QCOMPARE(home.workspace.terminationRequests().size(), 4);
}

void RuntimeTest::publishedEvents() {
    Home home;
    for (int i = 0; i < 3; ++i)
        home.log.append(samples::event(QString::number(i)));
    for (const Kind kind : allCases<Kind>())
        home.log.append(MacProtectionEvent::create(systemTime(), kind, rawValue(kind)));
    {
        MacProtectionRuntime runtime(home.defaults, home.surroundings());
        const QList<MacProtectionEvent> before = home.log.recent(8);
        QCOMPARE(runtime.recentEvents(), before);
        QCOMPARE(runtime.actionEventCount(), 4);
        runtime.start(true, [](bool) {});
        // What a launch leads to is published later.
        home.workspace.launch(samples::running(u"FaceTime"_s, 12));
        QVERIFY(home.log.recent(8) != before && runtime.recentEvents() == before);
        QTRY_COMPARE(runtime.recentEvents(), home.log.recent(8));
        QCOMPARE(matchIDs(runtime), u"zoom-10,facetime-12"_s);
        home.workspace.launch(samples::running(u"FaceTime"_s, 13));
    }
    // The refresh that is still posted must not reach a runtime that has gone.
    QCOMPARE(home.workspace.subscriberCount(), 0);
    QCoreApplication::processEvents();
}

void RuntimeTest::flag() {
    Home home;
    MacProtectionRuntime runtime(home.defaults, home.surroundings());
    PrivacyModeFlag flag(home.defaults, runtime);
    QSignalSpy spy(&flag, &PrivacyModeFlag::changed);
    flag.startRuntime();
    flag.setOn(false);
    flag.setOn(false);
    QVERIFY(samples::everythingIsTold());
    QCOMPARE(spy.size(), 1);

    // Settings that disagree with the flag are mended by setting it, changed or not.
    home.settings.save({true, everything()});
    flag.setOn(false);
    QCOMPARE(home.settings.load().isEnabled, false);
    // Only what is to be recorded is.
    runtime.updatePrivacyMode(true, false);
    const QString off = u"Privacy Mode is off for this Mac."_s;
    QCOMPARE(home.story(), (QStringList{off, off}));
}

void RuntimeTest::otherProcesses() {
    Home home;
    MacProtectionRuntime runtime(home.defaults, home.surroundings());
    PrivacyModeFlag flag(home.defaults, runtime);
    flag.startRuntime();

    // Another process over the same files, as far as files can tell.
    JSONUserDefaults theirDefaults(home.preferences());
    InMemoryWorkspace noWorkspace;
    MacProtectionRuntime theirs(theirDefaults, {.supportFolder = home.support(),
                                                .workspace = noWorkspace,
                                                .settingsStore = settingsStoreIn(home.support()),
                                                .logStore = activityLogIn(home.support())});
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

QTEST_GUILESS_MAIN(RuntimeTest)
#include "tst_runtime.moc"
