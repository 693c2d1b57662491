#pragma once

#include "engine/MacProtectionEvent.h"
#include "engine/RiskAppMatch.h"

namespace kestrin::engine {

/// What one check found and recorded.
struct PrivacyModeRunResult {
    /// The protected matches only, in the order of the inventory.
    QList<RiskAppMatch> matches;
    /// In the order in which they were created and logged.
    QList<MacProtectionEvent> events;

    bool operator==(const PrivacyModeRunResult &) const = default;

    static constexpr auto jsonFields() {
        return std::tuple{
            foundation::jsonField("matches", &PrivacyModeRunResult::matches),
            foundation::jsonField("events", &PrivacyModeRunResult::events),
        };
    }
};

} // namespace kestrin::engine
