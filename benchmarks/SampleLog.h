// Activity logs of any length.
#pragma once

#include "engine/MacProtectionEvent.h"

#include <functional>

namespace kestrin::bench {

/// One of those that an enforcing monitor writes, with as much text as they have.
engine::MacProtectionEvent sampleEvent(int number);

/// One of a life of years, as many as there are seconds in an hour a day. Each has a text of its own, which
/// is more than a log has in truth.
engine::MacProtectionEvent eventOfYears(int number);

/// Writes a log of so many events, which are made newest first. Its folder is there already.
void writeLog(const QString &path, int count,
              const std::function<engine::MacProtectionEvent(int)> &make = sampleEvent);

} // namespace kestrin::bench
