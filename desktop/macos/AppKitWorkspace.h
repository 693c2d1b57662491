#pragma once

#include "engine/workspace/Workspace.h"

namespace kestrin {

/// The workspace of macOS, over AppKit's NSWorkspace and NSRunningApplication; it decides nothing. The list
/// of running applications is as fresh as the main run loop's last turn, and launches are heard only while
/// the main queue is served (prepareEventLoop). Main thread only.
class AppKitWorkspace final : public Workspace {
  public:
    QList<WorkspaceApplication> runningApplications() override;
    [[nodiscard]] Termination terminate(qint32 processIdentifier) override;
    [[nodiscard]] std::unique_ptr<LaunchSubscription> subscribeToLaunches(LaunchHandler handler) override;
};

} // namespace kestrin
