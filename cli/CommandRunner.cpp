#include "cli/CommandRunner.h"

#include "cli/CommandLine.h"
#include "cli/HelpText.h"
#include "cli/HumanOutput.h"
#include "cli/LiveCommand.h"
#include "cli/LogCommand.h"
#include "cli/TerminationSignals.h"
#include "cli/WatchCommand.h"
#include "engine/NSWorkspaceAppInventoryService.h"
#include "foundation/JsonEncoding.h"
#include "foundation/TimePhrase.h"
#include "runtime/AddableApplications.h"
#include "runtime/LiveUse.h"
#include "runtime/StatusSummaries.h"

using namespace Qt::StringLiterals;

namespace kestrin::cli {

using namespace foundation;
using namespace shared;
using namespace engine;
using namespace runtime;

namespace {

using Desktop = CommandSession::Desktop;

/// Carries out the commands that end by themselves.
class CommandRunner {
  public:
    CommandRunner(const Invocation &invocation, CommandSurroundings &surroundings)
        : m_call(invocation)
        , m_surroundings(surroundings) {}

    ExitStatus run() {
        switch (m_call.command->command) {
        case Command::apps:
            return apps();
        case Command::catalog:
            return catalogCommand();
        case Command::check:
            return check();
        case Command::watch:
            return runWatch(m_surroundings, m_call.json);
        case Command::log:
            return runLog(m_surroundings, m_call);
        case Command::live:
            return live();
        case Command::status:
            return status();
        case Command::on:
            return switchPrivacyMode(true);
        case Command::off:
            return switchPrivacyMode(false);
        case Command::pause:
            return pause();
        case Command::resume:
            return resume();
        case Command::protect:
            return select(true);
        case Command::unprotect:
            return select(false);
        case Command::recommended:
            return recommended();
        case Command::enforce:
            return enforce();
        case Command::schedule:
            return schedule();
        case Command::autostart:
            return autostart();
        case Command::desktop:
            return desktop();
        case Command::diagnostics:
            return diagnostics();
        }
        return ExitStatus::couldNot;
    }

  private:
    /// Answers programs or people; only the one that is asked for is made.
    template <typename Json, typename Text>
    ExitStatus answer(const Json &json, const Text &text) {
        if (m_call.json)
            m_surroundings.out.write(visibleJson(jsonText(json(), JsonLayout::pretty)));
        else
            m_surroundings.out.write(text());
        return ExitStatus::done;
    }

    /// What people should know beside the answer; programs are not disturbed by it.
    void remark(const QString &sentence) {
        if (m_call.json)
            m_surroundings.say(sentence);
        else
            m_surroundings.out.write(visibleText(sentence) + u'\n');
    }

    /// Where what follows is not what was stored.
    void sayProblem(const QString &problem) {
        if (!problem.isEmpty())
            m_surroundings.say(problem);
    }

    void sayUnreadable() {
        sayProblem(m_surroundings.runtime.settingsStore->problem());
        // The file may be a large one, and has been read.
        if (!m_session->runtime.knowsOwnApplications())
            sayProblem(m_surroundings.runtime.ownApplications->problem());
        sayProblem(m_surroundings.defaults.problem());
    }

    void sayUnknown(const Monitor &monitor) {
        if (!monitor.problem.isEmpty())
            m_surroundings.say(u"Whether Privacy Mode is watched is not known: "_s + monitor.problem);
    }

    CommandSession &session(Desktop desktop) {
        m_session.emplace(m_surroundings, desktop);
        return *m_session;
    }

    /// For commands that have something to tell without a desktop too.
    CommandSession &sessionThatLooks() {
        CommandSession &looking = session(Desktop::seen);
        if (const Sight sight = m_surroundings.runtime.workspace.sight(); !sight.isFull())
            m_surroundings.say(sight.text());
        outcomeOf(looking.endPause());
        return looking;
    }

    /// Tells what cannot be seen.
    bool seesSomething() const {
        const Sight sight = m_surroundings.runtime.workspace.sight();
        if (!sight.isFull())
            m_surroundings.say(sight.text());
        return sight.extent != Sight::Extent::none;
    }

    ExitStatus apps() {
        if (!seesSomething())
            return ExitStatus::couldNot;
        const QList<RunningMacApp> found = runningApps();
        return answer([&] { return toJsonValue(found); },
                      [&] { return appsText(found, m_surroundings.palette); });
    }

    ExitStatus catalogCommand() {
        switch (m_call.catalogVerb) {
        case Invocation::CatalogVerb::list:
            break;
        case Invocation::CatalogVerb::add:
            return addApplication();
        case Invocation::CatalogVerb::remove:
            return removeApplications();
        case Invocation::CatalogVerb::candidates:
            return candidates();
        }
        session(Desktop::ignored);
        sayProblem(m_surroundings.runtime.settingsStore->problem());
        sayProblem(m_surroundings.runtime.ownApplications->problem());
        return printCatalog();
    }

    ExitStatus addApplication() {
        OwnApplication application = m_call.application;
        if (!m_call.running.isEmpty()) {
            const QString problem = takeRunning(application);
            if (!problem.isEmpty())
                return m_surroundings.couldNot(problem);
        }
        MacProtectionRuntime &runtime = session(Desktop::ignored).runtime;
        const Outcome outcome = runtime.addOwnApplication(application);
        if (!outcome.catalog.isKept())
            return m_surroundings.couldNot(u"Nothing was added: "_s + outcome.catalog.problem);
        const RiskAppDefinition &added = runtime.catalog().definitions.last();
        if (!outcome.settings.isKept())
            return m_surroundings.couldNot(u"It is in the catalog as "_s + added.id +
                                           u", but could not be selected: "_s + outcome.settings.problem);
        if (!m_call.json)
            remark(added.displayName + u" is in the catalog as "_s + added.id + u", and protected."_s);
        const ExitStatus status = outcomeOf(outcome);
        return status == ExitStatus::done ? printCatalog() : status;
    }

    /// Takes name and identifier from what runs. Returns why that cannot be.
    QString takeRunning(OwnApplication &application) {
        const Sight sight = m_surroundings.runtime.workspace.sight();
        const QList<RunningMacApp> apps = runningApps();
        if (apps.isEmpty() && !sight.isFull())
            return sight.text();
        QList<RunningMacApp> found;
        bool isProcess = false;
        const int process = m_call.running.toInt(&isProcess);
        const QString name = normalizedAppName(m_call.running);
        for (const RunningMacApp &app : apps) {
            if (isProcess && app.processIdentifier == process) {
                found = {app};
                break;
            }
            const bool isKnown = std::any_of(found.cbegin(), found.cend(), [&](const RunningMacApp &other) {
                return other.localizedName == app.localizedName &&
                       other.bundleIdentifier == app.bundleIdentifier;
            });
            if (!isKnown && normalizedAppName(app.localizedName) == name)
                found.append(app);
        }
        if (found.isEmpty())
            return u"No running application is \""_s + m_call.running +
                   u"\"; \"kestrinctl apps\" lists those that run."_s;
        if (found.size() > 1) {
            QStringList processes;
            for (const RunningMacApp &app : std::as_const(found))
                processes.append(QString::number(app.processIdentifier));
            return u"Several running applications are called \""_s + m_call.running +
                   u"\"; choose one by its process: "_s + processes.join(u" or "_s) + u'.';
        }
        application.name = found.first().localizedName;
        if (const auto &identifier = found.first().bundleIdentifier)
            application.identifiers.prepend(*identifier);
        return {};
    }

    ExitStatus removeApplications() {
        if (const QString problem = m_surroundings.runtime.ownApplications->problem(); !problem.isEmpty())
            return m_surroundings.couldNot(u"Nothing was removed: "_s + problem);
        MacProtectionRuntime &runtime = session(Desktop::ignored).runtime;
        for (const QString &id : m_call.ids) {
            if (runtime.isOwnApplication(id))
                continue;
            m_surroundings.say(
                u'"' + id +
                (defaultDefinitionIDs().contains(id)
                     ? u"\" is built in and stays; \"kestrinctl unprotect "_s + id + u"\" leaves it alone."_s
                     : u"\" is not an application of your own; \"kestrinctl catalog\" "
                       "lists them."_s));
            return ExitStatus::usedWrongly;
        }
        const Outcome outcome = runtime.removeOwnApplications(m_call.ids);
        if (!outcome.catalog.isKept())
            return m_surroundings.couldNot(u"Nothing was removed: "_s + outcome.catalog.problem);
        const ExitStatus status = outcomeOf(outcome);
        if (status != ExitStatus::done)
            return status;
        remarkIfNothingIsSelected(runtime);
        return printCatalog();
    }

    void remarkIfNothingIsSelected(const MacProtectionRuntime &runtime) {
        if (runtime.protectedDefinitionIDs().isEmpty())
            remark(u"Nothing is selected now, and that protects everything; \"kestrinctl off\" turns "
                   "Privacy Mode off."_s);
    }

    ExitStatus candidates() {
        const RiskAppCatalog &catalog = session(Desktop::ignored).runtime.catalog();
        sayProblem(m_surroundings.runtime.ownApplications->problem());
        const auto found = addableApplications(catalog, runningApps(), m_surroundings.installed.list());
        return answer([&] { return toJson(found); }, [&] { return candidatesText(found); });
    }

    static QJsonArray toJson(const QList<AddableApplication> &applications) {
        QJsonArray array;
        for (const AddableApplication &application : applications) {
            QJsonObject object{{u"name"_s, application.name}, {u"running"_s, application.isRunning}};
            if (application.identifier)
                object.insert(u"identifier"_s, *application.identifier);
            array.append(object);
        }
        return array;
    }

    QList<RunningMacApp> runningApps() {
        return NSWorkspaceAppInventoryService(m_surroundings.runtime.workspace).runningApps();
    }

    ExitStatus printCatalog() {
        const MacProtectionRuntime &runtime = m_session->runtime;
        return answer([&] { return toJsonValue(runtime.catalog()); },
                      [&] {
                          return catalogText(runtime.catalog(), runtime.protectedDefinitionIDs(),
                                             m_surroundings.palette);
                      });
    }

    ExitStatus check() {
        if (!seesSomething())
            return ExitStatus::couldNot;
        CommandSession &checking = session(Desktop::seen);
        const bool previews = m_call.preview || !checking.runtime.enforceActions();
        // Nobody is asked to quit because a choice cannot be read.
        if (const QString problem = m_surroundings.runtime.settingsStore->problem();
            !previews && !problem.isEmpty())
            return m_surroundings.couldNot(u"Nothing was checked: "_s + problem);
        if (const Outcome settled = checking.settleFlag(); !settled.isKept())
            return outcomeOf(settled);
        const PrivacyModeCheck check = performCheck(previews);
        if (check.recorded.isKept())
            sayUnreadable();
        // What was done is told in any case.
        answer([&] { return toJsonValue(check.result); },
               [&] {
                   return runResultText(check.result, checking.runtime.runningAppCount(),
                                        m_surroundings.palette);
               });
        Outcome outcome;
        outcome.log = check.recorded;
        return outcomeOf(outcome);
    }

    /// What was asked for is in the log before a signal ends the call.
    PrivacyModeCheck performCheck(bool previews) {
        const HeldBackSignals untilRecorded;
        return m_session->runtime.performCheck(previews);
    }

    ExitStatus status() {
        sessionThatLooks();
        return printStatus();
    }

    ExitStatus printStatus() {
        sayUnreadable();
        const StatusReport report = m_session->status();
        sayUnknown(report.monitor);
        return answer([&] { return report.toJson(); },
                      [&] { return statusText(report, m_surroundings.palette); });
    }

    ExitStatus switchPrivacyMode(bool on) {
        sessionThatLooks();
        return changeFlag([on](PrivacyModeFlag &flag) { return flag.setOn(on); });
    }

    template <typename Change>
    ExitStatus changeFlag(const Change &change) {
        // Nothing is to follow from a switch that could not be kept.
        if (const QString obstacle = m_surroundings.defaults.obstacle(); !obstacle.isEmpty())
            return couldNotSave(obstacle);
        return afterChange(change(m_session->flag));
    }

    ExitStatus pause() {
        const CommandSession &changing = sessionThatLooks();
        if (!changing.flag.isOn() && !changing.flag.pausedUntil())
            return m_surroundings.couldNot(u"There is nothing to pause, because Privacy Mode is off; "
                                           "\"kestrinctl on\" turns it on."_s);
        const auto end = endOfPhrase(m_call.pauseEnd, changing.runtime.now().toLocalTime());
        if (!end)
            return m_surroundings.couldNot(u"Nothing was paused, because that time has passed."_s);
        return changeFlag([&](PrivacyModeFlag &flag) { return flag.pause(*end); });
    }

    ExitStatus resume() {
        const CommandSession &changing = sessionThatLooks();
        if (changing.flag.pausedUntil())
            return changeFlag([](PrivacyModeFlag &flag) { return flag.setOn(true); });
        if (!changing.flag.isOn())
            return m_surroundings.couldNot(
                u"Privacy Mode is not paused but off; \"kestrinctl on\" turns it on."_s);
        remark(u"Privacy Mode is not paused."_s);
        return printStatus();
    }

    ExitStatus select(bool isProtected) {
        CommandSession &changing = sessionThatLooks();
        const Outcome outcome = changing.runtime.setProtectedDefinitions(m_call.ids, isProtected);
        if (outcome.isKept()) {
            remarkUnchanged(outcome, isProtected ? u"protected already"_s : u"not protected"_s);
            remarkIfNothingIsSelected(changing.runtime);
        }
        return afterChange(outcome);
    }

    void remarkUnchanged(const Outcome &outcome, const QString &state) {
        QStringList unchanged = m_call.ids;
        unchanged.removeIf([&](const QString &id) { return outcome.changed.contains(id); });
        if (unchanged.isEmpty())
            return;
        const QString all = unchanged.size() == m_call.ids.size() ? u"Nothing was changed: "_s : QString();
        remark(all + unchanged.join(u", "_s) + (unchanged.size() == 1 ? u" is "_s : u" are "_s) + state +
               u'.');
    }

    ExitStatus recommended() { return afterChange(sessionThatLooks().runtime.applyRecommendedRiskApps()); }

    ExitStatus enforce() {
        CommandSession &changing = sessionThatLooks();
        const bool on = *m_call.enable;
        // Stored before anything follows from it: nobody is asked to quit for a choice that could not be
        // kept.
        const StoreResult stored =
            m_surroundings.defaults.setBoolean(MacProtectionRuntime::enforceActionsKey, on);
        changing.runtime.report(stored);
        if (!stored.isKept())
            return couldNotSave(stored.problem);
        if (const QString problem = m_surroundings.runtime.settingsStore->problem(); on && !problem.isEmpty())
            return m_surroundings.couldNot(u"The choice is stored, and nothing was checked: "_s + problem);
        if (const Outcome settled = changing.settleFlag(); !settled.isKept())
            return outcomeOf(settled);
        // Its relaunch monitor hears of nothing: launches are told by an event loop, and none runs here. A
        // watching program makes a new monitor of its own when it sees the choice change.
        const Outcome outcome = enforceUndisturbed(on);
        // A check publishes what it acted on, the status tells what is there.
        changing.runtime.refreshInventoryPreview();
        return afterChange(outcome);
    }

    Outcome enforceUndisturbed(bool on) {
        const HeldBackSignals untilRecorded;
        return m_session->runtime.setEnforceActions(on);
    }

    ExitStatus schedule() {
        CommandSession &changing = session(Desktop::ignored);
        if (m_call.enable) {
            const ExitStatus outcome = switchPresets(changing);
            if (outcome != ExitStatus::done)
                return outcome;
            // By these the schedules switch nothing.
            sayProblem(m_surroundings.runtime.settingsStore->problem());
        }
        sayProblem(m_surroundings.defaults.problem());
        const QList<ModePreset> &modes = changing.runtime.modes();
        const auto wanted = changing.runtime.scheduledPrivacyModeState(m_surroundings.runtime.clock());
        return answer([&] { return toJsonValue(modes); },
                      [&] { return scheduleText(modes, wanted, m_surroundings.palette); });
    }

    ExitStatus switchPresets(CommandSession &changing) {
        if (const QString obstacle = m_surroundings.defaults.obstacle(); !obstacle.isEmpty())
            return couldNotSave(obstacle);
        if (const Outcome settled = changing.settleFlag(); !settled.isKept())
            return m_surroundings.couldNot(u"The presets were not changed: "_s + settled.settings.problem);
        const bool enabled = *m_call.enable;
        const Outcome outcome = changing.runtime.setModes(m_call.ids, enabled);
        if (outcome.isKept()) {
            remarkUnchanged(outcome, enabled ? u"enabled already"_s : u"disabled already"_s);
            if (outcome.switchedBySchedules)
                remark(*outcome.switchedBySchedules ? u"The schedules turned Privacy Mode on."_s
                                                    : u"The schedules turned Privacy Mode off."_s);
        }
        if (outcome.defaults.isKept() && !outcome.settings.isKept())
            return m_surroundings.couldNot(
                u"The presets are stored, but Privacy Mode could not be switched by them: "_s +
                outcome.settings.problem);
        return outcomeOf(outcome);
    }

    ExitStatus autostart() {
        LoginItem &item = m_surroundings.loginItem;
        if (m_call.enable) {
            if (const StoreResult result = item.setEnabled(*m_call.enable); !result.isKept())
                return autostartNotChanged(result.problem);
        }
        const bool startsAtLogin = item.isEnabled();
        return answer(
            [&] {
                return QJsonObject{{u"autostart"_s, startsAtLogin}};
            },
            [&] { return autostartText(startsAtLogin); });
    }

    ExitStatus live() {
        if (!m_call.enable)
            return runLive(m_surroundings, m_call);
        const bool on = *m_call.enable;
        LiveUse live(m_surroundings.defaults, m_surroundings.deviceUses, session(Desktop::ignored).runtime);
        const StoreResult result = live.setOn(on);
        Outcome outcome;
        (live.isOn() == on ? outcome.log : outcome.defaults) = result;
        if (const ExitStatus status = outcomeOf(outcome); status != ExitStatus::done)
            return status;
        return answer([&] { return QJsonObject{{u"live"_s, on}}; }, [&] { return liveSwitchText(on); });
    }

    ExitStatus autostartNotChanged(const QString &problem) {
        if (*m_call.enable && !m_surroundings.loginItem.hasProgram())
            return m_surroundings.couldNot(u"Kestrin cannot start at login, because its window, the program "
                                           "kestrin, is neither beside kestrinctl nor in PATH."_s);
        return couldNotSave(problem);
    }

    ExitStatus desktop() {
        DesktopPermission &permission = m_surroundings.permission;
        const auto [isDone, sentence] = *m_call.enable ? permission.enable() : permission.disable();
        if (!isDone)
            return m_surroundings.couldNot(sentence);
        m_surroundings.out.write(visibleText(sentence) + u'\n');
        return ExitStatus::done;
    }

    ExitStatus diagnostics() {
        const CommandSession &looking = sessionThatLooks();
        const MacProtectionRuntime &runtime = looking.runtime;
        sayUnreadable();
        const Monitor monitor = looking.monitor();
        sayUnknown(monitor);
        m_surroundings.out.write(diagnosticsTextFor({monitor.isThere(), runtime.enforceActions(),
                                                     runtime.protectedDefinitionIDs().size(),
                                                     runtime.runningAppCount(), runtime.matches().size()}) +
                                 u'\n');
        return ExitStatus::done;
    }

    /// The status, unless something could not be kept.
    ExitStatus afterChange(const Outcome &outcome) {
        const ExitStatus status = outcomeOf(outcome);
        return status == ExitStatus::done ? printStatus() : status;
    }

    /// Says what could not be kept.
    ExitStatus outcomeOf(const Outcome &outcome) {
        if (!outcome.settings.isKept())
            return m_surroundings.couldNot(u"The settings are not what was asked for: "_s +
                                           outcome.settings.problem);
        if (!outcome.defaults.isKept())
            return couldNotSave(outcome.defaults.problem);
        if (!outcome.log.isKept())
            return m_surroundings.couldNot(u"It was done but could not be recorded: "_s +
                                           outcome.log.problem);
        return ExitStatus::done;
    }

    ExitStatus couldNotSave(const QString &problem) {
        return m_surroundings.couldNot(u"The change could not be saved: "_s + problem);
    }

    const Invocation &m_call;
    CommandSurroundings &m_surroundings;
    std::optional<CommandSession> m_session;
};

QStringList ownIDs(const CommandSurroundings &surroundings, QString &problem) {
    CurrentCatalog catalog(surroundings.runtime.ownApplications, {});
    problem = catalog.problem();
    QStringList ids;
    for (const RiskAppDefinition &definition : catalog.own())
        ids.append(definition.id);
    return ids;
}

ExitStatus carryOut(const QStringList &arguments, CommandSurroundings &surroundings) {
    QString ownProblem;
    const auto parsed = parseCommandLine(arguments, [&] { return ownIDs(surroundings, ownProblem); });
    if (const auto *wrong = std::get_if<UsageError>(&parsed)) {
        surroundings.say(wrong->sentence);
        if (!ownProblem.isEmpty())
            surroundings.say(ownProblem);
        return ExitStatus::usedWrongly;
    }
    const auto &invocation = std::get<Invocation>(parsed);
    switch (invocation.action) {
    case Invocation::Action::help:
        surroundings.out.write(invocation.command ? commandHelp(*invocation.command) : programHelp());
        return ExitStatus::done;
    case Invocation::Action::version:
        surroundings.out.write(versionText());
        return ExitStatus::done;
    case Invocation::Action::run:
        break;
    }
    return CommandRunner(invocation, surroundings).run();
}

} // namespace

ExitStatus runCommandLine(const QStringList &arguments, CommandSurroundings &surroundings) {
    const ExitStatus status = carryOut(arguments, surroundings);
    surroundings.out.flush();
    if (surroundings.out.isBroken())
        return surroundings.couldNot(u"The output could not be written: "_s + surroundings.out.problem() +
                                     u'.');
    return status;
}

} // namespace kestrin::cli
