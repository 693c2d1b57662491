// Telling everybody who subscribed of uses that begin and end.
#pragma once

#include "engine/live/DeviceUses.h"

#include <vector>

namespace kestrin::engine {

/// Keeps the uses of now and the handlers of the subscribers. Main thread only.
class DeviceUseBroadcast {
  public:
    /// `ended` is called whenever a subscription has ended; the subscription may outlive this object.
    [[nodiscard]] std::unique_ptr<DeviceUseSubscription> subscribe(DeviceUseHandlers handlers,
                                                                   std::function<void()> ended = {});
    bool isEmpty() const { return m_subscribers->empty(); }

    const QList<DeviceUse> &uses() const { return m_uses; }
    /// Takes these for the uses of now and tells what has ended and then what began, in their order. A use
    /// of the same category and process goes on as it was. A handler may end subscriptions, its own included,
    /// and begin new ones, but not call this.
    void adopt(const QList<DeviceUse> &uses);
    void tellSightChanged();

  private:
    class Subscription;
    struct Subscriber {
        quint64 number;
        DeviceUseHandlers handlers;
    };
    using Subscribers = std::vector<Subscriber>;

    void tell(const std::function<void(const DeviceUseHandlers &)> &call);

    std::shared_ptr<Subscribers> m_subscribers = std::make_shared<Subscribers>();
    quint64 m_nextNumber = 0;
    QList<DeviceUse> m_uses;
};

} // namespace kestrin::engine
