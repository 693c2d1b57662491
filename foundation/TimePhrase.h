// Moments as people write them in a terminal.
#pragma once

#include <QDateTime>
#include <QString>

#include <optional>

namespace kestrin::foundation {

/// The moment that the phrase means to somebody who writes it at `now`, in the time zone of `now`; none when
/// it means none. What systemd.time(7) calls timestamps, as journalctl reads them: "2026-11-25", "2026-11-25
/// 19:04", "19:04:11", each also with "UTC" behind it, "now", "today", "yesterday" and "tomorrow", "2 hours
/// ago", "1h 30min ago", "-90s", "+1d" and "@1700000000". A day begins at its first moment. Upper and lower
/// case are the same, but for "m", a minute, and "M", a month.
std::optional<QDateTime> timeOfPhrase(const QString &phrase, const QDateTime &now);

/// The moment until which something is to last for somebody who says this at `now`: a span of time, "90m" or
/// "1h 30min", or "until" and a phrase as above, of which a time of day alone is the next such time. None
/// when it means none, or one that has passed.
std::optional<QDateTime> endOfPhrase(const QString &phrase, const QDateTime &now);

} // namespace kestrin::foundation
