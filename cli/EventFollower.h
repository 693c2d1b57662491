#pragma once

#include "engine/MacActivityLogStoring.h"

namespace kestrin::cli {

/// Tells what was added to a log since one last looked, whoever added it: every event once, however many came
/// at a time. An event is recognised by its id.
class EventFollower {
  public:
    /// What the log holds now is not news. The log outlives the follower.
    explicit EventFollower(engine::MacActivityLogStoring &log);
    /// Neither are the events, the newest of the log, that somebody has read from it.
    EventFollower(engine::MacActivityLogStoring &log, const QList<engine::MacProtectionEvent> &newest);

    /// The new events, oldest first, for who has read the `newest` few of the log already, newest first. More
    /// is read only where those cannot be all.
    QList<engine::MacProtectionEvent> takeNew(QList<engine::MacProtectionEvent> newest);

  private:
    /// The position of the newest event that is no news, or the size of the list.
    qsizetype firstKnown(const QList<engine::MacProtectionEvent> &newestFirst) const;

    engine::MacActivityLogStoring &m_log;
    /// The newest events that are no news, newest first. Several, so that losing the newest (somebody edits
    /// the file) does not make all others news.
    QList<QUuid> m_known;
};

} // namespace kestrin::cli
