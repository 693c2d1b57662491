#pragma once

#include "engine/MacRiskCategory.h"
#include "engine/RiskAppAction.h"
#include "foundation/JsonCoding.h"

#include <QList>

namespace kestrin {

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
            jsonField("id", &RiskAppDefinition::id),
            jsonField("displayName", &RiskAppDefinition::displayName),
            jsonField("bundleIdentifiers", &RiskAppDefinition::bundleIdentifiers),
            jsonField("aliases", &RiskAppDefinition::aliases),
            jsonField("categories", &RiskAppDefinition::categories),
            jsonField("defaultAction", &RiskAppDefinition::defaultAction),
        };
    }
};

} // namespace kestrin
