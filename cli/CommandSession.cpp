#include "cli/CommandSession.h"

#include "engine/workspace/InMemoryWorkspace.h"
#include "runtime/LiveUse.h"
#include "runtime/MonitoringClaim.h"

#include <QFileInfo>

#include <algorithm>

namespace kestrin::cli {

using namespace engine;
using namespace runtime;

namespace {

MacProtectionSurroundings runtimeSurroundings(const MacProtectionSurroundings &all,
                                              CommandSession::Desktop desktop) {
    static InMemoryWorkspace nothing;
    Workspace &workspace = desktop == CommandSession::Desktop::ignored ? nothing : all.workspace;
    return {workspace, all.settingsStore, all.logStore,        all.ownApplications,
            all.clock, all.watchTime,     all.scheduleInterval};
}

/// Who is silent is not worth more.
constexpr std::chrono::milliseconds patienceForStatus{200};

} // namespace

void CommandSurroundings::say(const QString &sentence) const {
    err.write(visibleText(sentence) + u'\n');
    err.flush();
}

ExitStatus CommandSurroundings::couldNot(const QString &sentence) const {
    say(sentence);
    return ExitStatus::couldNot;
}

CommandSession::CommandSession(CommandSurroundings &commandSurroundings, Desktop desktop)
    : surroundings(commandSurroundings)
    , runtime(surroundings.defaults, runtimeSurroundings(surroundings.runtime, desktop))
    , flag(surroundings.defaults, runtime) {
    QObject::connect(&runtime, &MacProtectionRuntime::fileSetAside,
                     [&all = surroundings](const QString &sentence) { all.say(sentence); });
}

Monitor CommandSession::monitor() const {
    Monitor found;
    found.holder = MonitoringClaim::currentHolder(surroundings.supportFolder, found.problem);
    return found;
}

LiveReport CommandSession::live() const {
    if (!LiveUse::isOn(surroundings.defaults))
        return {false, {}, {}};
    DeviceUses &deviceUses = surroundings.deviceUses;
    deviceUses.setPatience(patienceForStatus);
    // All questions are one conversation.
    const auto subscription = deviceUses.subscribe({});
    return {true, deviceUses.uses(), deviceUses.sight()};
}

StatusReport CommandSession::status() const {
    const QSet<QString> selection = runtime.savedDefinitionIDs();
    QStringList isProtected(selection.cbegin(), selection.cend());
    std::sort(isProtected.begin(), isProtected.end());
    QStringList known;
    QStringList unprotected;
    for (const RiskAppDefinition &definition : runtime.catalog().definitions)
        (selection.contains(definition.id) ? known : unprotected).append(definition.id);
    return {
        flag.isOn(),
        flag.pausedUntil(),
        runtime.now(),
        runtime.enforceActions(),
        monitor(),
        isProtected,
        known,
        unprotected,
        runtime.runningAppCount(),
        surroundings.runtime.workspace.sight(),
        runtime.matches(),
        live(),
        runtime.modes(),
        runtime.scheduledPrivacyModeState(surroundings.runtime.clock()),
        runtime.devices(),
        QFileInfo(surroundings.runtime.logStore->file()).size(),
    };
}

Outcome CommandSession::endPause() {
    return runtime.isPauseOver() && monitor().isThere() == false ? runtime.endPause() : Outcome();
}

Outcome CommandSession::settleFlag() {
    if (const Outcome ended = endPause(); !ended.isKept())
        return ended;
    if (monitor().isThere() == false && runtime.isSavedOn() != flag.isOn() && runtime.areSettingsChosen())
        return runtime.updatePrivacyMode(flag.isOn(), false);
    return {};
}

} // namespace kestrin::cli
