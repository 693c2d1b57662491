#pragma once

#include "engine/MacProtectionEvent.h"

#include <QList>
#include <QStringList>

namespace kestrin::runtime {

/// Which events of the log somebody wants to see: those for which everything holds that is asked. What is not
/// asked holds for each.
struct LogQuery {
    /// The first and the last second.
    std::optional<QDateTime> since;
    std::optional<QDateTime> until;
    /// One of these.
    QList<engine::MacProtectionEventKind> kinds;
    /// Parts of the application's name or identifier, of which one is there, in whichever case.
    QStringList apps;
    /// A part of the message, of the application's name or of its identifier, in whichever case.
    QString text;

    bool operator==(const LogQuery &) const = default;

    bool accepts(const engine::MacProtectionEvent &event) const;
    /// The first that are accepted, at most `limit` of them, in their order.
    QList<engine::MacProtectionEvent> firstOf(const QList<engine::MacProtectionEvent> &events,
                                              qsizetype limit) const;
};

} // namespace kestrin::runtime
