// Telling everybody who subscribed of a launch.
#pragma once

#include "engine/workspace/Workspace.h"

namespace kestrin::engine {

/// Keeps the handlers of a workspace's subscribers. A launch that was noticed before somebody subscribed is
/// the business of those who came before him, also when it is told to them only afterwards. Where nobody is
/// left of them it is told to him, so that none is lost when one subscriber takes another's place. Main
/// thread only.
class LaunchBroadcast {
  public:
    /// Numbers the launches in the order in which they were noticed.
    using Launch = quint64;

    /// `ended` is called whenever a subscription has ended; the subscription may outlive this object.
    [[nodiscard]] std::unique_ptr<LaunchSubscription> subscribe(Workspace::LaunchHandler handler,
                                                                std::function<void()> ended = {});
    bool isEmpty() const { return m_handlers->isEmpty(); }
    qsizetype size() const { return m_handlers->size(); }

    /// The number of a launch that is noticed now.
    Launch notice() { return m_nextLaunch++; }
    /// Tells of a launch that was noticed. A handler may end subscriptions, its own included, and begin new
    /// ones.
    void tell(Launch launch, const WorkspaceApplication &application);

  private:
    class Subscription;
    struct Handler {
        quint64 number;
        /// The first launch that is this handler's business.
        Launch firstLaunch;
        Workspace::LaunchHandler call;
    };
    using Handlers = QList<Handler>;

    std::shared_ptr<Handlers> m_handlers = std::make_shared<Handlers>();
    quint64 m_nextHandler = 0;
    Launch m_nextLaunch = 0;
    Launch m_firstUntold = 0;
};

} // namespace kestrin::engine
