// Hearing of launches, whichever window system finds them.
#pragma once

#include "desktop/applications/ApplicationClaims.h"
#include "desktop/applications/LaunchLimit.h"
#include "engine/workspace/LaunchBroadcast.h"

#include <QObject>
#include <QTimer>

#include <memory>

namespace kestrin::desktop {

class ApplicationRecords;

/// An application that has come up, by its process and by what the window that stands for it claims.
struct LaunchedApplication {
    qint32 process = 0;
    ApplicationClaims claims;
};

/// Compares what runs with what ran when it was last asked. What runs at construction is no launch.
class LaunchFinder {
  public:
    virtual ~LaunchFinder() = default;

    /// The launches since the last call. When the desktop does not answer in time, the next call finds what
    /// this one did not.
    virtual QList<LaunchedApplication> update() = 0;
    /// Should the application of this process still be there, the next call of `update` returns it.
    virtual void forget(qint32 process) = 0;
};

/// Tells those who listen of launches, for as long as there are any, and a desktop that can be asked. Main
/// thread only.
class Launches : public QObject {
    Q_OBJECT

  public:
    /// `records` outlives this object.
    explicit Launches(ApplicationRecords &records);
    ~Launches() override;

    /// The desktop can be asked again. Whoever listens hears of what is launched from now on.
    void connected();
    /// It cannot any more.
    void disconnected();

    std::unique_ptr<engine::LaunchSubscription> subscribe(engine::Workspace::LaunchHandler handler);

  Q_SIGNALS:
    /// Somebody listens, and the desktop could not be asked for a while.
    void wanted();

  protected:
    virtual std::unique_ptr<LaunchFinder> startFinding() = 0;
    /// The finder goes next.
    virtual void stopFinding() {}
    /// Called from the event loop after `expectEvents`.
    virtual void takeEvents() { tellLaunches(); }

    /// Whoever derives from this calls it while its parts are still there.
    void stop();
    bool isWatching() const { return m_finder != nullptr; }
    void expectEvents();
    /// Notes what has come up. It is told afterwards, from the event loop.
    void findLaunches();
    void tellLaunches();

  private:
    void startWatching();
    void stopWatching();
    void stopWithoutSubscribers();
    void waitForDesktop();
    void findHeldBack();

    ApplicationRecords &m_records;
    bool m_isConnected = false;
    std::unique_ptr<LaunchFinder> m_finder;
    QTimer m_wait;
    LaunchLimit m_limit;
    QTimer m_heldBack;
    engine::LaunchBroadcast m_subscribers;
    /// Noticed, and not told yet.
    QList<std::pair<engine::LaunchBroadcast::Launch, LaunchedApplication>> m_launches;
    bool m_expectsEvents = false;
};

} // namespace kestrin::desktop
