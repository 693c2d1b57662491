#include "engine/workspace/InMemoryWorkspace.h"

#include <algorithm>

namespace kestrin {

class InMemoryWorkspace::Subscription final : public LaunchSubscription {
  public:
    Subscription(const std::shared_ptr<Handlers> &handlers, quint64 number)
        : m_handlers(handlers)
        , m_number(number) {}
    ~Subscription() override {
        if (const auto handlers = m_handlers.lock())
            handlers->removeIf([this](const auto &handler) { return handler.first == m_number; });
    }

  private:
    std::weak_ptr<Handlers> m_handlers;
    quint64 m_number;
};

QList<WorkspaceApplication> InMemoryWorkspace::runningApplications() {
    return m_applications;
}

bool InMemoryWorkspace::terminate(qint32 processIdentifier) {
    m_terminationRequests.append(processIdentifier);
    const bool running =
        std::any_of(m_applications.cbegin(), m_applications.cend(), [&](const auto &application) {
            return application.processIdentifier == processIdentifier;
        });
    return running && !m_refusing.contains(processIdentifier);
}

std::unique_ptr<LaunchSubscription> InMemoryWorkspace::subscribeToLaunches(LaunchHandler handler) {
    const quint64 number = m_nextHandler++;
    m_handlers->append({number, std::move(handler)});
    return std::make_unique<Subscription>(m_handlers, number);
}

void InMemoryWorkspace::add(const WorkspaceApplication &application) {
    m_applications.append(application);
}

void InMemoryWorkspace::launch(const WorkspaceApplication &application) {
    add(application);
    // A handler may unsubscribe itself or another one, so each is looked up again before its turn.
    const Handlers handlers = *m_handlers;
    for (const auto &[number, handler] : handlers) {
        const bool subscribed =
            std::any_of(m_handlers->cbegin(), m_handlers->cend(),
                        [number = number](const auto &other) { return other.first == number; });
        if (subscribed)
            handler(application);
    }
}

void InMemoryWorkspace::remove(qint32 processIdentifier) {
    m_applications.removeIf(
        [&](const auto &application) { return application.processIdentifier == processIdentifier; });
}

void InMemoryWorkspace::refuse(qint32 processIdentifier) {
    m_refusing.insert(processIdentifier);
}

} // namespace kestrin
