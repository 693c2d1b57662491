#pragma once

#include "desktop/applications/DesktopPatience.h"
#include "engine/workspace/Workspace.h"
#include "foundation/Deadline.h"

#include <utility>

namespace kestrin::desktop {

/// A workspace each of whose calls has one deadline for everything that it leads to. Those who ask several
/// parts of a desktop hand theirs on.
class DesktopWorkspace : public engine::Workspace {
  public:
    QList<engine::WorkspaceApplication> runningApplications() final { return list(deadline()); }
    [[nodiscard]] engine::Termination terminate(qint32 processIdentifier) final {
        return quit(processIdentifier, deadline());
    }
    [[nodiscard]] std::unique_ptr<engine::LaunchSubscription>
    subscribeToLaunches(LaunchHandler handler) final {
        return listen(std::move(handler), deadline());
    }
    engine::Sight sight() final { return look(deadline()); }

    virtual QList<engine::WorkspaceApplication> list(const foundation::Deadline &deadline) = 0;
    [[nodiscard]] virtual engine::Termination quit(qint32 process, const foundation::Deadline &deadline) = 0;
    [[nodiscard]] virtual std::unique_ptr<engine::LaunchSubscription>
    listen(LaunchHandler handler, const foundation::Deadline &deadline) = 0;
    virtual engine::Sight look(const foundation::Deadline &deadline) = 0;

  private:
    static foundation::Deadline deadline() { return foundation::Deadline(desktopPatience); }
};

} // namespace kestrin::desktop
