#include "engine/JSONMacActivityLogStore.h"

#include "engine/ActivityLogFile.h"

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

} // namespace

JSONMacActivityLogStore::JSONMacActivityLogStore(const QUrl &url) : m_file{url.toLocalFile(), logSizeLimit} {}

StoreResult JSONMacActivityLogStore::tryAppend(const MacProtectionEvent &event) {
    StoredFileChange change(m_file, logTextSpare);
    const QByteArray &text = change.former();
    if (isCompact(text)) {
        const QByteArray newest = encodeJson(event);
        // It is nearly always in order, and the disk takes longer than to make sure of that.
        change.write({"[", viewOf(newest), ",", viewOf(text).substr(1)});
        if (isActivityLog(text))
            return change.commit();
    }
    std::optional<QList<MacProtectionEvent>> stored;
    if (!text.isEmpty())
        stored = eventsOfActivityLog(text, std::numeric_limits<qsizetype>::max());
    const bool isDamaged = !stored && !text.isEmpty();
    QList<MacProtectionEvent> events = stored.value_or(QList<MacProtectionEvent>());
    events.prepend(event);
    return change.replaceBy(encodeJson(events), isDamaged);
}

QList<MacProtectionEvent> JSONMacActivityLogStore::recent(qsizetype limit) {
    if (limit < 0)
        qFatal("The limit of an activity log query must not be negative.");
    return readNewestEvents(m_file.path, limit).value_or(QList<MacProtectionEvent>());
}

bool JSONMacActivityLogStore::readAll(const LogReading &reading) {
    return readEvents(m_file.path, reading);
}

QString JSONMacActivityLogStore::problem() {
    return m_file.problem(isActivityLog, logTextSpare);
}

} // namespace kestrin::engine
