#include "runtime/LogQuery.h"

#include <algorithm>

namespace kestrin::runtime {

using namespace engine;

namespace {

bool isOf(const MacProtectionEvent &event, const QString &app) {
    return (event.appName && event.appName->contains(app, Qt::CaseInsensitive)) ||
           (event.bundleIdentifier && event.bundleIdentifier->contains(app, Qt::CaseInsensitive));
}

} // namespace

bool LogQuery::accepts(const MacProtectionEvent &event) const {
    if ((since && event.date < *since) || (until && event.date > *until))
        return false;
    if (!kinds.isEmpty() && !kinds.contains(event.kind))
        return false;
    if (!apps.isEmpty() &&
        std::none_of(apps.cbegin(), apps.cend(), [&](const QString &app) { return isOf(event, app); }))
        return false;
    return text.isEmpty() || event.message.contains(text, Qt::CaseInsensitive) || isOf(event, text);
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
