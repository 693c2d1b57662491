// The format of the activity log's file.
#pragma once

#include "engine/MacProtectionEvent.h"

#include <QList>

#include <optional>

namespace kestrin {

/// The newest `limit` events of the file; none when the file is missing or anything in it is malformed. The
/// whole file is checked, in windows that stay in the processor's cache.
std::optional<QList<MacProtectionEvent>> readNewestEvents(const QString &path, qsizetype limit,
                                                          std::size_t windowSize = 128 * 1024);

/// Checks or reads a complete log. At least `logTextSpare` bytes behind the end of `text` must be readable.
bool isActivityLog(const QByteArray &text);
std::optional<QList<MacProtectionEvent>> eventsOfActivityLog(const QByteArray &text, qsizetype limit);

inline constexpr qsizetype logTextSpare = 64;

} // namespace kestrin
