#pragma once

#include "foundation/RawValues.h"

namespace kestrin::engine {

/// What Privacy Mode does with a risky application: `allow` only reports it, the others ask it to quit.
enum class RiskAppAction {
    allow,
    quit,
    keepClosed,
};

constexpr auto rawValuesOf(RiskAppAction) {
    using enum RiskAppAction;
    return std::array{
        foundation::RawValue{allow, "allow"},
        foundation::RawValue{quit, "quit"},
        foundation::RawValue{keepClosed, "keepClosed"},
    };
}

/// The action as people read it.
QString userLabel(RiskAppAction action);

} // namespace kestrin::engine
