#pragma once

#include "foundation/RawValues.h"

namespace kestrin {

/// The visual tone of a status. `protected` is a word of the language, hence the underscore.
enum class ProtectionTone {
    protected_,
    attention,
    risk,
    link,
    neutral,
};

template <>
struct RawValues<ProtectionTone> {
    static constexpr std::array entries{
        RawValue{ProtectionTone::protected_, "protected"},
        RawValue{ProtectionTone::attention, "attention"},
        RawValue{ProtectionTone::risk, "risk"},
        RawValue{ProtectionTone::link, "link"},
        RawValue{ProtectionTone::neutral, "neutral"},
    };
};

} // namespace kestrin
