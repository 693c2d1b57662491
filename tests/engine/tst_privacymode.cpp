// Which definition an application is; checks, quit requests and relaunches: which events are recorded, in
// which order, with which words.

#include "engine/NSWorkspaceAppInventoryService.h"
#include "engine/NSWorkspaceRiskAppActionPerformer.h"
#include "engine/PrivacyModeController.h"
#include "engine/RiskAppRelaunchMonitor.h"
#include "engine/workspace/InMemoryWorkspace.h"
#include "tests/support/Samples.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace kestrin;
using namespace kestrin::foundation;
using namespace kestrin::engine;

namespace {

using Kind = MacProtectionEventKind;
using Status = RiskAppActionStatus;

QList<Kind> kinds(const QList<MacProtectionEvent> &events) {
    QList<Kind> list;
    for (const MacProtectionEvent &event : events)
        list.append(event.kind);
    return list;
}

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
    void definition();
    void previewAndEnforce();
    void onlyRequestedIsSuccess();
    void conversion();
    void quitMessages();
    void relaunchReaction();
    void monitorLifecycle();
};

void PrivacyModeTest::definition() {
    const RiskAppCatalog catalog{RiskAppCatalog::defaultDefinitions()};
    struct Case {
        const char *rule;
        QString name;
        std::optional<QString> bundle;
        QString id;
    };
    for (const auto &[rule, name, bundle, id] : {
             Case{"bundle, other letter case", u"Anything"_s, u"US.ZOOM.XOS"_s, u"zoom"_s},
             Case{"bundle is compared whole", u"Anything"_s, u"us.zoom.xos.helper"_s, u"none"_s},
             Case{"second bundle", u"Anything"_s, u"com.microsoft.teams2"_s, u"teams"_s},
             Case{"name is trimmed", u"\u00a0 Zoom\n\u2003"_s, {}, u"zoom"_s},
             Case{"alias", u"Zoom.US"_s, {}, u"zoom"_s},
             Case{"name is not contained", u"Microsoft Teams (work or school)"_s, {}, u"none"_s},
             Case{"earlier name beats later bundle", u"Zoom"_s, u"com.apple.Safari"_s, u"zoom"_s},
             Case{"earlier bundle beats later name", u"Safari"_s, u"us.zoom.xos"_s, u"zoom"_s},
             Case{"name with an unknown bundle", u"Safari"_s, u"org.example.other"_s, u"safari"_s},
             Case{"definition without bundles", u"otter"_s, u""_s, u"otter"_s},
             Case{"inner space counts", u"Otter  AI"_s, {}, u"none"_s},
             Case{"empty name", u""_s, {}, u"none"_s},
         }) {
        const auto found = catalog.definition(samples::app(name, 1, bundle));
        QVERIFY2((found ? found->id : u"none"_s) == id, rule);
    }
}

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
    QCOMPARE(preview.events.at(2).bundleIdentifier, u"us.zoom.xos"_s);
    QCOMPARE(preview.events.at(3).appName, u"Safari"_s);
    QCOMPARE(preview.events.at(0).appName, std::nullopt);

    const auto enforced = engine.check(false);
    QCOMPARE(kinds(enforced.events),
             (QList{Kind::privacyModeOn, Kind::riskAppMatched, Kind::quitRequested, Kind::riskAppMatched}));
    QCOMPARE(enforced.events.at(2).message, u"Asked it."_s);
    QCOMPARE(engine.performer->requests, QList{engine.inventory->apps.first()});
    // Newest first: the last event of the last check comes first.
    QCOMPARE(engine.log->recent(1).first(), enforced.events.last());
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
    for (const auto policy : {ActivationPolicy::accessory, ActivationPolicy::prohibited})
        workspace.add({policy, u"Zoom"_s, 4, std::nullopt, std::nullopt});
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
    const std::pair<qint32, RiskAppActionResult> expected[] = {
        {10, {Status::requested, u"Asked Zoom to quit."_s}},
        {11, {Status::failed, u"Could not ask Zoom to quit."_s}},
        {12, {Status::failed, u"Zoom is no longer running."_s}},
    };
    for (const auto &[pid, result] : expected)
        QCOMPARE(performer.requestQuit(samples::app(u"Zoom"_s, pid)), result);
    QCOMPARE(workspace.terminationRequests(), (QList<qint32>{10, 11, 12}));
}

void PrivacyModeTest::relaunchReaction() {
    Engine engine;
    // What the log held each time the handler was told.
    QList<qsizetype> told;
    const auto handler = [&](const MacProtectionEvent &) { told.append(engine.log->recent(9).size()); };
    const auto reaction = [&](const PrivacyModeSettings &settings, bool dryRun, const QString &name) {
        engine.settings->settings = settings;
        return samples::messages(engine.monitor(dryRun, handler).handleLaunchedApp(samples::app(name)));
    };
    const QString relaunched = u"Zoom relaunched while Privacy Mode is on."_s;
    QCOMPARE(
        reaction({true, {}}, true, u"Zoom"_s),
        (QStringList{relaunched, u"Preview: Kestrin would keep Zoom closed while Privacy Mode is on."_s}));
    QVERIFY(engine.performer->requests.isEmpty());
    QCOMPARE(reaction({true, {u"zoom"_s}}, false, u"Zoom"_s), (QStringList{relaunched, u"Asked it."_s}));
    QCOMPARE(kinds(engine.log->recent(3)),
             (QList{Kind::quitRequested, Kind::relaunchDetected, Kind::dryRun}));
    QCOMPARE(reaction({false, {}}, false, u"Zoom"_s), QStringList());
    for (const QString &allowedUnselectedOrUnknown : {u"Safari"_s, u"FaceTime"_s, u"Editor"_s})
        QCOMPARE(reaction({true, {u"zoom"_s, u"safari"_s}}, false, allowedUnselectedOrUnknown),
                 QStringList());
    QCOMPARE(engine.performer->requests.size(), 1);
    QCOMPARE(told, (QList<qsizetype>{1, 2, 3, 4}));
}

void PrivacyModeTest::monitorLifecycle() {
    Engine engine;
    RiskAppRelaunchMonitor monitor = engine.monitor(true);
    monitor.start();
    monitor.start();
    engine.workspace.launch(samples::running(u"Zoom"_s, 10));
    engine.workspace.launch({ActivationPolicy::accessory, u"Zoom"_s, 11, std::nullopt, std::nullopt});
    QCOMPARE(engine.log->recent(9).size(), 2);
    // Settings are read at every launch.
    engine.settings->settings.isEnabled = false;
    engine.workspace.launch(samples::running(u"Zoom"_s, 12));
    QCOMPARE(engine.log->recent(9).size(), 2);
    monitor.stop();
    QCOMPARE(engine.workspace.subscriberCount(), 0);
}

QTEST_GUILESS_MAIN(PrivacyModeTest)
#include "tst_privacymode.moc"
