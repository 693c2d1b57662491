#pragma once

#include "foundation/RawValues.h"

namespace kestrin {

/// What kind of risk a protected application of the mobile companion carries. Its raw value is also its
/// identity.
enum class RiskKind {
    mic,
    camera,
    ai,
    browser,
    both,
};

template <>
struct RawValues<RiskKind> {
    static constexpr std::array entries{
        RawValue{RiskKind::mic, "mic"},         RawValue{RiskKind::camera, "camera"},
        RawValue{RiskKind::ai, "AI"},           RawValue{RiskKind::browser, "browser"},
        RawValue{RiskKind::both, "mic/camera"},
    };
};

} // namespace kestrin
