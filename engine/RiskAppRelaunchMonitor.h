#pragma once

#include "engine/MacActivityLogStoring.h"
#include "engine/PrivacyModeSettingsStoring.h"
#include "engine/RiskAppActionPerforming.h"
#include "engine/RiskAppCatalog.h"
#include "engine/workspace/Workspace.h"
#include "foundation/Clock.h"

#include <functional>
#include <memory>

namespace kestrin::engine {

/// Reacts to every launch of a protected application while Privacy Mode is on: it records the launch and asks
/// the application to quit, or records what it would do. Whether Privacy Mode is on and what is protected is
/// read from the settings at every launch; whether it only previews is fixed for its life. Main thread only.
class RiskAppRelaunchMonitor {
  public:
    using EventHandler = std::function<void(const MacProtectionEvent &)>;

    /// Does not start it. `eventHandler` may be empty. The workspace outlives the monitor.
    RiskAppRelaunchMonitor(const RiskAppCatalog &catalog,
                           std::shared_ptr<PrivacyModeSettingsStoring> settingsStore,
                           std::shared_ptr<RiskAppActionPerforming> actionPerformer,
                           std::shared_ptr<MacActivityLogStoring> logStore, bool dryRun,
                           EventHandler eventHandler, Workspace &workspace,
                           foundation::Clock clock = foundation::systemTime);
    RiskAppRelaunchMonitor(const RiskAppRelaunchMonitor &) = delete;
    RiskAppRelaunchMonitor &operator=(const RiskAppRelaunchMonitor &) = delete;
    /// Stops it.
    ~RiskAppRelaunchMonitor();

    /// Begins watching; does nothing while it is watching.
    void start();
    /// Stops watching, at once; does nothing while it is stopped.
    void stop();
    /// Another catalog holds from the next launch on. No launch is missed by that.
    void setCatalog(const RiskAppCatalog &catalog) { m_catalog = catalog; }

    /// Reacts to one launch and returns the events that it recorded: none, or two. The handler is told of
    /// each right after it was logged, so of the first one before the second is logged.
    QList<MacProtectionEvent> handleLaunchedApp(const RunningMacApp &app);

  private:
    MacProtectionEvent act(const RunningMacApp &app);

    RiskAppCatalog m_catalog;
    const std::shared_ptr<PrivacyModeSettingsStoring> m_settingsStore;
    const std::shared_ptr<RiskAppActionPerforming> m_actionPerformer;
    const std::shared_ptr<MacActivityLogStoring> m_logStore;
    const bool m_dryRun;
    const EventHandler m_eventHandler;
    Workspace &m_workspace;
    const foundation::Clock m_clock;
    std::unique_ptr<LaunchSubscription> m_observer;
};

} // namespace kestrin::engine
