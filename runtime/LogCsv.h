// Comma-separated values as RFC 4180 has them: lines end in CR LF, and every text is quoted.
#pragma once

#include "engine/MacProtectionEvent.h"

namespace kestrin::runtime {

/// The names of the columns.
QByteArray csvHeading();

/// One line, in UTF-8; the date is universal time in ISO 8601. Characters that could forge lines are spelled
/// out, and a cell that a spreadsheet would take for a formula has an apostrophe in front.
QByteArray csvLine(const engine::MacProtectionEvent &event);

} // namespace kestrin::runtime
