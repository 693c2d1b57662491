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

QList<Kind> kinds(const QList<MacProtectionEvent> &events) {
    QList<Kind> list;
    for (const MacProtectionEvent &event : events)
        list.append(event.kind);
    return list;
}

/// Tells what is called, in which order.
class CountingInventory final : public MacAppInventoryService {
  public:
    QList<RunningMacApp> runningApps() override {
        ++calls;
        return {};
    }
    int calls = 0;
};

/// A performer that looks whether the log is still empty when it is asked.
class LogWatchingPerformer final : public RiskAppActionPerforming {
  public:
    explicit LogWatchingPerformer(MacActivityLogStoring &watched) : log(watched) {}
    RiskAppActionResult requestQuit(const RunningMacApp &) override {
        loggedBefore.append(log.recent(100).size());
        return {RiskAppActionStatus::requested, u"Asked."_s};
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
            RiskAppActionResult{RiskAppActionStatus::requested, u"Asked it."_s});
    std::shared_ptr<InMemoryMacActivityLogStore> log = std::make_shared<InMemoryMacActivityLogStore>();
    std::shared_ptr<InMemoryPrivacyModeSettingsStore> settings =
        std::make_shared<InMemoryPrivacyModeSettingsStore>(PrivacyModeSettings{true, {}});

    PrivacyModeRunResult check(bool dryRun) {
        PrivacyModeController controller(catalog, inventory, performer, log);
        return controller.evaluateCurrentApps(settings->settings, dryRun);
    }
};

} // namespace

class PrivacyModeTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void checkWhileOff();
    void checkWithoutMatches();
    void previewAndEnforce();
    void selection_data();
    void selection();
    void requestsComeBeforeTheLog();
    void onlyRequestedIsSuccess_data();
    void onlyRequestedIsSuccess();
    void emptyCategories();
    void conversion();
    void quitMessages();
    void relaunchReaction_data();
    void relaunchReaction();
    void relaunchHandlerRunsBetweenTheAppends();
    void monitorLifecycle();
};

void PrivacyModeTest::checkWhileOff() {
    Engine engine;
    const auto inventory = std::make_shared<CountingInventory>();
    PrivacyModeController controller(engine.catalog, inventory, engine.performer, engine.log);
    const auto result = controller.evaluateCurrentApps({false, {}}, false);
    QVERIFY(result.matches.isEmpty());
    QCOMPARE(samples::messages(result.events),
             QStringList{u"Privacy Mode is off. No Mac app actions were taken."_s});
    QCOMPARE(engine.log->recent(8), result.events);
    QCOMPARE(inventory->calls, 0);
}

void PrivacyModeTest::checkWithoutMatches() {
    Engine engine;
    engine.inventory->apps = {samples::app(u"Editor"_s)};
    const auto result = engine.check(false);
    QVERIFY(result.matches.isEmpty());
    QCOMPARE(kinds(result.events), QList{Kind::privacyModeOn});
    QCOMPARE(result.events.first().message, u"Privacy Mode is on. Evaluating Mac protected apps."_s);
    QCOMPARE(result.events.first().appName, std::nullopt);
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
    QCOMPARE(preview.events.at(2).appName, u"Zoom"_s);
    QCOMPARE(preview.events.at(2).bundleIdentifier, u"us.zoom.xos"_s);
    QCOMPARE(preview.events.at(3).bundleIdentifier, std::nullopt);
    QSet<QUuid> ids;
    for (const MacProtectionEvent &event : preview.events)
        ids.insert(event.id);
    QCOMPARE(ids.size(), 4);

    const auto enforced = engine.check(false);
    QCOMPARE(kinds(enforced.events),
             (QList{Kind::privacyModeOn, Kind::riskAppMatched, Kind::quitRequested, Kind::riskAppMatched}));
    QCOMPARE(enforced.events.at(2).message, u"Asked it."_s);
    QCOMPARE(engine.performer->requests, QList{engine.inventory->apps.first()});
    // Newest first: the last event of the last check comes first.
    QCOMPARE(engine.log->recent(1).first(), enforced.events.last());
}

void PrivacyModeTest::selection_data() {
    QTest::addColumn<QSet<QString>>("selection");
    QTest::addColumn<QStringList>("matches");

    QTest::newRow("empty means everything") << QSet<QString>{} << QStringList{u"zoom-10"_s, u"facetime-11"_s};
    QTest::newRow("one") << QSet<QString>{u"facetime"_s} << QStringList{u"facetime-11"_s};
    QTest::newRow("unknown only") << QSet<QString>{u"skype"_s} << QStringList{};
    QTest::newRow("unknown and known") << QSet<QString>{u"skype"_s, u"zoom"_s} << QStringList{u"zoom-10"_s};
}

void PrivacyModeTest::selection() {
    QFETCH(QSet<QString>, selection);
    Engine engine;
    engine.settings->settings.protectedDefinitionIDs = selection;
    engine.inventory->apps = {samples::app(u"Zoom"_s, 10), samples::app(u"FaceTime"_s, 11)};
    QStringList ids;
    for (const RiskAppMatch &match : engine.check(true).matches)
        ids.append(match.id());
    QTEST(ids, "matches");
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

void PrivacyModeTest::onlyRequestedIsSuccess_data() {
    QTest::addColumn<int>("status");
    QTest::addColumn<int>("kind");
    using Status = RiskAppActionStatus;
    const auto row = [](const char *name, Status status, Kind kind) {
        QTest::newRow(name) << static_cast<int>(status) << static_cast<int>(kind);
    };
    row("requested", Status::requested, Kind::quitRequested);
    row("failed", Status::failed, Kind::actionFailed);
    row("unsupported", Status::unsupported, Kind::actionFailed);
    row("dryRun", Status::dryRun, Kind::actionFailed);
}

void PrivacyModeTest::onlyRequestedIsSuccess() {
    QFETCH(int, status);
    QFETCH(int, kind);
    Engine engine;
    engine.performer->result.status = static_cast<RiskAppActionStatus>(status);
    engine.inventory->apps = {samples::app(u"Zoom"_s, 10)};
    QCOMPARE(static_cast<int>(engine.check(false).events.last().kind), kind);
}

void PrivacyModeTest::emptyCategories() {
    Engine engine;
    engine.catalog = {{{u"x"_s, u"X"_s, {}, {}, {}, RiskAppAction::allow}}};
    engine.inventory->apps = {samples::app(u"x"_s)};
    QCOMPARE(engine.check(true).events.last().message, u"x matches X risk categories: ."_s);
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
    using Status = RiskAppActionStatus;
    // The snapshot's name counts, and its process id alone.
    QCOMPARE(performer.requestQuit(samples::app(u"Zoom"_s, 10)),
             (RiskAppActionResult{Status::requested, u"Asked Zoom to quit."_s}));
    QCOMPARE(performer.requestQuit(samples::app(u"Zoom"_s, 11)),
             (RiskAppActionResult{Status::failed, u"Could not ask Zoom to quit."_s}));
    QCOMPARE(performer.requestQuit(samples::app(u"Zoom"_s, 12)),
             (RiskAppActionResult{Status::failed, u"Zoom is no longer running."_s}));
    QCOMPARE(workspace.terminationRequests(), (QList<qint32>{10, 11}));
}

void PrivacyModeTest::relaunchReaction_data() {
    QTest::addColumn<bool>("enabled");
    QTest::addColumn<QSet<QString>>("selection");
    QTest::addColumn<bool>("dryRun");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QStringList>("messages");

    const QString zoomed = u"Zoom relaunched while Privacy Mode is on."_s;
    QTest::newRow("preview") << true << QSet<QString>{} << true << u"Zoom"_s
                             << QStringList{
                                    zoomed,
                                    u"Preview: Kestrin would keep Zoom closed while Privacy Mode is on."_s};
    QTest::newRow("enforcing") << true << QSet<QString>{u"zoom"_s} << false << u"Zoom"_s
                               << QStringList{zoomed, u"Asked it."_s};
    QTest::newRow("off") << false << QSet<QString>{} << false << u"Zoom"_s << QStringList{};
    QTest::newRow("allowed") << true << QSet<QString>{} << false << u"Safari"_s << QStringList{};
    QTest::newRow("not selected") << true << QSet<QString>{u"zoom"_s} << false << u"FaceTime"_s
                                  << QStringList{};
    QTest::newRow("unknown") << true << QSet<QString>{} << false << u"Editor"_s << QStringList{};
}

void PrivacyModeTest::relaunchReaction() {
    QFETCH(bool, enabled);
    QFETCH(QSet<QString>, selection);
    QFETCH(bool, dryRun);
    QFETCH(QString, name);
    QFETCH(QStringList, messages);
    Engine engine;
    engine.settings->settings = {enabled, selection};
    InMemoryWorkspace workspace;
    RiskAppRelaunchMonitor monitor(engine.catalog, engine.settings, engine.performer, engine.log, dryRun, {},
                                   workspace);
    const auto events = monitor.handleLaunchedApp(samples::app(name, 10));
    QCOMPARE(samples::messages(events), messages);
    QCOMPARE(engine.performer->requests.size(), !dryRun && !messages.isEmpty() ? 1 : 0);
    QCOMPARE(engine.log->recent(8).size(), messages.size());
    if (!events.isEmpty())
        QCOMPARE(kinds(events), (QList{Kind::relaunchDetected, dryRun ? Kind::dryRun : Kind::quitRequested}));
}

void PrivacyModeTest::relaunchHandlerRunsBetweenTheAppends() {
    Engine engine;
    engine.performer->result = {RiskAppActionStatus::failed, u"Refused."_s};
    InMemoryWorkspace workspace;
    QList<std::pair<Kind, qsizetype>> told;
    const auto handler = [&](const MacProtectionEvent &event) {
        told.append({event.kind, engine.log->recent(8).size()});
    };
    RiskAppRelaunchMonitor monitor(engine.catalog, engine.settings, engine.performer, engine.log, false,
                                   handler, workspace);
    monitor.handleLaunchedApp(samples::app(u"Zoom"_s));
    QCOMPARE(told, (QList<std::pair<Kind, qsizetype>>{{Kind::relaunchDetected, 1}, {Kind::actionFailed, 2}}));
}

void PrivacyModeTest::monitorLifecycle() {
    Engine engine;
    InMemoryWorkspace workspace;
    const auto logged = [&] { return engine.log->recent(100).size(); };
    {
        RiskAppRelaunchMonitor monitor(engine.catalog, engine.settings, engine.performer, engine.log, true,
                                       {}, workspace);
        workspace.launch(samples::running(u"Zoom"_s, 10));
        QCOMPARE(logged(), 0);
        monitor.start();
        monitor.start();
        QCOMPARE(workspace.subscriberCount(), 1);
        workspace.launch(samples::running(u"Zoom"_s, 11));
        QCOMPARE(logged(), 2);
        workspace.launch({ActivationPolicy::accessory, u"Zoom"_s, 12, std::nullopt, std::nullopt});
        QCOMPARE(logged(), 2);
        // Settings are read at every launch.
        engine.settings->settings.isEnabled = false;
        workspace.launch(samples::running(u"Zoom"_s, 13));
        QCOMPARE(logged(), 2);
        engine.settings->settings.isEnabled = true;
        monitor.stop();
        monitor.stop();
        workspace.launch(samples::running(u"Zoom"_s, 14));
        QCOMPARE(logged(), 2);
        monitor.start();
        QCOMPARE(workspace.subscriberCount(), 1);
    }
    QCOMPARE(workspace.subscriberCount(), 0);
}

QTEST_GUILESS_MAIN(PrivacyModeTest)
#include "tst_privacymode.moc"
