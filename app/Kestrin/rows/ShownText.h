// Texts that come from outside, as the window and the desktop's notices show them.
#pragma once

#include "engine/MacProtectionEvent.h"

namespace kestrin::app {

/// An application's name: visible, and where it is written from right to left kept apart from what stands
/// around it, so that neither turns the other round.
QString shownName(const QString &name);

/// "100,000 events", "1 event".
QString shownEventCount(qsizetype count);
/// "100,000".
QString shownNumber(qsizetype number);

/// An event's message, with the application's name in it shown as such.
QString shownMessage(const engine::MacProtectionEvent &event);

} // namespace kestrin::app
