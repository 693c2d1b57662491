// The format of the activity log's file.
#pragma once

#include "engine/MacActivityLogStoring.h"

#include <QList>

#include <cstddef>
#include <optional>

namespace kestrin::engine {

/// A log is checked in windows of so many bytes, which stay in the processor's cache: that takes a fraction
/// of the time that the whole text at once does.
inline constexpr std::size_t logWindowSize = 128 * 1024;

/// A log that is larger is neither read nor added to: that is more than two million events.
inline constexpr qint64 logSizeLimit = qint64{256} * 1024 * 1024;

/// The newest `limit` events of the file; none when the file is missing or anything in it is malformed. The
/// whole file is checked.
std::optional<QList<MacProtectionEvent>> readNewestEvents(const QString &path, qsizetype limit,
                                                          std::size_t windowSize = logWindowSize);

/// Gives all events of the file away, newest first; false when the file is missing or anything in it is
/// malformed.
bool readEvents(const QString &path, const LogReading &reading);

/// Checks or reads a complete log. At least `logTextSpare` bytes behind the end of `text` must be readable.
bool isActivityLog(const QByteArray &text);
std::optional<QList<MacProtectionEvent>> eventsOfActivityLog(const QByteArray &text, qsizetype limit);

inline constexpr qsizetype logTextSpare = 64;

} // namespace kestrin::engine
