#pragma once

#include "engine/RiskAppDefinition.h"

#include <QSet>

namespace kestrin::engine {

/// The engine's whole configuration.
struct PrivacyModeSettings {
    bool isEnabled = false;
    /// The ids of the definitions that the user protects; ids that the catalog does not know match nothing.
    QSet<QString> protectedDefinitionIDs;

    /// Whether the definition is protected. An empty selection protects everything, on purpose: it must never
    /// come to mean that nothing is protected. Whether Privacy Mode is on makes no difference.
    bool protects(const RiskAppDefinition &definition) const {
        return protectedDefinitionIDs.isEmpty() || protectedDefinitionIDs.contains(definition.id);
    }

    /// Whether an application that matches the definition is to be asked to quit.
    bool asksToQuit(const RiskAppDefinition &definition) const {
        return isEnabled && protects(definition) && definition.defaultAction != RiskAppAction::allow;
    }

    bool operator==(const PrivacyModeSettings &) const = default;

    static constexpr auto jsonFields() {
        return std::tuple{
            foundation::jsonField("isEnabled", &PrivacyModeSettings::isEnabled),
            foundation::jsonField("protectedDefinitionIDs", &PrivacyModeSettings::protectedDefinitionIDs),
        };
    }
};

} // namespace kestrin::engine
