// The stores over the files of a support folder.
#pragma once

#include "engine/JSONMacActivityLogStore.h"
#include "engine/JSONOwnApplicationsStore.h"
#include "engine/JSONPrivacyModeSettingsStore.h"

#include <memory>

namespace kestrin::runtime {

/// Over "privacy-mode-settings.json". Until something is saved, Privacy Mode is on and everything is
/// selected.
std::shared_ptr<engine::JSONPrivacyModeSettingsStore> settingsStoreIn(const QString &supportFolder);

/// Over "activity-log.json".
std::shared_ptr<engine::JSONMacActivityLogStore> activityLogIn(const QString &supportFolder);

/// Over "own-applications.json".
std::shared_ptr<engine::JSONOwnApplicationsStore> ownApplicationsIn(const QString &supportFolder);

} // namespace kestrin::runtime
