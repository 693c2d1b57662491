#include "runtime/LogQuery.h"

#include "engine/live/DeviceUse.h"

#include <algorithm>

namespace kestrin::runtime {

using namespace engine;

namespace {

bool holds(const std::optional<QString> &text, const QString &part) {
    return text && text->contains(part, Qt::CaseInsensitive);
}

bool isOf(const LoggedApp &app, const QString &part) {
    return holds(app.name, part) || holds(app.identifier, part);
}

} // namespace

LogKind logKindOf(const MacProtectionEvent &event) {
    using enum MacProtectionEventKind;
    switch (event.kind) {
    case privacyModeOn:
        return LogKind::privacyModeOn;
    case privacyModeOff:
        return LogKind::privacyModeOff;
    case riskAppMatched:
        return usedCategory(event) ? LogKind::deviceUse : LogKind::riskAppMatched;
    case relaunchDetected:
        return LogKind::relaunchDetected;
    case quitRequested:
        return LogKind::quitRequested;
    case dryRun:
        return LogKind::dryRun;
    case actionFailed:
        break;
    }
    return LogKind::actionFailed;
}

bool LogQuery::accepts(const MacProtectionEvent &event) const {
    const LoggedApp app{event.appName, event.bundleIdentifier};
    return acceptsMoment(event.date, logKindOf(event)) && acceptsApp(app) &&
           (findsTextIn(event.message) || findsTextIn(app));
}

bool LogQuery::acceptsMoment(const QDateTime &date, LogKind kind) const {
    if ((since && date < *since) || (until && date > *until))
        return false;
    return kinds.isEmpty() || kinds.contains(kind);
}

bool LogQuery::acceptsApp(const LoggedApp &app) const {
    if (!names.isEmpty() && !(app.name && names.contains(*app.name)))
        return false;
    return apps.isEmpty() ||
           std::any_of(apps.cbegin(), apps.cend(), [&](const QString &part) { return isOf(app, part); });
}

bool LogQuery::findsTextIn(const LoggedApp &app) const {
    return text.isEmpty() || isOf(app, text);
}

bool LogQuery::findsTextIn(QStringView message) const {
    return text.isEmpty() || message.contains(text, Qt::CaseInsensitive);
}

QList<MacProtectionEvent> LogQuery::firstOf(const QList<MacProtectionEvent> &events, qsizetype limit) const {
    QList<MacProtectionEvent> accepted;
    for (const MacProtectionEvent &event : events) {
        if (accepted.size() == limit)
            break;
        if (accepts(event))
            accepted.append(event);
    }
    return accepted;
}

} // namespace kestrin::runtime
