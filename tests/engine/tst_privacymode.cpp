// Checks, quit requests and relaunches: which events are recorded, in which order, with which words.

#include "engine/NSWorkspaceAppInventoryService.h"
#include "engine/NSWorkspaceRiskAppActionPerformer.h"
#include "engine/PrivacyModeController.h"
#include "engine/RiskAppRelaunchMonitor.h"
#include "engine/workspace/InMemoryWorkspace.h"
#include "tests/support/Samples.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace kestrin;

namespace {

using Kind = MacProtectionEventKind;
using Status = RiskAppActionStatus;

QList<Kind> kinds(const QList<MacProtectionEvent> &events) {
    QList<Kind> list;
    for (const MacProtectionEvent &event : events)
        list.append(event.kind);
    return list;
}

/// A performer that looks into the log when it is asked.
class LogWatchingPerformer final : public RiskAppActionPerforming {
  public:
    explicit LogWatchingPerformer(MacActivityLogStoring &watched) : log(watched) {}
    RiskAppActionResult requestQuit(const RunningMacApp &) override {
        loggedBefore.append(log.recent(100).size());
        return {Status::requested, u"Asked."_s};
    }
    MacActivityLogStoring &log;
    QList<qsizetype> loggedBefore;
};

struct Engine {
    RiskAppCatalog catalog{RiskAppCatalog::defaultDefinitions()};
    std::shared_ptr<InMemoryMacAppInventoryService> inventory =
        std::make_shared<InMemoryMacAppInventoryService>();
    std::shared_ptr<InMemoryRiskAppActionPerformer> performer =
        std::make_shared<InMemoryRiskAppActionPerformer>(
            RiskAppActionResult{Status::requested, u"Asked it."_s});
    std::shared_ptr<InMemoryMacActivityLogStore> log = std::make_shared<InMemoryMacActivityLogStore>();
    std::shared_ptr<InMemoryPrivacyModeSettingsStore> settings =
        std::make_shared<InMemoryPrivacyModeSettingsStore>(PrivacyModeSettings{true, {}});
    InMemoryWorkspace workspace;

    PrivacyModeRunResult check(bool dryRun) {
        return PrivacyModeController(catalog, inventory, performer, log)
            .evaluateCurrentApps(settings->settings, dryRun);
    }
    RiskAppRelaunchMonitor monitor(bool dryRun, const RiskAppRelaunchMonitor::EventHandler &handler = {}) {
        return {catalog, settings, performer, log, dryRun, handler, workspace};
    }
};

} // namespace

class PrivacyModeTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void previewAndEnforce();
    void selection();
    void requestsComeBeforeTheLog();
    void onlyRequestedIsSuccess();
    void conversion();
    void quitMessages();
    void relaunchReaction();
    void relaunchHandlerRunsBetweenTheAppends();
    void monitorLifecycle();
};

void PrivacyModeTest::previewAndEnforce() {
    Engine engine;
    engine.inventory->apps = {samples::app(u"Zoom"_s, 10, u"us.zoom.xos"_s), samples::app(u"Safari"_s, 11)};

    const auto preview = engine.check(true);
    QCOMPARE(samples::messages(preview.events),
             (QStringList{
                 u"Privacy Mode is on. Evaluating Mac protected apps."_s,
                 u"Zoom matches Zoom risk categories: Video call, Microphone, Camera."_s,
                 u"Preview: Kestrin would ask Zoom to quit while Privacy Mode is on."_s,
                 u"Safari matches Safari risk categories: Browser, Microphone, Camera."_s,
             }));
    QVERIFY(engine.performer->requests.isEmpty());
    QCOMPARE(preview.events.at(2).appName, u"Zoom"_s);
    QCOMPARE(preview.events.at(2).bundleIdentifier, u"us.zoom.xos"_s);
    QCOMPARE(preview.events.at(3).bundleIdentifier, std::nullopt);
    QCOMPARE(preview.events.at(0).appName, std::nullopt);
    QVERIFY(preview.events.at(0).id != preview.events.at(1).id);

    const auto enforced = engine.check(false);
    QCOMPARE(kinds(enforced.events),
             (QList{Kind::privacyModeOn, Kind::riskAppMatched, Kind::quitRequested, Kind::riskAppMatched}));
    QCOMPARE(enforced.events.at(2).message, u"Asked it."_s);
    QCOMPARE(engine.performer->requests, QList{engine.inventory->apps.first()});
    // Newest first: the last event of the last check comes first.
    QCOMPARE(engine.log->recent(1).first(), enforced.events.last());
}

void PrivacyModeTest::selection() {
    Engine engine;
    engine.inventory->apps = {samples::app(u"Zoom"_s, 10), samples::app(u"FaceTime"_s, 11)};
    const auto matchesWith = [&engine](const QSet<QString> &selection) {
        engine.settings->settings.protectedDefinitionIDs = selection;
        QStringList ids;
        for (const RiskAppMatch &match : engine.check(true).matches)
            ids.append(match.id());
        return ids.join(u',');
    };
    QCOMPARE(matchesWith({}), u"zoom-10,facetime-11"_s); // empty means everything
    QCOMPARE(matchesWith({u"facetime"_s}), u"facetime-11"_s);
    QCOMPARE(matchesWith({u"skype"_s}), QString());
    QCOMPARE(matchesWith({u"skype"_s, u"zoom"_s}), u"zoom-10"_s);
}

void PrivacyModeTest::requestsComeBeforeTheLog() {
    Engine engine;
    const auto performer = std::make_shared<LogWatchingPerformer>(*engine.log);
    engine.inventory->apps = {samples::app(u"Zoom"_s, 10), samples::app(u"FaceTime"_s, 11)};
    PrivacyModeController(engine.catalog, engine.inventory, performer, engine.log)
        .evaluateCurrentApps({true, {}}, false);
    QCOMPARE(performer->loggedBefore, (QList<qsizetype>{0, 0}));
    QCOMPARE(engine.log->recent(100).size(), 5);
}

void PrivacyModeTest::onlyRequestedIsSuccess() {
    Engine engine;
    engine.inventory->apps = {samples::app(u"Zoom"_s, 10)};
    for (const Status status : allCases<Status>()) {
        engine.performer->result.status = status;
        const Kind expected = status == Status::requested ? Kind::quitRequested : Kind::actionFailed;
        QCOMPARE(engine.check(false).events.last().kind, expected);
        QCOMPARE(engine.monitor(false).handleLaunchedApp(samples::app(u"Zoom"_s)).last().kind, expected);
    }
}

void PrivacyModeTest::conversion() {
    InMemoryWorkspace workspace;
    workspace.add({ActivationPolicy::regular, u"  Zoom "_s, 1, std::nullopt, std::nullopt});
    workspace.add({ActivationPolicy::regular, u""_s, 2, u"us.zoom.xos"_s, std::nullopt});
    workspace.add({ActivationPolicy::regular, std::nullopt, 3, std::nullopt, std::nullopt});
    workspace.add({ActivationPolicy::accessory, u"Zoom"_s, 4, std::nullopt, std::nullopt});
    workspace.add({ActivationPolicy::prohibited, u"Zoom"_s, 5, std::nullopt, std::nullopt});
    workspace.add({ActivationPolicy::regular, u"Zoom"_s, 6, u"us.zoom.xos"_s, u"/opt/zoom/zoom"_s});
    const QList<RunningMacApp> expected{{1, u"  Zoom "_s, std::nullopt, std::nullopt},
                                        {6, u"Zoom"_s, u"us.zoom.xos"_s, u"/opt/zoom/zoom"_s}};
    QCOMPARE(NSWorkspaceAppInventoryService(workspace).runningApps(), expected);
}

void PrivacyModeTest::quitMessages() {
    InMemoryWorkspace workspace;
    workspace.add(samples::running(u"Renamed"_s, 10));
    workspace.add(samples::running(u"Zoom"_s, 11));
    workspace.refuse(11);
    NSWorkspaceRiskAppActionPerformer performer(workspace);
    // The snapshot's name counts, and its process id alone.
    QCOMPARE(performer.requestQuit(samples::app(u"Zoom"_s, 10)),
             (RiskAppActionResult{Status::requested, u"Asked Zoom to quit."_s}));
    QCOMPARE(performer.requestQuit(samples::app(u"Zoom"_s, 11)),
             (RiskAppActionResult{Status::failed, u"Could not ask Zoom to quit."_s}));
    QCOMPARE(performer.requestQuit(samples::app(u"Zoom"_s, 12)),
             (RiskAppActionResult{Status::failed, u"Zoom is no longer running."_s}));
    QCOMPARE(workspace.terminationRequests(), (QList<qint32>{10, 11}));
}

void PrivacyModeTest::relaunchReaction() {
    Engine engine;
    const auto reaction = [&engine](const PrivacyModeSettings &settings, bool dryRun, const QString &name) {
        engine.settings->settings = settings;
        return samples::messages(engine.monitor(dryRun).handleLaunchedApp(samples::app(name)));
    };
    const QString relaunched = u"Zoom relaunched while Privacy Mode is on."_s;
    QCOMPARE(
        reaction({true, {}}, true, u"Zoom"_s),
        (QStringList{relaunched, u"Preview: Kestrin would keep Zoom closed while Privacy Mode is on."_s}));
    QVERIFY(engine.performer->requests.isEmpty());
    QCOMPARE(reaction({true, {u"zoom"_s}}, false, u"Zoom"_s), (QStringList{relaunched, u"Asked it."_s}));
    QCOMPARE(engine.performer->requests.size(), 1);
    QCOMPARE(kinds(engine.log->recent(3)),
             (QList{Kind::quitRequested, Kind::relaunchDetected, Kind::dryRun}));
    // Off, allowed, not selected, unknown.
    QCOMPARE(reaction({false, {}}, false, u"Zoom"_s), QStringList());
    QCOMPARE(reaction({true, {}}, false, u"Safari"_s), QStringList());
    QCOMPARE(reaction({true, {u"zoom"_s}}, false, u"FaceTime"_s), QStringList());
    QCOMPARE(reaction({true, {}}, false, u"Editor"_s), QStringList());
    QCOMPARE(engine.performer->requests.size(), 1);
    QCOMPARE(engine.log->recent(9).size(), 4);
}

void PrivacyModeTest::relaunchHandlerRunsBetweenTheAppends() {
    Engine engine;
    QList<std::pair<Kind, qsizetype>> told;
    engine
        .monitor(false,
                 [&](const MacProtectionEvent &event) {
                     told.append({event.kind, engine.log->recent(8).size()});
                 })
        .handleLaunchedApp(samples::app(u"Zoom"_s));
    QCOMPARE(told,
             (QList<std::pair<Kind, qsizetype>>{{Kind::relaunchDetected, 1}, {Kind::quitRequested, 2}}));
}

void PrivacyModeTest::monitorLifecycle() {
    Engine engine;
    const auto loggedAfterALaunch = [&engine] {
        engine.workspace.launch(samples::running(u"Zoom"_s, 10));
        engine.workspace.launch({ActivationPolicy::accessory, u"Zoom"_s, 11, std::nullopt, std::nullopt});
        return engine.log->recent(100).size();
    };
    {
        RiskAppRelaunchMonitor monitor = engine.monitor(true);
        QCOMPARE(loggedAfterALaunch(), 0);
        monitor.start();
        monitor.start();
        QCOMPARE(loggedAfterALaunch(), 2);
        // Settings are read at every launch.
        engine.settings->settings.isEnabled = false;
        QCOMPARE(loggedAfterALaunch(), 2);
        engine.settings->settings.isEnabled = true;
        monitor.stop();
        monitor.stop();
        QCOMPARE(loggedAfterALaunch(), 2);
        monitor.start();
        QCOMPARE(engine.workspace.subscriberCount(), 1);
    }
    QCOMPARE(engine.workspace.subscriberCount(), 0);
}

QTEST_GUILESS_MAIN(PrivacyModeTest)
#include "tst_privacymode.moc"
