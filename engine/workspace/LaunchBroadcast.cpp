#include "engine/workspace/LaunchBroadcast.h"

#include <algorithm>
#include <utility>

namespace kestrin::engine {

class LaunchBroadcast::Subscription final : public LaunchSubscription {
  public:
    Subscription(const std::shared_ptr<Handlers> &handlers, quint64 number, std::function<void()> ended)
        : m_handlers(handlers)
        , m_number(number)
        , m_ended(std::move(ended)) {}
    ~Subscription() override {
        const auto handlers = m_handlers.lock();
        if (!handlers)
            return;
        handlers->removeIf([this](const Handler &handler) { return handler.number == m_number; });
        if (m_ended)
            m_ended();
    }

  private:
    std::weak_ptr<Handlers> m_handlers;
    quint64 m_number;
    std::function<void()> m_ended;
};

std::unique_ptr<LaunchSubscription> LaunchBroadcast::subscribe(Workspace::LaunchHandler handler,
                                                               std::function<void()> ended) {
    const quint64 number = m_nextHandler++;
    m_handlers->append({number, isEmpty() ? m_firstUntold : m_nextLaunch, std::move(handler)});
    return std::make_unique<Subscription>(m_handlers, number, std::move(ended));
}

void LaunchBroadcast::tell(Launch launch, const WorkspaceApplication &application) {
    m_firstUntold = launch + 1;
    const std::shared_ptr<Handlers> current = m_handlers;
    // A copy, for a handler may subscribe others.
    for (const Handler &handler : Handlers(*current)) {
        const bool isSubscribed =
            std::any_of(current->cbegin(), current->cend(),
                        [&handler](const Handler &other) { return other.number == handler.number; });
        if (isSubscribed && handler.firstLaunch <= launch)
            handler.call(application);
    }
}

} // namespace kestrin::engine
