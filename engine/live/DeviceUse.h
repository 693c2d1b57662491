#pragma once

#include "engine/MacProtectionEvent.h"
#include "engine/MacRiskCategory.h"
#include "foundation/JsonCoding.h"

#include <QDateTime>
#include <QString>

#include <optional>

namespace kestrin::engine {

/// An application that listens, watches or records at this moment. However many streams or devices it has
/// open, one category of one process is one use.
struct DeviceUse {
    /// `microphone`, `camera` or `screenCapture`.
    MacRiskCategory category = MacRiskCategory::microphone;
    qint32 processIdentifier = 0;
    /// As its user knows it; the process's own name when nothing else tells.
    QString localizedName;
    /// As of RunningMacApp; absent for what no desktop entry describes.
    std::optional<QString> bundleIdentifier;
    /// When it began, or was seen for the first time; UTC.
    QDateTime since;

    static constexpr auto jsonFields() {
        using foundation::jsonField;
        return std::tuple{jsonField("category", &DeviceUse::category),
                          jsonField("processIdentifier", &DeviceUse::processIdentifier),
                          jsonField("localizedName", &DeviceUse::localizedName),
                          jsonField("bundleIdentifier", &DeviceUse::bundleIdentifier),
                          jsonField("since", &DeviceUse::since)};
    }
    bool operator==(const DeviceUse &) const = default;
};

/// "microphone", "camera" or "screen".
QString deviceName(MacRiskCategory category);

/// "NAME started using the microphone.", and so on, for people.
QString startedSentence(const DeviceUse &use);
QString goingOnSentence(const DeviceUse &use);
QString stoppedSentence(const DeviceUse &use);

/// What an event of the log tells that its application began or ceased to use, or uses; absent for all
/// others. Such an event has the kind of a match, and a message that is one of these sentences about its
/// application.
std::optional<MacRiskCategory> usedCategory(const MacProtectionEvent &event);

} // namespace kestrin::engine
