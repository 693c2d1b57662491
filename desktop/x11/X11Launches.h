#pragma once

#include "desktop/applications/Launches.h"

#include <memory>

class QSocketNotifier;

namespace kestrin::desktop {

class LaunchWatcher;
class X11Connection;

/// The launches on an X server. Main thread only.
class X11Launches final : public Launches {
    Q_OBJECT

  public:
    explicit X11Launches(ApplicationRecords &records);
    ~X11Launches() override;

    /// There is a server again. The connection lasts until `disconnected`.
    void connected(X11Connection &connection, const foundation::Deadline &deadline);
    /// Somebody is about to talk to the server, which may bring events along that no socket tells of any
    /// more.
    void serverIsAsked(const foundation::Deadline &deadline) {
        catchUp(deadline);
        expectEvents();
    }

  Q_SIGNALS:
    /// The server has gone. The receiver calls `disconnected`.
    void serverLost();

  private:
    std::unique_ptr<LaunchFinder> startFinding(const foundation::Deadline &deadline) override;
    void stopFinding() override;
    void takeEvents() override;

    X11Connection *m_connection = nullptr;
    LaunchWatcher *m_watcher = nullptr;
    /// A child: where no event loop is left to delete it later, it goes with this.
    QSocketNotifier *m_notifier = nullptr;
};

} // namespace kestrin::desktop
