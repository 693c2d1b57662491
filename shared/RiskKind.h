#pragma once

#include "foundation/RawValues.h"

namespace kestrin::shared {

/// What kind of risk a protected application of the mobile companion carries. Its raw value is also its
/// identity.
enum class RiskKind {
    mic,
    camera,
    ai,
    browser,
    both,
};

constexpr auto rawValuesOf(RiskKind) {
    using enum RiskKind;
    return std::array{
        foundation::RawValue{mic, "mic"},         foundation::RawValue{camera, "camera"},
        foundation::RawValue{ai, "AI"},           foundation::RawValue{browser, "browser"},
        foundation::RawValue{both, "mic/camera"},
    };
}

} // namespace kestrin::shared
