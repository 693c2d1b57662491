#include "cli/WatchCommand.h"

#include "cli/EventFollower.h"
#include "cli/HumanOutput.h"
#include "cli/TerminationSignals.h"
#include "foundation/JsonEncoding.h"
#include "runtime/MonitoringClaim.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace kestrin::cli {

using namespace foundation;
using namespace engine;
using namespace runtime;

namespace {

/// Only a pipe or a socket has a reader that can go away.
bool hasReader(int descriptor) {
    struct stat status {};
    return ::fstat(descriptor, &status) == 0 && (S_ISFIFO(status.st_mode) || S_ISSOCK(status.st_mode));
}

/// Prints what is new in the log. Nothing is printed any more once the reader has gone.
class EventPrinter {
  public:
    EventPrinter(MacProtectionRuntime &runtime, Output &out, const Palette &palette, bool json)
        : m_runtime(runtime)
        , m_follower(runtime.logStore())
        , m_out(out)
        , m_palette(palette)
        , m_json(json) {}

    /// Goes by what the runtime has read.
    void printNew() { print(m_follower.takeNew(m_runtime.recentEvents())); }
    /// Looks into the log.
    void printRest() { print(m_follower.takeNew(m_runtime.logStore().recent(1))); }

  private:
    void print(const QList<MacProtectionEvent> &events) {
        // One flush an event: who reads a line at a time is not kept waiting for the next.
        for (const MacProtectionEvent &event : events) {
            if (m_json)
                m_out.write(visibleJson(jsonText(toJsonValue(event))) + '\n');
            else
                m_out.write(eventsText({event}, m_palette));
            if (!m_out.flush())
                return QCoreApplication::quit();
        }
    }

    MacProtectionRuntime &m_runtime;
    EventFollower m_follower;
    Output &m_out;
    const Palette m_palette;
    const bool m_json;
};

ExitStatus refuse(const CommandSurroundings &surroundings, const MonitoringClaim &claim) {
    if (claim.holder())
        return surroundings.couldNot(u"Only one program can watch at a time, and "_s + *claim.holder() +
                                     u" is watching already."_s);
    return surroundings.couldNot(claim.obstacle());
}

} // namespace

ExitStatus runWatch(CommandSurroundings &surroundings, bool json) {
    const MonitoringClaim claim(surroundings.supportFolder, u"kestrinctl watch"_s);
    if (!claim.isHeld())
        return refuse(surroundings, claim);

    bool ended = false;
    const auto end = [&ended] {
        ended = true;
        QCoreApplication::quit();
    };
    QObject::connect(&claim, &MonitoringClaim::lost, end);
    TerminationSignals signalsToEnd;
    QObject::connect(&signalsToEnd, &TerminationSignals::received, end);
    // A pipe whose reader has gone says so at once; without this it would be noticed at the next event.
    QSocketNotifier readerLeft(surroundings.out.descriptor(), QSocketNotifier::Exception);
    readerLeft.setEnabled(hasReader(surroundings.out.descriptor()));
    QObject::connect(&readerLeft, &QSocketNotifier::activated, end);

    CommandSession session(surroundings, CommandSession::Desktop::seen);
    QObject::connect(&session.runtime, &MacProtectionRuntime::sightChanged, [&] {
        const Sight &sight = session.runtime.sight();
        surroundings.say(sight.isFull() ? u"Everything that runs can be seen now."_s : sight.text());
    });
    QObject::connect(&session.runtime, &MacProtectionRuntime::storageFailed,
                     [&surroundings](const QString &sentence) { surroundings.say(sentence); });
    EventPrinter printer(session.runtime, surroundings.out, surroundings.palette, json);
    QObject::connect(&session.runtime, &MacProtectionRuntime::recentEventsChanged,
                     [&printer] { printer.printNew(); });
    session.flag.startRuntime();
    // What others recorded while the runtime was starting was not told by anybody.
    printer.printRest();
    surroundings.say(u"Watching."_s);

    // quit() before exec() would be forgotten.
    if (!ended && surroundings.out.flush())
        QCoreApplication::exec();
    // An event may have been recorded just before the end without having been noticed yet.
    printer.printRest();
    return claim.isHeld() ? ExitStatus::done : surroundings.couldNot(claim.lossSentence());
}

} // namespace kestrin::cli
