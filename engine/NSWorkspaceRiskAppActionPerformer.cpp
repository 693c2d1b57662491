#include "engine/NSWorkspaceRiskAppActionPerformer.h"

using namespace Qt::StringLiterals;

namespace kestrin::engine {

RiskAppActionResult NSWorkspaceRiskAppActionPerformer::requestQuit(const RunningMacApp &app) {
    switch (m_workspace.terminate(app.processIdentifier)) {
    case Termination::delivered:
        return {RiskAppActionStatus::requested, u"Asked "_s + app.localizedName + u" to quit."_s};
    case Termination::refused:
        return {RiskAppActionStatus::failed, u"Could not ask "_s + app.localizedName + u" to quit."_s};
    case Termination::gone:
        break;
    }
    return {RiskAppActionStatus::failed, app.localizedName + u" is no longer running."_s};
}

} // namespace kestrin::engine
