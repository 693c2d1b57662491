#pragma once

#include "foundation/RawValues.h"

namespace kestrin {

/// What Privacy Mode does with a risky application: `allow` only reports it, the others ask it to quit.
enum class RiskAppAction {
    allow,
    quit,
    keepClosed,
};

template <>
struct RawValues<RiskAppAction> {
    static constexpr std::array entries{
        RawValue{RiskAppAction::allow, "allow"},
        RawValue{RiskAppAction::quit, "quit"},
        RawValue{RiskAppAction::keepClosed, "keepClosed"},
    };
};

/// The action as people read it.
QString userLabel(RiskAppAction action);

} // namespace kestrin
