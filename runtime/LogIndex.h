#pragma once

#include "engine/MacActivityLogStoring.h"
#include "runtime/LogQuery.h"
#include "runtime/NumberedTexts.h"

#include <QHash>
#include <QList>

#include <memory>
#include <vector>

namespace kestrin::runtime {

/// All events of a log in little room, to be shown and searched: a log says the same few things about the
/// same few applications, and each of them is kept once. Events are numbered from the oldest, so that a
/// number stays when there are new ones.
class LogIndex {
  public:
    using Numbers = std::vector<quint32>;

    /// None where the log cannot be read, or is not there.
    static std::optional<LogIndex> of(engine::MacActivityLogStoring &log);

    /// Adds the newest event.
    void append(const engine::MacProtectionEvent &event);

    qsizetype size() const { return static_cast<qsizetype>(m_entries.size()); }
    engine::MacProtectionEvent at(qsizetype number) const;
    QUuid idAt(qsizetype number) const { return entry(number).id; }
    qint64 millisecondsAt(qsizetype number) const { return entry(number).milliseconds; }

    /// The names of the applications that occur, each once, in their order.
    QStringList names() const;
    /// The numbers of the events that are asked for, oldest first.
    Numbers find(const LogQuery &query) const;

  private:
    struct Entry {
        QUuid id;
        qint64 milliseconds;
        quint32 app;
        quint32 message;
        engine::MacProtectionEventKind kind;
        /// As which it is looked for.
        LogKind lookedFor;
    };

    const Entry &entry(qsizetype number) const { return m_entries[static_cast<std::size_t>(number)]; }
    quint32 numberOf(const LoggedApp &app);

    std::vector<Entry> m_entries;
    QList<LoggedApp> m_apps;
    QHash<std::pair<QString, QString>, QList<quint32>> m_appNumbers;
    std::unique_ptr<NumberedTexts> m_messages = std::make_unique<NumberedTexts>();
};

} // namespace kestrin::runtime
