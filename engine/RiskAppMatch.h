#pragma once

#include "engine/RiskAppDefinition.h"
#include "engine/RunningMacApp.h"

namespace kestrin::engine {

/// A running application and the definition that it matched.
struct RiskAppMatch {
    RunningMacApp app;
    RiskAppDefinition definition;

    /// The definition's id, "-" and the process id: two instances of one application are two matches.
    QString id() const { return definition.id + u'-' + QString::number(app.processIdentifier); }

    bool operator==(const RiskAppMatch &) const = default;

    static constexpr auto jsonFields() {
        return std::tuple{
            foundation::jsonField("app", &RiskAppMatch::app),
            foundation::jsonField("definition", &RiskAppMatch::definition),
        };
    }
};

} // namespace kestrin::engine
