// The messages that the mobile application and its watch companion exchange: flat dictionaries from string
// keys to booleans, integers, doubles and strings. The desktop application knows the vocabulary and exchanges
// none.
#pragma once

#include "foundation/RawValues.h"

#include <QVariantMap>

namespace kestrin::shared {

class KestrinWatchBridge {
  public:
    KestrinWatchBridge() = delete;

    struct Key {
        static const QString command;
        static const QString privacyModeOn;
        static const QString canTogglePrivacyMode;
        static const QString protectedAppCount;
        static const QString checkCount;
        static const QString statusTitle;
        static const QString statusDetail;
        static const QString requiresSetup;
        static const QString hapticFeedbackEnabled;
        /// Seconds since 1970-01-01 00:00 UTC, with their fraction.
        static const QString timestamp;
    };

    enum class Command {
        requestState,
        setPrivacyMode,
        quickCheck,
    };

    static QVariantMap commandPayload(Command command, std::optional<bool> privacyModeOn = std::nullopt);
    static QVariantMap statePayload(bool privacyModeOn, bool canTogglePrivacyMode, qint64 protectedAppCount,
                                    qint64 checkCount, const QString &statusTitle,
                                    const QString &statusDetail, bool requiresSetup,
                                    bool hapticFeedbackEnabled);

    /// The command of a message; none when it holds no string that equals a raw value exactly.
    static std::optional<Command> command(const QVariantMap &from);

    /// The value under `key` when it has the asked type, else the default. A number counts as a boolean only
    /// when it is exactly 0 or 1, and as an integer only when it is integral and fits; text is never
    /// converted.
    static bool boolean(const QString &key, const QVariantMap &in, bool defaultValue);
    static qint64 integer(const QString &key, const QVariantMap &in, qint64 defaultValue);
    static QString string(const QString &key, const QVariantMap &in, const QString &defaultValue);
};

constexpr auto rawValuesOf(KestrinWatchBridge::Command) {
    using enum KestrinWatchBridge::Command;
    return std::array{
        foundation::RawValue{requestState, "requestState"},
        foundation::RawValue{setPrivacyMode, "setPrivacyMode"},
        foundation::RawValue{quickCheck, "quickCheck"},
    };
}

} // namespace kestrin::shared
