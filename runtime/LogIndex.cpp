#include "runtime/LogIndex.h"

#include "foundation/UniversalTime.h"

#include <QCollator>
#include <QSet>

#include <algorithm>

namespace kestrin::runtime {

using namespace foundation;
using namespace engine;

std::optional<LogIndex> LogIndex::of(MacActivityLogStoring &log) {
    LogIndex index;
    const LogReading reading{.begin = [&index] { index = LogIndex(); },
                             .take = [&index](const MacProtectionEvent &event) { index.append(event); }};
    if (!log.readAll(reading))
        return std::nullopt;
    // A log tells the newest first.
    std::reverse(index.m_entries.begin(), index.m_entries.end());
    index.m_entries.shrink_to_fit();
    return index;
}

void LogIndex::append(const MacProtectionEvent &event) {
    m_entries.push_back({.id = event.id,
                         .milliseconds = event.date.toMSecsSinceEpoch(),
                         .app = numberOf({event.appName, event.bundleIdentifier}),
                         .message = m_messages->numberOf(event.message),
                         .kind = event.kind,
                         .lookedFor = logKindOf(event)});
}

MacProtectionEvent LogIndex::at(qsizetype number) const {
    const Entry &found = entry(number);
    const LoggedApp &app = m_apps.at(found.app);
    return {.id = found.id,
            .date = QDateTime::fromMSecsSinceEpoch(found.milliseconds, universalTime),
            .kind = found.kind,
            .appName = app.name,
            .bundleIdentifier = app.identifier,
            .message = m_messages->at(found.message).toString()};
}

QStringList LogIndex::names() const {
    QSet<QString> names;
    for (const LoggedApp &app : m_apps) {
        if (app.name)
            names.insert(*app.name);
    }
    QStringList sorted(names.cbegin(), names.cend());
    const QCollator byName;
    std::sort(sorted.begin(), sorted.end(), byName);
    return sorted;
}

LogIndex::Numbers LogIndex::find(const LogQuery &query) const {
    // Each part is looked at once, however many events share it.
    std::vector<char> isAppAccepted;
    std::vector<char> isTextInApp;
    for (const LoggedApp &app : m_apps) {
        isAppAccepted.push_back(query.acceptsApp(app));
        isTextInApp.push_back(query.findsTextIn(app));
    }
    std::vector<char> isTextInMessage;
    isTextInMessage.reserve(m_messages->all().size());
    for (const QStringView message : m_messages->all())
        isTextInMessage.push_back(query.findsTextIn(message));

    const bool asksForTime = query.since || query.until;
    Numbers found;
    for (quint32 number = 0; number < m_entries.size(); ++number) {
        const Entry &each = m_entries[number];
        const QDateTime date =
            asksForTime ? QDateTime::fromMSecsSinceEpoch(each.milliseconds, universalTime) : QDateTime();
        if (isAppAccepted[each.app] && (isTextInApp[each.app] || isTextInMessage[each.message]) &&
            query.acceptsMoment(date, each.lookedFor))
            found.push_back(number);
    }
    return found;
}

quint32 LogIndex::numberOf(const LoggedApp &app) {
    // An absent text and an empty one are two applications.
    QList<quint32> &alike = m_appNumbers[{app.name.value_or(QString()), app.identifier.value_or(QString())}];
    for (const quint32 number : std::as_const(alike)) {
        if (m_apps.at(number) == app)
            return number;
    }
    alike.append(static_cast<quint32>(m_apps.size()));
    m_apps.append(app);
    return alike.last();
}

} // namespace kestrin::runtime
