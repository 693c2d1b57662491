#include "engine/NSWorkspaceAppInventoryService.h"

namespace kestrin::engine {

QList<RunningMacApp> NSWorkspaceAppInventoryService::runningApps() {
    QList<RunningMacApp> apps;
    const QList<WorkspaceApplication> applications = m_workspace.runningApplications();
    for (const WorkspaceApplication &application : applications) {
        if (auto app = RunningMacApp::from(application))
            apps.append(*std::move(app));
    }
    return apps;
}

} // namespace kestrin::engine
