#include "cli/EventFollower.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace kestrin::cli {

using namespace engine;

namespace {

constexpr qsizetype memory = 64;

} // namespace

EventFollower::EventFollower(MacActivityLogStoring &log) : EventFollower(log, log.recent(memory)) {}

EventFollower::EventFollower(MacActivityLogStoring &log, const QList<MacProtectionEvent> &newest)
    : m_log(log) {
    for (const MacProtectionEvent &event : newest.first(std::min(memory, newest.size())))
        m_known.append(event.id);
}

QList<MacProtectionEvent> EventFollower::takeNew(QList<MacProtectionEvent> newest) {
    if (firstKnown(newest) == newest.size() && !newest.isEmpty())
        newest = m_log.recent(std::numeric_limits<qsizetype>::max());
    newest.resize(firstKnown(newest));

    QList<QUuid> known;
    for (const MacProtectionEvent &event : std::as_const(newest))
        known.append(event.id);
    m_known = (known + m_known).first(std::min(memory, known.size() + m_known.size()));
    std::reverse(newest.begin(), newest.end());
    return newest;
}

qsizetype EventFollower::firstKnown(const QList<MacProtectionEvent> &newestFirst) const {
    const auto found =
        std::find_if(newestFirst.cbegin(), newestFirst.cend(),
                     [&](const MacProtectionEvent &event) { return m_known.contains(event.id); });
    return found - newestFirst.cbegin();
}

} // namespace kestrin::cli
