#pragma once

#include "foundation/JsonCoding.h"
#include "foundation/RawValues.h"

#include <QDateTime>
#include <QUuid>

#include <optional>

namespace kestrin::engine {

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

constexpr auto rawValuesOf(MacProtectionEventKind) {
    using enum MacProtectionEventKind;
    return std::array{
        foundation::RawValue{privacyModeOn, "privacyModeOn"},
        foundation::RawValue{privacyModeOff, "privacyModeOff"},
        foundation::RawValue{riskAppMatched, "riskAppMatched"},
        foundation::RawValue{relaunchDetected, "relaunchDetected"},
        foundation::RawValue{quitRequested, "quitRequested"},
        foundation::RawValue{dryRun, "dryRun"},
        foundation::RawValue{actionFailed, "actionFailed"},
    };
}

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
            foundation::jsonField("id", &MacProtectionEvent::id),
            foundation::jsonField("date", &MacProtectionEvent::date),
            foundation::jsonField("kind", &MacProtectionEvent::kind),
            foundation::jsonField("appName", &MacProtectionEvent::appName),
            foundation::jsonField("bundleIdentifier", &MacProtectionEvent::bundleIdentifier),
            foundation::jsonField("message", &MacProtectionEvent::message),
        };
    }
};

} // namespace kestrin::engine
