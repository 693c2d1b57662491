#pragma once

#include "foundation/RawValues.h"

namespace kestrin {

/// What a risky application can expose. The order is that of the raw values and of every listing.
enum class MacRiskCategory {
    microphone,
    camera,
    screenCapture,
    aiTool,
    videoCall,
    browser,
};

template <>
struct RawValues<MacRiskCategory> {
    static constexpr std::array entries{
        RawValue{MacRiskCategory::microphone, "microphone"},
        RawValue{MacRiskCategory::camera, "camera"},
        RawValue{MacRiskCategory::screenCapture, "screenCapture"},
        RawValue{MacRiskCategory::aiTool, "aiTool"},
        RawValue{MacRiskCategory::videoCall, "videoCall"},
        RawValue{MacRiskCategory::browser, "browser"},
    };
};

/// The category as people read it.
QString userLabel(MacRiskCategory category);

} // namespace kestrin
