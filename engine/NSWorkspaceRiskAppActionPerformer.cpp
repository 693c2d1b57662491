#include "engine/NSWorkspaceRiskAppActionPerformer.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace kestrin {

RiskAppActionResult NSWorkspaceRiskAppActionPerformer::requestQuit(const RunningMacApp &app) {
    const QList<WorkspaceApplication> running = m_workspace.runningApplications();
    const bool found = std::any_of(running.cbegin(), running.cend(), [&](const auto &application) {
        return application.processIdentifier == app.processIdentifier;
    });
    if (!found)
        return {RiskAppActionStatus::failed, app.localizedName + u" is no longer running."_s};
    if (!m_workspace.terminate(app.processIdentifier))
        return {RiskAppActionStatus::failed, u"Could not ask "_s + app.localizedName + u" to quit."_s};
    return {RiskAppActionStatus::requested, u"Asked "_s + app.localizedName + u" to quit."_s};
}

} // namespace kestrin
