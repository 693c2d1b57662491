// Checks on single JSON tokens: the texts that stand for dates, UUIDs and numbers.
#pragma once

#include <QDateTime>
#include <QUuid>

#include <optional>
#include <string_view>

namespace kestrin::foundation::json {

/// Whether the text is a UUID in its 36-character form; hexadecimal digits in either letter case.
bool isUuid(std::string_view text);
QUuid uuidFrom(std::string_view text);

/// Whether the text is an existing moment written as 2026-03-14T09:26:53Z.
bool isDate(std::string_view text);
/// In UTC; `text` must be a date.
QDateTime dateFrom(std::string_view text);

/// Whether the text is a number of the JSON grammar, of whatever size.
bool isNumber(std::string_view text);

} // namespace kestrin::foundation::json
