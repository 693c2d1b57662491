#include "engine/JSONMacActivityLogStore.h"

#include "engine/ActivityLogFile.h"
#include "foundation/FileLock.h"
#include "foundation/FileReading.h"
#include "foundation/PrivateFile.h"

#include <limits>

namespace kestrin::engine {

using namespace foundation;

namespace {

/// Whether a log of at least one event is written the way this store writes it, so that a new event can be
/// put in front of the others as they stand. A line break cannot be part of a string, so one of them gives
/// another layout away.
bool isCompact(const QByteArray &log) {
    return log.startsWith("[{") && log.endsWith("}]") && !log.contains('\n');
}

bool writeWithEvent(const QString &path, const MacProtectionEvent &event) {
    const QByteArray text = readWholeFile(path, logTextSpare).value_or(QByteArray());
    if (!text.isEmpty() && isCompact(text)) {
        const QByteArray newest = encodeJson(event);
        // It is nearly always in order, and the disk takes longer than to make sure of that.
        PrivateFileReplacement next(path, {"[", viewOf(newest), ",", viewOf(text).substr(1)});
        if (isActivityLog(text))
            return next.commit();
    }
    QList<MacProtectionEvent> events;
    if (!text.isEmpty())
        events = eventsOfActivityLog(text, std::numeric_limits<qsizetype>::max()).value_or(events);
    events.prepend(event);
    return replacePrivateFile(path, {viewOf(encodeJson(events))});
}

} // namespace

bool JSONMacActivityLogStore::tryAppend(const MacProtectionEvent &event) {
    const auto lock = FileLock::lockFolderOf(m_path);
    return lock && writeWithEvent(m_path, event);
}

QList<MacProtectionEvent> JSONMacActivityLogStore::recent(qsizetype limit) {
    if (limit < 0)
        qFatal("The limit of an activity log query must not be negative.");
    return readNewestEvents(m_path, limit).value_or(QList<MacProtectionEvent>());
}

} // namespace kestrin::engine
