// The activity log: whole or in windows, a file reads the same, and an append keeps what was there.

#include "engine/ActivityLogFile.h"
#include "engine/JSONMacActivityLogStore.h"
#include "tests/fuzz/Fuzzing.h"
#include "tests/support/Files.h"
#include "tests/support/Samples.h"

#include <QDir>
#include <QJsonArray>
#include <QTemporaryDir>

#include <limits>

namespace {

using Events = QList<MacProtectionEvent>;

constexpr qsizetype all = std::numeric_limits<qsizetype>::max();

std::optional<Events> whole(const QByteArray &text, qsizetype limit) {
    QByteArray padded = text + QByteArray(logTextSpare, ' ');
    padded.truncate(text.size());
    return eventsOfActivityLog(padded, limit);
}

void checkWindows(const QString &path, const std::optional<Events> &events) {
    for (const std::size_t window : {16U, 211U, 1000U})
        require(readNewestEvents(path, all, window) == events, "windows read the same as the whole");
    const auto newest = readNewestEvents(path, 1, 150);
    require(newest.has_value() == events.has_value(), "a limit does not make a log readable");
    require(!newest || *newest == events->first(std::min<qsizetype>(1, events->size())),
            "a limit keeps the first events");
}

void checkAppend(const QString &path, const Events &before) {
    JSONMacActivityLogStore store(QUrl::fromLocalFile(path));
    require(store.recent(all) == before, "a malformed log reads as empty");
    store.append(samples::event(u"New."_s));
    const Events now = store.recent(all);
    require(!now.empty() && now.first().message == u"New." && now.sliced(1) == before,
            "an append comes first and keeps the others");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const QByteArray text = bytesOf(data, size);
    // In a folder in memory, where fsync costs nothing, if the system has one.
    const QString memory = u"/dev/shm"_s;
    static const QTemporaryDir folder((QFileInfo(memory).isWritable() ? memory : QDir::tempPath()) +
                                      u"/kestrin-fuzz-XXXXXX"_s);
    const QString path = folder.filePath(u"activity-log.json"_s);
    samples::write(path, text);

    const auto events = whole(text, all);
    require(whole(text, 0).has_value() == events.has_value(), "checking is as strict as reading");
    checkWindows(path, events);
    if (events) {
        require(whole(encodeJson(*events), all) == events, "what is written reads as it was");
        if (const auto document = secondOpinion(text))
            require(document->array().size() == events->size(), "Qt counts the same events");
    }
    checkAppend(path, events.value_or(Events()));
    // What did not read was set aside, thousands of times a second.
    QDir kept(folder.path());
    for (const QString &name : kept.entryList({u"*.damaged-*"_s}))
        require(kept.remove(name), "what is set aside can be removed");
    return 0;
}
