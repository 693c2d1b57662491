// Which definition an application is; checks, quit requests and relaunches: which events are recorded, in
// which order, with which words.

#include "engine/NSWorkspaceAppInventoryService.h"
#include "engine/NSWorkspaceRiskAppActionPerformer.h"
#include "engine/PrivacyModeController.h"
#include "engine/RiskAppMatcher.h"
#include "engine/RiskAppRelaunchMonitor.h"
#include "tests/support/Journal.h"
#include "tests/support/Test.h"

#include <QRandomGenerator>

namespace {

using Kind = MacProtectionEventKind;
using Status = RiskAppActionStatus;

/// The engine over doubles that keep one journal.
struct Engine : samples::Journaled {
    RiskAppCatalog catalog{RiskAppCatalog::defaultDefinitions()};
    std::shared_ptr<MacAppInventoryService> inventory =
        std::make_shared<NSWorkspaceAppInventoryService>(workspace);
    std::shared_ptr<RiskAppActionPerforming> performer =
        std::make_shared<NSWorkspaceRiskAppActionPerformer>(workspace);

    PrivacyModeRunResult check(bool dryRun) {
        return PrivacyModeController(catalog, inventory, performer, log, clock)
            .evaluateCurrentApps(settings->settings, dryRun);
    }
    RiskAppRelaunchMonitor monitor(bool dryRun) {
        const auto told = [this](const MacProtectionEvent &event) {
            journal.append(u"told "_s + rawValue(event.kind));
        };
        return {catalog, settings, performer, log, dryRun, told, workspace, clock};
    }
};

} // namespace

class PrivacyModeTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void definition();
    void checks();
    void services();
    void relaunches();
    void monitorLifecycle();
};

void PrivacyModeTest::definition() {
    const RiskAppCatalog known{RiskAppCatalog::defaultDefinitions()};
    const auto row = [&known](const char *rule, const QString &name, const std::optional<QString> &bundle,
                              const QString &id) {
        const auto found = known.definition(samples::app(name, 1, bundle));
        QVERIFY2((found ? found->id : u"none"_s) == id, rule);
    };
    row("bundle, other letter case", u"Anything"_s, u"US.ZOOM.XOS"_s, u"zoom"_s);
    row("bundle is compared whole", u"Anything"_s, u"us.zoom.xos.helper"_s, u"none"_s);
    row("name is trimmed", u"\u00a0 Zoom\n\u2003"_s, {}, u"zoom"_s);
    row("alias", u"Zoom.US"_s, {}, u"zoom"_s);
    row("name is not contained", u"Microsoft Teams (work or school)"_s, {}, u"none"_s);
    row("earlier name beats later bundle", u"Zoom"_s, u"com.apple.Safari"_s, u"zoom"_s);
    row("earlier bundle beats later name", u"Safari"_s, u"us.zoom.xos"_s, u"zoom"_s);
    row("name with an unknown bundle", u"Safari"_s, u"org.example.other"_s, u"safari"_s);
    row("definition without bundles", u"otter"_s, u""_s, u"otter"_s);
    row("inner space counts", u"Otter  AI"_s, {}, u"none"_s);

    // The matcher finds the same, whatever letters there are.
    QRandomGenerator random(42);
    const QStringList letters =
        u"a A ß ẞ ss İ i I K k ſ S \U00010400 \U00010428"_s.split(u' ') + QStringList{u" "_s, u"\n"_s};
    const auto word = [&] {
        QString text;
        for (quint32 left = random.bounded(3U); left > 0; --left)
            text += letters.at(random.bounded(letters.size()));
        return text;
    };
    qsizetype matched = 0;
    for (int round = 0; round < 500; ++round) {
        RiskAppCatalog catalog;
        for (int i = 0; i < 6; ++i)
            catalog.definitions.append(
                {QString::number(i), word(), {word(), word()}, {word()}, {}, RiskAppAction::quit});
        QList<RunningMacApp> apps;
        for (int i = 0; i < 20; ++i)
            apps.append(samples::app(word(), i, i % 3 == 0 ? std::nullopt : std::optional(word())));
        const QList<RiskAppMatch> matches = catalog.matches(apps);
        QCOMPARE(RiskAppMatcher(catalog).matches(apps), matches);
        matched += matches.size();
    }
    QVERIFY(matched > 1000 && matched < 9000);
}

void PrivacyModeTest::checks() {
    Engine engine;
    engine.workspace.add(samples::running(u"Zoom"_s, 10, u"us.zoom.xos"_s));
    engine.workspace.add(samples::running(u"Safari"_s, 11));
    engine.workspace.add(samples::running(u"FaceTime"_s, 12));
    engine.workspace.refuse(12);
    const QString on = u"log Privacy Mode is on. Evaluating Mac protected apps."_s;
    const QString zoom = u"log Zoom matches Zoom risk categories: Video call, Microphone, Camera."_s;
    const QString safari = u"log Safari matches Safari risk categories: Browser, Microphone, Camera."_s;
    const QString facetime =
        u"log FaceTime matches FaceTime risk categories: Video call, Microphone, Camera."_s;

    const PrivacyModeRunResult preview = engine.check(true);
    QCOMPARE(engine.asked(),
             (QStringList{u"list"_s, on, zoom,
                          u"log Preview: Kestrin would ask Zoom to quit while Privacy Mode is on."_s, safari,
                          facetime,
                          u"log Preview: Kestrin would ask FaceTime to quit while Privacy Mode is on."_s}));
    QCOMPARE(preview.events.at(2).bundleIdentifier, u"us.zoom.xos"_s);
    QCOMPARE(preview.events.at(3).appName, u"Safari"_s);
    QCOMPARE(preview.events.at(0).appName, std::nullopt);

    // All requests are made before anything is recorded.
    const PrivacyModeRunResult enforced = engine.check(false);
    QCOMPARE(engine.asked(),
             (QStringList{u"list"_s, u"ask 10"_s, u"ask 12"_s, on, zoom, u"log Asked Zoom to quit."_s, safari,
                          facetime, u"log Could not ask FaceTime to quit."_s}));
    QList<Kind> kinds;
    QSet<QUuid> ids;
    for (const MacProtectionEvent &event : enforced.events) {
        QVERIFY(kinds.isEmpty() || enforced.events.at(kinds.size() - 1).date < event.date);
        kinds.append(event.kind);
        ids.insert(event.id);
    }
    QCOMPARE(kinds, (QList{Kind::privacyModeOn, Kind::riskAppMatched, Kind::quitRequested,
                           Kind::riskAppMatched, Kind::riskAppMatched, Kind::actionFailed}));
    QCOMPARE(ids.size(), kinds.size());

    engine.settings->settings.protectedDefinitionIDs = {u"facetime"_s, u"unknown"_s};
    QCOMPARE(engine.check(true).matches.size(), 1);
    engine.asked();

    // Nobody looks at what runs.
    engine.settings->settings.isEnabled = false;
    const PrivacyModeRunResult off = engine.check(false);
    QCOMPARE(engine.asked(), QStringList{u"log Privacy Mode is off. No Mac app actions were taken."_s});
    QVERIFY(off.matches.isEmpty() && off.events.first().kind == Kind::privacyModeOff);
}

void PrivacyModeTest::services() {
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

    NSWorkspaceRiskAppActionPerformer performer(workspace);
    // The snapshot's name counts, and its process id alone.
    QCOMPARE(performer.requestQuit(samples::app(u"Renamed"_s, 6)),
             (RiskAppActionResult{Status::requested, u"Asked Renamed to quit."_s}));
    QCOMPARE(performer.requestQuit(samples::app(u"Zoom"_s, 11)),
             (RiskAppActionResult{Status::failed, u"Zoom is no longer running."_s}));
    // Of what any other performer answers, only that it was requested is a success.
    Engine engine;
    engine.workspace.add(samples::running(u"Zoom"_s, 10));
    for (const Status status : allCases<Status>()) {
        engine.performer = std::make_shared<InMemoryRiskAppActionPerformer>(RiskAppActionResult{status, {}});
        const Kind kind = status == Status::requested ? Kind::quitRequested : Kind::actionFailed;
        QCOMPARE(engine.check(false).events.last().kind, kind);
        QCOMPARE(engine.monitor(false).handleLaunchedApp(samples::app(u"Zoom"_s)).last().kind, kind);
    }
}

void PrivacyModeTest::relaunches() {
    Engine engine;
    engine.workspace.add(samples::running(u"Zoom"_s, 10));
    const auto reaction = [&](const PrivacyModeSettings &settings, bool dryRun, const QString &name) {
        engine.settings->settings = settings;
        engine.monitor(dryRun).handleLaunchedApp(samples::app(name, 10, u"bundle"_s));
        return engine.asked();
    };
    const QString relaunched = u"log Zoom relaunched while Privacy Mode is on."_s;
    const QString preview = u"log Preview: Kestrin would keep Zoom closed while Privacy Mode is on."_s;
    QCOMPARE(reaction({true, {}}, true, u"Zoom"_s),
             (QStringList{u"load"_s, relaunched, u"told relaunchDetected"_s, preview, u"told dryRun"_s}));
    // The request comes before anything is recorded.
    QCOMPARE(reaction({true, {u"zoom"_s}}, false, u"Zoom"_s),
             (QStringList{u"load"_s, u"ask 10"_s, relaunched, u"told relaunchDetected"_s,
                          u"log Asked Zoom to quit."_s, u"told quitRequested"_s}));
    for (const MacProtectionEvent &event : engine.log->recent(4))
        QVERIFY(event.appName == u"Zoom" && event.bundleIdentifier == u"bundle");
    engine.asked();
    QCOMPARE(reaction({false, {}}, false, u"Zoom"_s), QStringList{u"load"_s});
    for (const QString &allowedUnselectedOrUnknown : {u"Safari"_s, u"FaceTime"_s, u"Editor"_s})
        QCOMPARE(reaction({true, {u"zoom"_s, u"safari"_s}}, false, allowedUnselectedOrUnknown),
                 QStringList{u"load"_s});
}

void PrivacyModeTest::monitorLifecycle() {
    Engine engine;
    {
        RiskAppRelaunchMonitor monitor = engine.monitor(true);
        for (int round = 0; round < 2; ++round) {
            monitor.start();
            monitor.start();
            QCOMPARE(engine.asked(), QStringList{u"watched by 1"_s});
            engine.settings->settings.isEnabled = true;
            engine.workspace.launch(samples::running(u"Zoom"_s, 10));
            engine.workspace.launch({ActivationPolicy::accessory, u"Zoom"_s, 11, std::nullopt, std::nullopt});
            QCOMPARE(engine.asked().count(u"load"_s), 1);
            // Settings are read at every launch.
            engine.settings->settings.isEnabled = false;
            engine.workspace.launch(samples::running(u"Zoom"_s, 12));
            QCOMPARE(engine.asked(), QStringList{u"load"_s});
            monitor.stop();
            monitor.stop();
            QCOMPARE(engine.workspace.subscriberCount(), 0);
        }
        monitor.start();
    }
    QCOMPARE(engine.workspace.subscriberCount(), 0);
}

KESTRIN_TEST(PrivacyModeTest)
#include "tst_privacymode.moc"
