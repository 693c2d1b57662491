// A workspace that exists in memory only.
#pragma once

#include "engine/workspace/LaunchBroadcast.h"

#include <QSet>

namespace kestrin::engine {

/// Applications are added and removed by the owner. Launches are delivered synchronously, inside `launch`.
class InMemoryWorkspace : public Workspace {
  public:
    QList<WorkspaceApplication> runningApplications() override;
    [[nodiscard]] Termination terminate(qint32 processIdentifier) override;
    [[nodiscard]] std::unique_ptr<LaunchSubscription> subscribeToLaunches(LaunchHandler handler) override;

    /// Adds an application without telling anyone: it was running before.
    void add(const WorkspaceApplication &application);
    /// Adds an application and tells every subscriber.
    void launch(const WorkspaceApplication &application);
    void remove(qint32 processIdentifier);
    /// Requests to this process are refused.
    void refuse(qint32 processIdentifier);
    void setSight(const Sight &sight) { m_sight = sight; }
    Sight sight() override { return m_sight; }
    /// Every process that `terminate` was called for, in order.
    const QList<qint32> &terminationRequests() const { return m_terminationRequests; }
    int subscriberCount() const { return static_cast<int>(m_launches.size()); }

  private:
    QList<WorkspaceApplication> m_applications;
    QSet<qint32> m_refusing;
    QList<qint32> m_terminationRequests;
    LaunchBroadcast m_launches;
    Sight m_sight;
};

} // namespace kestrin::engine
