#include "runtime/FileStores.h"

#include "engine/RiskAppCatalog.h"

using namespace Qt::StringLiterals;

namespace kestrin::runtime {

using namespace engine;

std::shared_ptr<JSONPrivacyModeSettingsStore> settingsStoreIn(const QString &supportFolder) {
    return std::make_shared<JSONPrivacyModeSettingsStore>(
        QUrl::fromLocalFile(supportFolder + u"/privacy-mode-settings.json"_s),
        PrivacyModeSettings{true, defaultDefinitionIDs()});
}

std::shared_ptr<JSONMacActivityLogStore> activityLogIn(const QString &supportFolder) {
    return std::make_shared<JSONMacActivityLogStore>(
        QUrl::fromLocalFile(supportFolder + u"/activity-log.json"_s));
}

std::shared_ptr<JSONOwnApplicationsStore> ownApplicationsIn(const QString &supportFolder) {
    return std::make_shared<JSONOwnApplicationsStore>(supportFolder + u"/own-applications.json"_s);
}

} // namespace kestrin::runtime
