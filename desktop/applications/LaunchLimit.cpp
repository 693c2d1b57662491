#include "desktop/applications/LaunchLimit.h"

#include <algorithm>

namespace kestrin::desktop {

bool LaunchLimit::admits(qint32 process, quint64 start, Time now) {
    m_launched.removeIf([now](const auto &entry) {
        return !entry.value().isHeldBack && now - entry.value().last >= interval;
    });
    const auto known = m_launched.find(process);
    if (known == m_launched.end() || known->start != start || now - known->last >= interval) {
        m_launched.insert(process, {start, now});
        return true;
    }
    known->isHeldBack = true;
    return false;
}

std::optional<LaunchLimit::Time> LaunchLimit::nextDue() const {
    std::optional<Time> next;
    for (const Launched &launched : m_launched) {
        const Time due = launched.last + interval;
        if (launched.isHeldBack && (!next || due < *next))
            next = due;
    }
    return next;
}

QList<qint32> LaunchLimit::takeDue(Time now) {
    QList<qint32> due;
    for (auto [process, launched] : m_launched.asKeyValueRange()) {
        if (launched.isHeldBack && now - launched.last >= interval) {
            launched.isHeldBack = false;
            due.append(process);
        }
    }
    return due;
}

} // namespace kestrin::desktop
