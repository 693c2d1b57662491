#pragma once

#include "engine/RiskAppActionPerforming.h"
#include "engine/workspace/Workspace.h"

namespace kestrin::engine {

/// Asks the application that has the snapshot's process id now. `requested` means delivered, not that it
/// quits.
class NSWorkspaceRiskAppActionPerformer final : public RiskAppActionPerforming {
  public:
    /// The workspace outlives the performer.
    explicit NSWorkspaceRiskAppActionPerformer(Workspace &workspace) : m_workspace(workspace) {}

    RiskAppActionResult requestQuit(const RunningMacApp &app) override;

  private:
    Workspace &m_workspace;
};

} // namespace kestrin::engine
