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

bool InMemoryMacActivityLogStore::readAll(const LogReading &reading) {
    reading.begin();
    for (const MacProtectionEvent &event : std::as_const(m_events))
        reading.take(event);
    return true;
}

} // namespace kestrin::engine
