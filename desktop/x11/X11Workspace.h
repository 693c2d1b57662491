// The workspace of an X11 desktop whose window manager keeps the Extended Window Manager Hints (EWMH).
#pragma once

#include "desktop/applications/ApplicationRecords.h"
#include "desktop/applications/DesktopWorkspace.h"
#include "desktop/quitting/QuitPatience.h"

namespace kestrin::desktop {

class X11Connection;
class X11Connector;
class X11Launches;

/// An application is a process with at least one window that a task bar would show. The first call opens the
/// display. When there is no X server the next call tries again, and for whoever has subscribed it is tried
/// once a minute; what runs then is no launch. A server that does not answer costs one call two seconds;
/// those after it find nothing, at once, until it has answered. Main thread only.
class X11Workspace final : public DesktopWorkspace {
  public:
    /// `display` names the X display, "" the one in the environment (DISPLAY).
    explicit X11Workspace(const QString &display = {});
    ~X11Workspace() override;

    QList<engine::WorkspaceApplication> list(const foundation::Deadline &deadline) override;
    [[nodiscard]] engine::Termination quit(qint32 process, const foundation::Deadline &deadline) override;
    [[nodiscard]] std::unique_ptr<engine::LaunchSubscription>
    listen(LaunchHandler handler, const foundation::Deadline &deadline) override;
    engine::Sight look(const foundation::Deadline &deadline) override;

    /// For whoever hears of the same applications elsewhere too.
    X11Launches &launches();

  private:
    /// Null when there is none to be had by the deadline.
    X11Connection *connection(const foundation::Deadline &deadline);
    void drop();
    /// Why nothing can be seen, as a sentence; empty when it can.
    QString obstacle(const foundation::Deadline &deadline);

    const QString m_display;
    ApplicationRecords m_records;
    QuitPatience m_patience;
    std::unique_ptr<X11Connector> m_connector;
    std::unique_ptr<X11Connection> m_connection;
    // It uses the connection, so it goes first.
    std::unique_ptr<X11Launches> m_launches;
};

} // namespace kestrin::desktop
