#include "engine/live/DeviceUseBroadcast.h"

#include <algorithm>
#include <utility>

namespace kestrin::engine {

namespace {

qsizetype placeOf(const DeviceUse &use, const QList<DeviceUse> &uses) {
    const auto found = std::find_if(uses.cbegin(), uses.cend(), [&](const DeviceUse &other) {
        return other.category == use.category && other.processIdentifier == use.processIdentifier;
    });
    return found == uses.cend() ? -1 : found - uses.cbegin();
}

} // namespace

class DeviceUseBroadcast::Subscription final : public DeviceUseSubscription {
  public:
    Subscription(const std::shared_ptr<Subscribers> &subscribers, quint64 number, std::function<void()> ended)
        : m_subscribers(subscribers)
        , m_number(number)
        , m_ended(std::move(ended)) {}
    ~Subscription() override {
        const auto subscribers = m_subscribers.lock();
        if (!subscribers)
            return;
        std::erase_if(*subscribers,
                      [this](const Subscriber &subscriber) { return subscriber.number == m_number; });
        if (m_ended)
            m_ended();
    }

  private:
    std::weak_ptr<Subscribers> m_subscribers;
    quint64 m_number;
    std::function<void()> m_ended;
};

std::unique_ptr<DeviceUseSubscription> DeviceUseBroadcast::subscribe(DeviceUseHandlers handlers,
                                                                     std::function<void()> ended) {
    const quint64 number = m_nextNumber++;
    m_subscribers->push_back({number, std::move(handlers)});
    return std::make_unique<Subscription>(m_subscribers, number, std::move(ended));
}

void DeviceUseBroadcast::adopt(const QList<DeviceUse> &uses) {
    QList<DeviceUse> going;
    QList<DeviceUse> ended;
    for (const DeviceUse &use : std::as_const(m_uses))
        (placeOf(use, uses) < 0 ? ended : going).append(use);
    QList<DeviceUse> began;
    for (const DeviceUse &use : uses) {
        if (placeOf(use, going) < 0 && placeOf(use, began) < 0)
            began.append(use);
    }
    m_uses = going + began;
    for (const DeviceUse &use : std::as_const(ended))
        tell([&use](const DeviceUseHandlers &handlers) {
            if (handlers.ended)
                handlers.ended(use);
        });
    for (const DeviceUse &use : std::as_const(began))
        tell([&use](const DeviceUseHandlers &handlers) {
            if (handlers.began)
                handlers.began(use);
        });
}

void DeviceUseBroadcast::tellSightChanged() {
    tell([](const DeviceUseHandlers &handlers) {
        if (handlers.sightChanged)
            handlers.sightChanged();
    });
}

void DeviceUseBroadcast::tell(const std::function<void(const DeviceUseHandlers &)> &call) {
    const std::shared_ptr<Subscribers> current = m_subscribers;
    // A copy, for a handler may subscribe others.
    for (const Subscriber &subscriber : Subscribers(*current)) {
        const bool isSubscribed =
            std::any_of(current->cbegin(), current->cend(),
                        [&](const Subscriber &other) { return other.number == subscriber.number; });
        if (isSubscribed)
            call(subscriber.handlers);
    }
}

} // namespace kestrin::engine
