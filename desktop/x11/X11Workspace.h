// The workspace of an X11 desktop whose window manager keeps the Extended Window Manager Hints (EWMH).
#pragma once

#include "engine/workspace/Workspace.h"

namespace kestrin::desktop {

/// An application is a process with at least one window that a task bar would show. The first call opens the
/// display. When there is no X server the next call tries again,
/// and for whoever has subscribed it is tried once a minute; what runs then is no launch. A server that does
/// not answer costs each call two seconds. Main thread only.
class X11Workspace final : public engine::Workspace {
  public:
    /// `display` names the X display, "" the one in the environment (DISPLAY).
    explicit X11Workspace(const QString &display = {});
    ~X11Workspace() override;

    QList<engine::WorkspaceApplication> runningApplications() override;
    [[nodiscard]] engine::Termination terminate(qint32 processIdentifier) override;
    [[nodiscard]] std::unique_ptr<engine::LaunchSubscription>
    subscribeToLaunches(LaunchHandler handler) override;
    QString limitation() override;

  private:
    class Private;
    std::unique_ptr<Private> d;
};

} // namespace kestrin::desktop
