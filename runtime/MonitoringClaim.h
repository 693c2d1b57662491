#pragma once

#include "foundation/FileLock.h"

namespace kestrin::runtime {

/// The right to watch launches and schedules over one support folder. Only one process has it, so that no
/// application is asked to quit twice. It ends with the object, or with the process, however that ends.
struct MonitoringClaim {
    /// Present while the claim is ours.
    std::optional<foundation::FileLock> lock;
    /// Who has the claim instead ("kestrinctl watch, process 4123"); absent when nobody does, or when the
    /// folder cannot be written, in which case nobody can claim anything.
    std::optional<QString> holder;

    static MonitoringClaim make(const QString &supportFolder, const QString &program);
    /// Who monitors now, if anybody; our own claim counts too.
    static std::optional<QString> currentHolder(const QString &supportFolder);
};

} // namespace kestrin::runtime
