#include "cli/CommandTable.h"

#include "engine/RiskAppCatalog.h"
#include "shared/KestrinSeedData.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace kestrin::cli {

using namespace foundation;
using namespace shared;
using namespace engine;

const QList<CommandDescription> &commandTable() {
    static const QList<CommandDescription> table{
        {Command::apps,
         u"apps"_s,
         u"List the running applications as Kestrin sees them"_s,
         u"An application is listed when a task bar would show it. Without a desktop session nothing can be "
         "listed, and the exit status is 1."_s,
         {{u"kestrinctl apps"_s, u"process, name and identifier of each application"_s},
          {u"kestrinctl apps --json | jq -r '.[].localizedName'"_s, u"only the names"_s}}},
        {Command::catalog,
         u"catalog"_s,
         u"List the applications that Kestrin knows, and which are protected"_s,
         u"The first column is what protect and unprotect take. Applications whose action is Allow are "
         "reported and never asked to quit. With --json the definitions are printed without the selection, "
         "which status --json tells. Add puts an application of your own behind the built-in ones and "
         "protects it; remove takes it out again. Running programs follow at once, and both print the "
         "catalog afterwards. An application is recognised by its name, and by the identifier that apps "
         "shows. Candidates lists what could be added, those that run first."_s,
         {{u"kestrinctl catalog"_s, u"the table, protected applications marked"_s},
          {u"kestrinctl catalog --json | jq -r '.definitions[].id'"_s, u"every identifier"_s},
          {u"kestrinctl catalog add --running Signal"_s, u"add what runs under this name"_s},
          {u"kestrinctl catalog add Signal --category videoCall --action quit"_s, u"add it as you want it"_s},
          {u"kestrinctl catalog remove signal"_s, u"remove it again"_s},
          {u"kestrinctl catalog candidates"_s, u"what runs or is installed and could be added"_s}},
         CommandArguments::catalogChange,
         {u"--json"_s},
         {u"--running"_s, u"--identifier"_s, u"--alias"_s, u"--category"_s, u"--action"_s}},
        {Command::check,
         u"check"_s,
         u"Check the running applications once"_s,
         u"Previews or asks protected applications to quit, as chosen with enforce. Everything it finds is "
         "recorded in the activity log. Without a desktop session nothing is checked, and the exit status "
         "is 1."_s,
         {{u"kestrinctl check"_s, u"one check, as chosen"_s},
          {u"kestrinctl check --preview"_s, u"ask nobody to quit, whatever is chosen"_s}},
         CommandArguments::none,
         {u"--preview"_s, u"--json"_s}},
        {Command::watch,
         u"watch"_s,
         u"React to launches, run the schedules and print each new event"_s,
         u"Runs until Ctrl-C or SIGTERM and says \"Watching.\" on standard error when it is ready. Events of "
         "other Kestrin programs are printed too. Only one program watches at a time; a second one refuses "
         "with exit status 1. With --json each event is one line."_s,
         {{u"kestrinctl watch"_s, u"watch in this terminal"_s},
          {u"kestrinctl watch --json | jq -r '.message'"_s, u"only the sentences, as they come"_s}}},
        {Command::log,
         u"log"_s,
         u"Print events of the activity log"_s,
         u"The newest event comes first. There are at most 8 of them, unless a number, a time or --all is "
         u"given. Only "
         "events for which everything holds that is asked are printed; --kind and --app may be given several "
         "times, "
         "and one of each has to hold. NAME and TEXT are parts of what is looked for, in capitals or not. "
         "TIME is a "
         "date, a time or both, \"now\", \"today\", \"yesterday\", \"2 hours ago\", -90min or @ and seconds "
         "since "
         "1970, in local time unless it ends in UTC. With --follow the oldest comes first, and new events "
         "are printed "
         "as they are recorded, until Ctrl-C; JSON is one object a line then."_s,
         {{u"kestrinctl log"_s, u"the newest 8"_s},
          {u"kestrinctl log --since today --app zoom"_s, u"what Zoom did today"_s},
          {u"kestrinctl log --since yesterday --until today"_s, u"what happened yesterday"_s},
          {u"kestrinctl log --all --format csv"_s, u"everything, for a spreadsheet"_s},
          {u"kestrinctl log --follow --kind quitRequested"_s, u"each quit request as it is sent"_s}},
         CommandArguments::none,
         {u"--limit"_s, u"--all"_s, u"--since"_s, u"--until"_s, u"--kind"_s, u"--app"_s, u"--search"_s,
          u"--follow"_s, u"--format"_s, u"--json"_s}},
        {Command::live,
         u"live"_s,
         u"Tell who uses microphone, camera or screen right now"_s,
         u"Applications are listed that listen, watch or record at this moment, whether Kestrin protects "
         "them or not. What cannot be seen here is said on standard error. With --follow each application "
         "that starts or stops is printed as it does, until Ctrl-C; JSON is one object a line then. Nothing "
         "is closed by it. Off keeps Kestrin, its window included, from asking anybody: nobody is told of "
         "then, and nothing about it is recorded. On, which it is to begin with, takes that back."_s,
         {{u"kestrinctl live"_s, u"who has the microphone, who the camera"_s},
          {u"kestrinctl live --follow"_s, u"each time somebody starts or stops"_s},
          {u"kestrinctl live off"_s, u"ask nobody any more"_s},
          {u"kestrinctl live --json | jq -r '.[].localizedName'"_s, u"only the names"_s}},
         CommandArguments::maybeOnOrOff,
         {u"--follow"_s, u"--json"_s}},
        {Command::status,
         u"status"_s,
         u"Tell how Privacy Mode, monitor, selection and schedules stand"_s,
         u"The monitor is off while no program watches. What is counted is what a check would find now. Live "
         "use is told as \"kestrinctl live\" tells it, by those who answer at once."_s,
         {{u"kestrinctl status"_s, u"the state of everything"_s},
          {u"kestrinctl status --json | jq .privacyModeOn"_s, u"only whether Privacy Mode is on"_s}}},
        {Command::on,
         u"on"_s,
         u"Turn Privacy Mode on"_s,
         u"Prints the status afterwards. While a program watches, an enabled schedule that wants the "
         "opposite sets it again within a minute."_s,
         {{u"kestrinctl on"_s, u"turn it on"_s}}},
        {Command::off,
         u"off"_s,
         u"Turn Privacy Mode off"_s,
         u"Prints the status afterwards. While a program watches, an enabled schedule that wants the "
         "opposite sets it again within a minute."_s,
         {{u"kestrinctl off"_s, u"turn it off"_s},
          {u"kestrinctl schedule disable sleep"_s, u"keep Sleep Mode from turning it on again"_s}}},
        {Command::pause,
         u"pause"_s,
         u"Turn Privacy Mode off for a while"_s,
         u"Until then Privacy Mode is off and the schedules rest; afterwards it is on again, and the "
         u"schedules "
         "decide as always. A pause lasts over restarts, and for 7 days at most; another one takes its "
         "place, "
         "and turning Privacy Mode on or off ends it. Prints the status afterwards, which tells until when."_s,
         {{u"kestrinctl pause 90m"_s, u"for an hour and a half"_s},
          {u"kestrinctl pause 1h30m"_s, u"the same"_s},
          {u"kestrinctl pause until 18:00"_s, u"until it is 6 PM the next time"_s},
          {u"kestrinctl pause until tomorrow"_s, u"for the rest of the day"_s}},
         CommandArguments::pauseEnd},
        {Command::resume,
         u"resume"_s,
         u"End a pause of Privacy Mode"_s,
         u"Turns Privacy Mode on before the pause is over, and prints the status afterwards."_s,
         {{u"kestrinctl resume"_s, u"turn it on now"_s}}},
        {Command::protect,
         u"protect"_s,
         u"Protect applications of the catalog"_s,
         u"Takes identifiers of the catalog and prints the status afterwards."_s,
         {{u"kestrinctl protect zoom teams"_s, u"protect both"_s}},
         CommandArguments::definitionIDs},
        {Command::unprotect,
         u"unprotect"_s,
         u"Stop protecting applications of the catalog"_s,
         u"Takes identifiers of the catalog and prints the status afterwards. A selection that is empty "
         "protects everything; to protect nothing, turn Privacy Mode off."_s,
         {{u"kestrinctl unprotect chrome safari"_s, u"leave both alone"_s}},
         CommandArguments::definitionIDs},
        {Command::recommended,
         u"recommended"_s,
         u"Protect every application of the catalog"_s,
         u"Prints the status afterwards."_s,
         {{u"kestrinctl recommended"_s, u"select the whole catalog"_s}}},
        {Command::enforce,
         u"enforce"_s,
         u"Choose between quit requests and previews"_s,
         u"On asks protected applications to quit, off only tells what would be asked. Each call stores "
         "the choice, records it and runs a check, so \"enforce on\" asks at once. Prints the status "
         "afterwards."_s,
         {{u"kestrinctl enforce on"_s, u"ask protected applications to quit, beginning now"_s},
          {u"kestrinctl enforce off"_s, u"only preview"_s}},
         CommandArguments::onOrOff},
        {Command::schedule,
         u"schedule"_s,
         u"List the schedule presets, enable or disable them"_s,
         u"An enabled schedule turns Privacy Mode on in its times and off outside of them. Switching one "
         "also does at once what the schedules want then; afterwards they are followed while a program "
         "watches."_s,
         {{u"kestrinctl schedule"_s, u"the presets, enabled ones marked"_s},
          {u"kestrinctl schedule enable focus"_s, u"let Focus Mode take part"_s},
          {u"kestrinctl schedule disable sleep away"_s, u"leave the switch to yourself"_s}},
         CommandArguments::presetSwitch},
        {Command::autostart,
         u"autostart"_s,
         u"Tell or choose whether Kestrin starts at login"_s,
         u"It does not, unless chosen. When it does, it protects from login on without showing its window. "
         "On and off change what happens at the next login; nothing is started or ended now. Prints "
         "afterwards how it is."_s,
         {{u"kestrinctl autostart"_s, u"whether it does"_s},
          {u"kestrinctl autostart on"_s, u"start at login from now on"_s},
          {u"kestrinctl autostart off"_s, u"do not start at login any more"_s}},
         CommandArguments::maybeOnOrOff},
        {Command::desktop,
         u"desktop"_s,
         u"Let the desktop show its windows to Kestrin, or no longer"_s,
         u"Some desktops let no program see what runs before their user says so. On GNOME, enable switches "
         "on Kestrin's extension, which answers the installed Kestrin alone, or also this one where it is "
         "another. On KDE Plasma only a Kestrin that is not installed needs it. Disable takes both back."_s,
         {{u"kestrinctl desktop enable"_s, u"let this Kestrin see which applications run"_s},
          {u"kestrinctl desktop disable"_s, u"take that back"_s}},
         CommandArguments::enableOrDisable,
         {}},
        {Command::diagnostics,
         u"diagnostics"_s,
         u"Print five lines for a report"_s,
         u"The text names no application and no file."_s,
         {{u"kestrinctl diagnostics"_s, u"the five lines"_s}},
         CommandArguments::none,
         {}},
    };
    return table;
}

const CommandDescription *findCommand(const QString &name) {
    const QList<CommandDescription> &table = commandTable();
    const auto found = std::find_if(table.cbegin(), table.cend(),
                                    [&](const CommandDescription &entry) { return entry.name == name; });
    return found == table.cend() ? nullptr : &*found;
}

QStringList commandNames() {
    QStringList names;
    for (const CommandDescription &entry : commandTable())
        names.append(entry.name);
    return names;
}

QStringList definitionIDs() {
    QStringList ids;
    for (const RiskAppDefinition &definition : RiskAppCatalog::defaultDefinitions())
        ids.append(definition.id);
    return ids;
}

QStringList presetIDs() {
    QStringList ids;
    for (const ModePreset &mode : KestrinSeedData::modes())
        ids.append(mode.id);
    return ids;
}

} // namespace kestrin::cli
