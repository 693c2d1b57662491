#pragma once

#include "foundation/RawValues.h"

#include <QList>

namespace kestrin::engine {

/// What a risky application can expose. The order is that of the raw values and of every listing.
enum class MacRiskCategory {
    microphone,
    camera,
    screenCapture,
    aiTool,
    videoCall,
    browser,
};

constexpr auto rawValuesOf(MacRiskCategory) {
    using enum MacRiskCategory;
    return std::array{
        foundation::RawValue{microphone, "microphone"},       foundation::RawValue{camera, "camera"},
        foundation::RawValue{screenCapture, "screenCapture"}, foundation::RawValue{aiTool, "aiTool"},
        foundation::RawValue{videoCall, "videoCall"},         foundation::RawValue{browser, "browser"},
    };
}

/// The category as people read it.
QString userLabel(MacRiskCategory category);
/// Several, in their order.
QString userLabels(const QList<MacRiskCategory> &categories, const QString &separator);

} // namespace kestrin::engine
