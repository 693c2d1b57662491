#pragma once

#include "desktop/applications/LaunchLimit.h"
#include "desktop/x11/DesktopReading.h"
#include "engine/workspace/LaunchBroadcast.h"

#include <QObject>
#include <QTimer>

#include <memory>

class QSocketNotifier;

namespace kestrin::desktop {

class ApplicationRecords;
class LaunchWatcher;

/// Tells those who listen of launches, for as long as there are any, and a server. Main thread only.
class X11Launches : public QObject {
    Q_OBJECT

  public:
    /// `records` outlives this object.
    explicit X11Launches(ApplicationRecords &records);
    ~X11Launches() override;

    /// There is a server again. Whoever listens hears of what is launched from now on. The connection lasts
    /// until `disconnected`.
    void connected(X11Connection &connection);
    void disconnected();
    /// Somebody is about to talk to the server, which may bring events along that no socket tells of any
    /// more.
    void expectEvents();

    std::unique_ptr<engine::LaunchSubscription> subscribe(engine::Workspace::LaunchHandler handler);

  Q_SIGNALS:
    /// The server has gone. The receiver calls `disconnected`.
    void serverLost();
    /// Somebody listens, and there has been no server for a while.
    void serverWanted();

  private:
    void startWatching();
    void stopWatching();
    void stopWithoutSubscribers();
    void waitForServer();
    void takeEvents(bool serverSpoke);
    void findLaunches();
    void findHeldBack();

    ApplicationRecords &m_records;
    X11Connection *m_connection = nullptr;
    std::unique_ptr<LaunchWatcher> m_watcher;
    std::unique_ptr<QSocketNotifier> m_notifier;
    QTimer m_wait;
    LaunchLimit m_limit;
    QTimer m_heldBack;
    engine::LaunchBroadcast m_subscribers;
    /// Noticed, and not told yet.
    QList<std::pair<engine::LaunchBroadcast::Launch, DesktopApplication>> m_launches;
    bool m_expectsEvents = false;
};

} // namespace kestrin::desktop
