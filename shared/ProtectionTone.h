#pragma once

#include "foundation/RawValues.h"

namespace kestrin::shared {

/// The visual tone of a status. `protected` is a word of the language, hence the underscore.
enum class ProtectionTone {
    protected_,
    attention,
    risk,
    link,
    neutral,
};

constexpr auto rawValuesOf(ProtectionTone) {
    using enum ProtectionTone;
    return std::array{
        foundation::RawValue{protected_, "protected"},
        foundation::RawValue{attention, "attention"},
        foundation::RawValue{risk, "risk"},
        foundation::RawValue{link, "link"},
        foundation::RawValue{neutral, "neutral"},
    };
}

} // namespace kestrin::shared
