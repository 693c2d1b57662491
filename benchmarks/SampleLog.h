// Activity logs of any length.
#pragma once

#include "engine/MacProtectionEvent.h"

namespace kestrin::bench {

/// One of those that an enforcing monitor writes, with as much text as they have.
engine::MacProtectionEvent sampleEvent(int number);

/// Writes a log of so many events. Its folder is there already.
void writeLog(const QString &path, int count);

} // namespace kestrin::bench
