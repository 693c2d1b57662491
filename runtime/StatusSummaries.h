// The labels, counts and lists that are derived from the runtime's state. Pure functions: who knows the state
// in another way, such as a command line beside a running application, asks them directly.
#pragma once

#include "engine/MacProtectionEvent.h"
#include "shared/DomainRecords.h"

#include <QList>

#include <optional>

namespace kestrin::runtime {

/// "Off", "Enforcing" or "Preview"; "Unknown" for another program's monitor when nobody can tell.
QString monitorLabelFor(const std::optional<bool> &isMonitoring, bool enforceActions);

/// "Enforcing" or "Preview".
QString actionsLabelFor(bool enforceActions);

/// The local time of day in the user's short style, or "Not checked yet".
QString lastCheckedLabelFor(const std::optional<QDateTime> &lastChecked);

/// The local time of day in the user's short style.
QString timeOfDayLabelFor(const QDateTime &date);

/// What stands behind "until": "14:30" where that is today, "tomorrow" for its first moment, otherwise with
/// the day of the week. For moments of the next seven days.
QString momentLabelFor(const QDateTime &date, const QDateTime &now);

/// This Mac, the iPhone and the watch.
QList<shared::ProtectionDevice> devicesFor(bool isEnabled, bool enforceActions);

qint64 enabledScheduleCountOf(const QList<shared::ModePreset> &modes);

/// How many of the events tell of an action: a request, a preview or a failure.
qint64 actionEventCountOf(const QList<engine::MacProtectionEvent> &events);

/// What a diagnostics report tells.
struct DiagnosticsValues {
    std::optional<bool> isMonitoring = false;
    bool enforceActions = false;
    qsizetype protectedDefinitionCount = 0;
    qint64 runningAppCount = 0;
    qsizetype matchCount = 0;
};

/// Five lines, without a line break at the end.
QString diagnosticsTextFor(const DiagnosticsValues &values);

} // namespace kestrin::runtime
