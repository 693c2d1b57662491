#include "cli/WatchCommand.h"

#include "cli/EventFollower.h"
#include "cli/EventPrinter.h"
#include "cli/HumanOutput.h"
#include "cli/UntilEnded.h"
#include "runtime/LiveUse.h"
#include "runtime/MonitoringClaim.h"

using namespace Qt::StringLiterals;

namespace kestrin::cli {

using namespace foundation;
using namespace engine;
using namespace runtime;

namespace {

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

    UntilEnded ended(surroundings.out);
    QObject::connect(&claim, &MonitoringClaim::lost, [&ended] { ended.end(); });

    CommandSession session(surroundings, CommandSession::Desktop::seen);
    QObject::connect(&session.runtime, &MacProtectionRuntime::sightChanged, [&] {
        const Sight &sight = session.runtime.sight();
        surroundings.say(sight.isFull() ? u"Everything that runs can be seen now."_s : sight.text());
    });
    QObject::connect(&session.runtime, &MacProtectionRuntime::storageFailed,
                     [&surroundings](const QString &sentence) { surroundings.say(sentence); });
    MacActivityLogStoring &log = session.runtime.logStore();
    EventFollower follower(log);
    EventPrinter printer(surroundings.out, surroundings.palette, json ? LogFormat::jsonl : LogFormat::text);
    QObject::connect(&session.runtime, &MacProtectionRuntime::recentEventsChanged,
                     [&] { printer.print(follower.takeNew(session.runtime.recentEvents())); });
    const auto printRest = [&] { printer.print(follower.takeNew(log.recent(1))); };
    LiveUse live(surroundings.defaults, surroundings.deviceUses, session.runtime);
    QObject::connect(&live, &LiveUse::sightChanged, [&] {
        if (live.isOn())
            surroundings.say(sightOfUsesText(live.sight()));
    });
    session.flag.startRuntime();
    // What others recorded while the runtime was starting was not told by anybody.
    printRest();
    surroundings.say(u"Watching."_s);
    live.start();

    ended.run();
    // What is seen of the uses when nobody looks any more is no news.
    QObject::disconnect(&live, &LiveUse::sightChanged, nullptr, nullptr);
    live.stop();
    // An event may have been recorded just before the end without having been noticed yet.
    printRest();
    return claim.isHeld() ? ExitStatus::done : surroundings.couldNot(claim.lossSentence());
}

} // namespace kestrin::cli
