#include "engine/workspace/InMemoryWorkspace.h"

#include <algorithm>
#include <utility>

namespace kestrin::engine {

QList<WorkspaceApplication> InMemoryWorkspace::runningApplications() {
    return m_applications;
}

Termination InMemoryWorkspace::terminate(qint32 processIdentifier) {
    m_terminationRequests.append(processIdentifier);
    const bool isRunning =
        std::any_of(m_applications.cbegin(), m_applications.cend(), [&](const auto &application) {
            return application.processIdentifier == processIdentifier;
        });
    if (!isRunning)
        return Termination::gone;
    return m_refusing.contains(processIdentifier) ? Termination::refused : Termination::delivered;
}

std::unique_ptr<LaunchSubscription> InMemoryWorkspace::subscribeToLaunches(LaunchHandler handler) {
    return m_launches.subscribe(std::move(handler));
}

void InMemoryWorkspace::add(const WorkspaceApplication &application) {
    m_applications.append(application);
}

void InMemoryWorkspace::launch(const WorkspaceApplication &application) {
    add(application);
    m_launches.tell(m_launches.notice(), application);
}

void InMemoryWorkspace::remove(qint32 processIdentifier) {
    m_applications.removeIf(
        [&](const auto &application) { return application.processIdentifier == processIdentifier; });
}

void InMemoryWorkspace::refuse(qint32 processIdentifier) {
    m_refusing.insert(processIdentifier);
}

} // namespace kestrin::engine
