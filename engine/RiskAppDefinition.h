#pragma once

#include "engine/MacRiskCategory.h"
#include "engine/RiskAppAction.h"
#include "foundation/JsonCoding.h"

#include <QList>

namespace kestrin::engine {

/// One kind of risky application, identified by `id` ("voice-memos").
struct RiskAppDefinition {
    QString id;
    /// The name as users know it; the matcher accepts it too.
    QString displayName;
    QList<QString> bundleIdentifiers;
    /// Further application names that the matcher accepts.
    QList<QString> aliases;
    /// In the order in which messages list them.
    QList<MacRiskCategory> categories;
    RiskAppAction defaultAction = RiskAppAction::allow;

    bool operator==(const RiskAppDefinition &) const = default;

    static constexpr auto jsonFields() {
        return std::tuple{
            foundation::jsonField("id", &RiskAppDefinition::id),
            foundation::jsonField("displayName", &RiskAppDefinition::displayName),
            foundation::jsonField("bundleIdentifiers", &RiskAppDefinition::bundleIdentifiers),
            foundation::jsonField("aliases", &RiskAppDefinition::aliases),
            foundation::jsonField("categories", &RiskAppDefinition::categories),
            foundation::jsonField("defaultAction", &RiskAppDefinition::defaultAction),
        };
    }
};

} // namespace kestrin::engine
