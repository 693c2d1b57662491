// Hearing of launches, whichever window system finds them.
#pragma once

#include "desktop/applications/ApplicationClaims.h"
#include "desktop/applications/LaunchLimit.h"
#include "engine/workspace/LaunchBroadcast.h"
#include "foundation/Deadline.h"

#include <QObject>
#include <QTimer>

#include <functional>
#include <memory>
#include <utility>

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
    virtual QList<LaunchedApplication> update(const foundation::Deadline &deadline) = 0;
    /// The last call of `update` got no answer.
    virtual bool isBehind() const = 0;
    /// Whether the application of this process ran at the last call of `update`.
    virtual bool knows(qint32 process) const = 0;
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
    void connected(const foundation::Deadline &deadline);
    /// It cannot any more. What was noticed before is told all the same.
    void disconnected();

    std::unique_ptr<engine::LaunchSubscription> subscribe(engine::Workspace::LaunchHandler handler,
                                                          const foundation::Deadline &deadline);

    /// Whoever is about to tell what runs calls this first, so that nothing is in his answer that would later
    /// be taken for what ran before, and told to nobody.
    void catchUp(const foundation::Deadline &deadline);

    /// Whether an application is known to run. Nobody is to whoever does not watch.
    bool knows(qint32 process) const { return m_finder && m_finder->knows(process); }
    /// From now on those of whom this is true were launched elsewhere.
    void leaveOut(std::function<bool(qint32 process)> isElsewhere) { m_isElsewhere = std::move(isElsewhere); }

  Q_SIGNALS:
    /// Somebody listens, and the desktop could not be asked for a while.
    void wanted();

  protected:
    virtual std::unique_ptr<LaunchFinder> startFinding(const foundation::Deadline &deadline) = 0;
    /// The finder goes next.
    virtual void stopFinding() {}
    /// Called from the event loop after `expectEvents`.
    virtual void takeEvents() { tellLaunches(); }

    /// Whoever derives from this calls it while its parts are still there.
    void stop();
    bool isWatching() const { return m_finder != nullptr; }
    void expectEvents();
    /// Notes what has come up. It is told afterwards, from the event loop.
    void findLaunches(const foundation::Deadline &deadline);
    void tellLaunches();

  private:
    void startWatching(const foundation::Deadline &deadline);
    void stopWatching();
    void stopWithoutSubscribers();
    void waitForDesktop();
    void findHeldBack();

    ApplicationRecords &m_records;
    std::function<bool(qint32)> m_isElsewhere;
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
