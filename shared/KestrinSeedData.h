#pragma once

#include "shared/DomainRecords.h"

#include <QList>

/// The fixed lists that the application and its companions start from. Each is built once, on first use, and
/// shared; the first use may come from several threads at once.
namespace kestrin::shared::KestrinSeedData {

const QList<ProtectionDevice> &devices();
const QList<ProtectedApp> &protectedApps();
const QList<ModePreset> &modes();
const QList<ActivityEvent> &activity();

} // namespace kestrin::shared::KestrinSeedData
