#pragma once

#include "engine/MacAppInventoryService.h"
#include "engine/workspace/Workspace.h"

namespace kestrin::engine {

/// Lists the regular, named applications of a workspace; nothing else is filtered and nothing is sorted.
/// Stateless.
class NSWorkspaceAppInventoryService final : public MacAppInventoryService {
  public:
    /// The workspace outlives the service.
    explicit NSWorkspaceAppInventoryService(Workspace &workspace) : m_workspace(workspace) {}

    QList<RunningMacApp> runningApps() override;

  private:
    Workspace &m_workspace;
};

} // namespace kestrin::engine
