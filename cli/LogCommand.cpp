#include "cli/LogCommand.h"

#include "cli/EventFollower.h"
#include "cli/EventPrinter.h"
#include "cli/UntilEnded.h"
#include "foundation/FileWatch.h"
#include "foundation/TimePhrase.h"
#include "runtime/LogText.h"

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

namespace kestrin::cli {

using namespace foundation;
using namespace engine;
using namespace runtime;

namespace {

constexpr qsizetype fewEvents = 8;
constexpr qsizetype everything = std::numeric_limits<qsizetype>::max();

class LogCommand {
  public:
    LogCommand(CommandSurroundings &surroundings, const Invocation &call)
        : m_surroundings(surroundings)
        , m_log(*surroundings.runtime.logStore)
        , m_query(call.log.query)
        , m_format(call.json ? LogFormat::json : call.log.format)
        // Whoever names a time wants all of it.
        , m_limit(call.log.limit.value_or(
              !call.log.since.isEmpty() || !call.log.until.isEmpty() ? everything : fewEvents)) {
        const QDateTime now = surroundings.runtime.clock().toLocalTime();
        m_query.since = timeOfPhrase(call.log.since, now);
        m_query.until = timeOfPhrase(call.log.until, now);
    }

    ExitStatus print() {
        const auto events = newest();
        if (!events)
            return m_surroundings.couldNot(m_log.problem());
        if (m_format == LogFormat::text)
            printForPeople(*events);
        else
            m_surroundings.out.write(logText(
                events->size(), [&](qsizetype i) { return events->at(i); }, m_format));
        return ExitStatus::done;
    }

    ExitStatus follow() {
        UntilEnded ended(m_surroundings.out);
        FileWatch watch(m_log.file());
        auto events = newest();
        if (!events)
            return m_surroundings.couldNot(m_log.problem());
        EventFollower follower(m_log, m_read);
        std::reverse(events->begin(), events->end());
        m_surroundings.out.write(headingOf(m_format));
        EventPrinter printer(m_surroundings.out, m_surroundings.palette, m_format);
        printer.print(*events);
        const auto printNew = [&] {
            printer.print(m_query.firstOf(follower.takeNew(m_log.recent(fewEvents)), everything));
        };
        QObject::connect(&watch, &FileWatch::changed, printNew);
        ended.run();
        // An event may have been recorded just before the end without having been noticed yet.
        printNew();
        return ExitStatus::done;
    }

  private:
    /// None when the log cannot be read.
    std::optional<QList<MacProtectionEvent>> newest() {
        // Who follows has to know where the log ends now, even if none of it is shown.
        const qsizetype toRead = m_query == LogQuery() ? std::max<qsizetype>(m_limit, 1) : everything;
        m_read = m_log.recent(toRead);
        if (m_read.isEmpty()) {
            if (!m_log.problem().isEmpty())
                return std::nullopt;
            // What was in the way may have gone by now.
            m_read = m_log.recent(toRead);
        }
        return m_query.firstOf(m_read, m_limit);
    }

    void printForPeople(const QList<MacProtectionEvent> &events) {
        if (events.isEmpty() && m_limit > 0)
            m_surroundings.out.write(m_read.isEmpty() ? u"The activity log is empty.\n"_s
                                                      : u"No event in the activity log is like that.\n"_s);
        for (const MacProtectionEvent &event : events)
            m_surroundings.out.write(lineOf(event, LogFormat::text, m_surroundings.palette));
    }

    CommandSurroundings &m_surroundings;
    MacActivityLogStoring &m_log;
    LogQuery m_query;
    const LogFormat m_format;
    const qsizetype m_limit;
    /// Of the log, newest first, whether asked for or not.
    QList<MacProtectionEvent> m_read;
};

} // namespace

ExitStatus runLog(CommandSurroundings &surroundings, const Invocation &call) {
    LogCommand command(surroundings, call);
    return call.follow ? command.follow() : command.print();
}

} // namespace kestrin::cli
