#pragma once

#include <QDateTime>
#include <QStringList>

#include <optional>

namespace kestrin::runtime {

/// What the enabled presets make of this day.
struct ScheduleOutlook {
    struct Switch {
        QDateTime time;
        bool on = false;
    };
    /// What they want now; absent when none has an opinion.
    std::optional<bool> wanted;
    /// The names of those that are active now.
    QStringList active;
    /// When they want something else, until midnight.
    QList<Switch> today;

    /// The same in sentences.
    QString text() const;
};

} // namespace kestrin::runtime
