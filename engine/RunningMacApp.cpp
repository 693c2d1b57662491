#include "engine/RunningMacApp.h"

#include "engine/workspace/Workspace.h"

namespace kestrin::engine {

QString RunningMacApp::id() const {
    return bundleIdentifier.value_or(localizedName) + u'-' + QString::number(processIdentifier);
}

std::optional<RunningMacApp> RunningMacApp::from(const WorkspaceApplication &application) {
    if (application.activationPolicy != ActivationPolicy::regular || !application.localizedName ||
        application.localizedName->isEmpty())
        return std::nullopt;
    return RunningMacApp{application.processIdentifier, *application.localizedName,
                         application.bundleIdentifier, application.executablePath};
}

} // namespace kestrin::engine
