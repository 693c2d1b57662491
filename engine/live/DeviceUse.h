#pragma once

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

/// "NAME started using the microphone.", and so on, for people.
QString startedSentence(const DeviceUse &use);
QString goingOnSentence(const DeviceUse &use);
QString stoppedSentence(const DeviceUse &use);

} // namespace kestrin::engine
