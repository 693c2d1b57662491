#pragma once

#include "engine/MacActivityLogStoring.h"
#include "engine/MacAppInventoryService.h"
#include "engine/PrivacyModeRunResult.h"
#include "engine/PrivacyModeSettings.h"
#include "engine/RiskAppActionPerforming.h"
#include "engine/RiskAppMatcher.h"
#include "foundation/Clock.h"

#include <memory>

namespace kestrin::engine {

/// One check, and whether all of its events are in the log now.
struct PrivacyModeCheck {
    PrivacyModeRunResult result;
    foundation::StoreResult recorded;
};

/// Performs one check of the running applications. Keeps nothing between checks; shares its services with
/// others.
class PrivacyModeController {
  public:
    PrivacyModeController(RiskAppMatcher matcher, std::shared_ptr<MacAppInventoryService> inventoryService,
                          std::shared_ptr<RiskAppActionPerforming> actionPerformer,
                          std::shared_ptr<MacActivityLogStoring> logStore,
                          foundation::Clock clock = foundation::systemTime);

    /// Finds the protected applications and asks each whose action is not `allow` to quit, or, on a dry run,
    /// records what it would do. All requests are made before anything of an enabled check is logged. With
    /// Privacy Mode off nothing is listed and one event says so. The result is complete whether or not the
    /// log could be written.
    PrivacyModeRunResult evaluateCurrentApps(const PrivacyModeSettings &settings, bool dryRun) {
        return check(settings, dryRun).result;
    }
    /// The same, for those who have to know whether it is recorded.
    PrivacyModeCheck check(const PrivacyModeSettings &settings, bool dryRun);
    /// The same for one application and nothing else. Says nothing where it is not to be asked.
    QList<MacProtectionEvent> checkOne(const RunningMacApp &app, const PrivacyModeSettings &settings,
                                       bool dryRun);

  private:
    foundation::StoreResult record(const QList<MacProtectionEvent> &events);
    void appendMatchEvents(const RiskAppMatch &match, bool dryRun, QList<MacProtectionEvent> &events);

    const RiskAppMatcher m_matcher;
    const std::shared_ptr<MacAppInventoryService> m_inventoryService;
    const std::shared_ptr<RiskAppActionPerforming> m_actionPerformer;
    const std::shared_ptr<MacActivityLogStoring> m_logStore;
    const foundation::Clock m_clock;
};

} // namespace kestrin::engine
