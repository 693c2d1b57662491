#include "engine/workspace/x11/X11Workspace.h"

namespace kestrin {

class X11Workspace::Private {};

X11Workspace::X11Workspace(const QString &) {}
X11Workspace::~X11Workspace() = default;
QList<WorkspaceApplication> X11Workspace::runningApplications() {
    return {};
}
bool X11Workspace::terminate(qint32) {
    return false;
}
std::unique_ptr<LaunchSubscription> X11Workspace::subscribeToLaunches(LaunchHandler) {
    return std::make_unique<LaunchSubscription>();
}
QString X11Workspace::limitation() {
    return {};
}

} // namespace kestrin
