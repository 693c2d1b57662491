#pragma once

#include "foundation/JsonCoding.h"
#include "foundation/RawValues.h"

#include <QDateTime>
#include <QUuid>

#include <optional>

namespace kestrin {

/// What an event tells of.
enum class MacProtectionEventKind {
    privacyModeOn,
    privacyModeOff,
    riskAppMatched,
    relaunchDetected,
    quitRequested,
    dryRun,
    actionFailed,
};

template <>
struct RawValues<MacProtectionEventKind> {
    static constexpr std::array entries{
        RawValue{MacProtectionEventKind::privacyModeOn, "privacyModeOn"},
        RawValue{MacProtectionEventKind::privacyModeOff, "privacyModeOff"},
        RawValue{MacProtectionEventKind::riskAppMatched, "riskAppMatched"},
        RawValue{MacProtectionEventKind::relaunchDetected, "relaunchDetected"},
        RawValue{MacProtectionEventKind::quitRequested, "quitRequested"},
        RawValue{MacProtectionEventKind::dryRun, "dryRun"},
        RawValue{MacProtectionEventKind::actionFailed, "actionFailed"},
    };
};

/// One entry of the activity log. A date read back from a file is cut to its whole second, so it is the `id`
/// that tells whether two events are the same.
struct MacProtectionEvent {
    QUuid id;
    QDateTime date;
    MacProtectionEventKind kind = MacProtectionEventKind::privacyModeOn;
    /// Absent for events about Privacy Mode as a whole.
    std::optional<QString> appName;
    std::optional<QString> bundleIdentifier;
    /// A complete sentence for the user.
    QString message;

    /// A new event with an id of its own.
    static MacProtectionEvent create(const QDateTime &date, MacProtectionEventKind kind,
                                     const QString &message,
                                     const std::optional<QString> &appName = std::nullopt,
                                     const std::optional<QString> &bundleIdentifier = std::nullopt) {
        return {QUuid::createUuid(), date, kind, appName, bundleIdentifier, message};
    }

    bool operator==(const MacProtectionEvent &) const = default;

    static constexpr auto jsonFields() {
        return std::tuple{
            jsonField("id", &MacProtectionEvent::id),
            jsonField("date", &MacProtectionEvent::date),
            jsonField("kind", &MacProtectionEvent::kind),
            jsonField("appName", &MacProtectionEvent::appName),
            jsonField("bundleIdentifier", &MacProtectionEvent::bundleIdentifier),
            jsonField("message", &MacProtectionEvent::message),
        };
    }
};

} // namespace kestrin
