#pragma once

#include "engine/workspace/Workspace.h"

namespace kestrin::desktop {

/// The workspace of macOS, over AppKit's NSWorkspace and NSRunningApplication; it decides nothing. The list
/// of running applications is as fresh as the main run loop's last turn, and launches are heard only while
/// the main queue is served (prepareEventLoop). Main thread only.
class AppKitWorkspace final : public engine::Workspace {
  public:
    QList<engine::WorkspaceApplication> runningApplications() override;
    [[nodiscard]] engine::Termination terminate(qint32 processIdentifier) override;
    [[nodiscard]] std::unique_ptr<engine::LaunchSubscription>
    subscribeToLaunches(LaunchHandler handler) override;
};

} // namespace kestrin::desktop
