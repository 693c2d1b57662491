#pragma once

#include "foundation/StoreResult.h"

#include <QStringList>

#include <optional>

namespace kestrin::runtime {

/// What became of the changes that an operation made. The operation does not fail by it: whatever follows
/// from a change that could not be kept has followed all the same.
struct Outcome {
    foundation::StoreResult catalog;
    foundation::StoreResult settings;
    foundation::StoreResult defaults;
    foundation::StoreResult log;
    /// The identifiers, of those that were given, whose choice was another one or none that could be read.
    QStringList changed;
    /// What the schedules have made of Privacy Mode, if they have switched it.
    std::optional<bool> switchedBySchedules;

    bool isKept() const { return catalog.isKept() && settings.isKept() && defaults.isKept() && log.isKept(); }

    /// Of several operations.
    Outcome &operator&=(const Outcome &other) {
        catalog &= other.catalog;
        settings &= other.settings;
        defaults &= other.defaults;
        log &= other.log;
        changed += other.changed;
        if (other.switchedBySchedules)
            switchedBySchedules = other.switchedBySchedules;
        return *this;
    }
};

} // namespace kestrin::runtime
