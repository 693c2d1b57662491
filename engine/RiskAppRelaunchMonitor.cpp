#include "engine/RiskAppRelaunchMonitor.h"

using namespace Qt::StringLiterals;

namespace kestrin::engine {

using namespace foundation;

RiskAppRelaunchMonitor::RiskAppRelaunchMonitor(const RiskAppCatalog &catalog,
                                               std::shared_ptr<PrivacyModeSettingsStoring> settingsStore,
                                               std::shared_ptr<RiskAppActionPerforming> actionPerformer,
                                               std::shared_ptr<MacActivityLogStoring> logStore, bool dryRun,
                                               EventHandler eventHandler, Workspace &workspace, Clock clock)
    : m_catalog(catalog)
    , m_settingsStore(std::move(settingsStore))
    , m_actionPerformer(std::move(actionPerformer))
    , m_logStore(std::move(logStore))
    , m_dryRun(dryRun)
    , m_eventHandler(std::move(eventHandler))
    , m_workspace(workspace)
    , m_clock(std::move(clock)) {}

RiskAppRelaunchMonitor::~RiskAppRelaunchMonitor() = default;

void RiskAppRelaunchMonitor::start() {
    if (m_observer)
        return;
    // The subscription is a member, so the callback never outlives the monitor.
    m_observer = m_workspace.subscribeToLaunches([this](const WorkspaceApplication &application) {
        if (const auto app = RunningMacApp::from(application))
            handleLaunchedApp(*app);
    });
}

void RiskAppRelaunchMonitor::stop() {
    m_observer.reset();
}

QList<MacProtectionEvent> RiskAppRelaunchMonitor::handleLaunchedApp(const RunningMacApp &app) {
    const PrivacyModeSettings settings = m_settingsStore->load();
    if (!settings.isEnabled)
        return {};
    const std::optional<RiskAppDefinition> definition = m_catalog.definition(app);
    if (!definition || !settings.asksToQuit(*definition))
        return {};

    const auto detected =
        MacProtectionEvent::create(m_clock(), MacProtectionEventKind::relaunchDetected,
                                   app.localizedName + u" relaunched while Privacy Mode is on."_s,
                                   app.localizedName, app.bundleIdentifier);
    const QList<MacProtectionEvent> events{detected, act(app)};
    for (const MacProtectionEvent &event : events) {
        m_logStore->append(event);
        if (m_eventHandler)
            m_eventHandler(event);
    }
    return events;
}

MacProtectionEvent RiskAppRelaunchMonitor::act(const RunningMacApp &app) {
    auto kind = MacProtectionEventKind::dryRun;
    QString message =
        u"Preview: Kestrin would keep "_s + app.localizedName + u" closed while Privacy Mode is on."_s;
    if (!m_dryRun) {
        const RiskAppActionResult result = m_actionPerformer->requestQuit(app);
        kind = result.status == RiskAppActionStatus::requested ? MacProtectionEventKind::quitRequested
                                                               : MacProtectionEventKind::actionFailed;
        message = result.message;
    }
    return MacProtectionEvent::create(m_clock(), kind, message, app.localizedName, app.bundleIdentifier);
}

} // namespace kestrin::engine
