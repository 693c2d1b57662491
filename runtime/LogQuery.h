#pragma once

#include "engine/MacProtectionEvent.h"

#include <QList>
#include <QStringList>

namespace kestrin::runtime {

/// What somebody looks for in the log: events of a kind. Those that tell who uses a device are one of their
/// own, and no matches.
enum class LogKind {
    privacyModeOn,
    privacyModeOff,
    riskAppMatched,
    relaunchDetected,
    quitRequested,
    dryRun,
    actionFailed,
    deviceUse,
};

constexpr auto rawValuesOf(LogKind) {
    using enum LogKind;
    using foundation::RawValue;
    return std::array{
        RawValue{privacyModeOn, "privacyModeOn"},   RawValue{privacyModeOff, "privacyModeOff"},
        RawValue{riskAppMatched, "riskAppMatched"}, RawValue{relaunchDetected, "relaunchDetected"},
        RawValue{quitRequested, "quitRequested"},   RawValue{dryRun, "dryRun"},
        RawValue{actionFailed, "actionFailed"},     RawValue{deviceUse, "deviceUse"},
    };
}

LogKind logKindOf(const engine::MacProtectionEvent &event);

/// The application that an event tells of, if it tells of one.
struct LoggedApp {
    std::optional<QString> name = {};
    std::optional<QString> identifier = {};

    bool operator==(const LoggedApp &) const = default;
};

/// Which events of the log somebody wants to see: those for which everything holds that is asked. What is not
/// asked holds for each.
struct LogQuery {
    /// The first and the last second.
    std::optional<QDateTime> since = {};
    std::optional<QDateTime> until = {};
    /// One of these.
    QList<LogKind> kinds = {};
    /// Parts of the application's name or identifier, of which one is there, in whichever case.
    QStringList apps = {};
    /// The application's name as it stands, one of these.
    QStringList names = {};
    /// A part of the message, of the application's name or of its identifier, in whichever case.
    QString text = {};

    bool operator==(const LogQuery &) const = default;

    bool accepts(const engine::MacProtectionEvent &event) const;
    /// What `accepts` comes to, for those who know many events by their parts. An event is accepted where its
    /// moment, its kind and its application are, and the text is found in its application or its message.
    bool acceptsMoment(const QDateTime &date, LogKind kind) const;
    bool acceptsApp(const LoggedApp &app) const;
    bool findsTextIn(const LoggedApp &app) const;
    bool findsTextIn(QStringView message) const;
    /// The first that are accepted, at most `limit` of them, in their order.
    QList<engine::MacProtectionEvent> firstOf(const QList<engine::MacProtectionEvent> &events,
                                              qsizetype limit) const;
};

} // namespace kestrin::runtime
