#include "engine/MacActivityLogStoring.h"

namespace kestrin::engine {

foundation::StoreResult InMemoryMacActivityLogStore::tryAppend(const MacProtectionEvent &event) {
    m_events.prepend(event);
    return {};
}

QList<MacProtectionEvent> InMemoryMacActivityLogStore::recent(qsizetype limit) {
    if (limit < 0)
        qFatal("The limit of an activity log query must not be negative.");
    return m_events.first(std::min(limit, m_events.size()));
}

} // namespace kestrin::engine
