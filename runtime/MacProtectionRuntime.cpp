#include "runtime/MacProtectionRuntime.h"

#include "engine/NSWorkspaceAppInventoryService.h"
#include "engine/NSWorkspaceRiskAppActionPerformer.h"
#include "foundation/FileWatch.h"
#include "runtime/ReportedStores.h"
#include "runtime/StatusSummaries.h"

#include <QDir>
#include <QStandardPaths>
#include <QTimer>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace kestrin::runtime {

using namespace foundation;
using namespace shared;
using namespace engine;

namespace {

constexpr qsizetype recentEventLimit = 8;

QString nameOf(const RiskAppCatalog &catalog, const QString &id) {
    const RiskAppDefinition *found = findDefinition(catalog, id);
    return found ? found->displayName : u"Protected app"_s;
}

} // namespace

const QString MacProtectionRuntime::enforceActionsKey = u"kestrin.mac.enforceActions"_s;

MacProtectionRuntime::MacProtectionRuntime(UserDefaults &defaults, MacProtectionSurroundings surroundings,
                                           QObject *parent)
    : QObject(parent)
    , m_clock(std::move(surroundings.clock))
    , m_watchTime(std::move(surroundings.watchTime))
    , m_scheduleInterval(surroundings.scheduleInterval)
    , m_workspace(surroundings.workspace)
    , m_catalog(std::move(surroundings.ownApplications),
                [this](const StoreResult &read) { report(StoreUse::catalog, read); })
    , m_inventoryService(std::make_shared<NSWorkspaceAppInventoryService>(m_workspace))
    , m_settingsStore(std::make_shared<RememberedSettings>(
          std::move(surroundings.settingsStore),
          [this](const StoreResult &loaded) { report(StoreUse::loading, loaded); },
          [this](const StoreResult &saved) { report(StoreUse::saving, saved); },
          [this] { return m_catalog.ids(); }))
    , m_actionPerformer(std::make_shared<CarefulPerformer>(
          std::make_shared<NSWorkspaceRiskAppActionPerformer>(m_workspace), m_settingsStore))
    , m_logStore(
          std::make_shared<ReportedLog>(std::move(surroundings.logStore),
                                        [this](const StoreResult &result) { report(StoreUse::log, result); }))
    , m_defaults(defaults) {
    m_storedDefinitionIDs = m_settingsStore->load().protectedDefinitionIDs;
    m_protectedDefinitionIDs = m_storedDefinitionIDs.isEmpty() ? m_catalog.ids() : m_storedDefinitionIDs;
    adoptStoredModes();
    m_enforceActions = m_defaults.boolean(enforceActionsKey).value_or(false);
    connect(&m_catalog, &CurrentCatalog::changed, this, &MacProtectionRuntime::adoptCatalog);
    m_recentEvents = m_logStore->recent(recentEventLimit);
    refreshInventoryPreview();
}

MacProtectionRuntime::~MacProtectionRuntime() {
    if (m_scheduleTimer)
        m_scheduleTimer->stop();
    if (m_monitor)
        m_monitor->stop();
}

QUrl MacProtectionRuntime::applicationSupportURL() {
    QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    if (folder.isEmpty())
        folder = QDir::homePath() + u"/Library/Application Support"_s;
    return QUrl::fromLocalFile(folder + u"/Kestrin"_s);
}

QStringList MacProtectionRuntime::sortedProtectedDefinitionIDs() const {
    QStringList ids(m_protectedDefinitionIDs.cbegin(), m_protectedDefinitionIDs.cend());
    std::sort(ids.begin(), ids.end());
    return ids;
}

QString MacProtectionRuntime::monitorLabel() const {
    return monitorLabelFor(m_isMonitoring, m_enforceActions);
}

QString MacProtectionRuntime::lastCheckedLabel() const {
    return lastCheckedLabelFor(m_lastChecked);
}

QList<ProtectionDevice> MacProtectionRuntime::devices() const {
    return devicesFor(m_settingsStore->load().isEnabled, m_enforceActions);
}

qint64 MacProtectionRuntime::enabledScheduleCount() const {
    return enabledScheduleCountOf(m_modes);
}

qint64 MacProtectionRuntime::actionEventCount() const {
    return actionEventCountOf(m_recentEvents);
}

QString MacProtectionRuntime::diagnosticsText() const {
    return diagnosticsTextFor({m_isMonitoring, m_enforceActions, m_protectedDefinitionIDs.size(),
                               m_runningAppCount, m_matches.size()});
}

void MacProtectionRuntime::start(bool privacyModeOn, const PrivacyModeSetter &setPrivacyMode) {
    setPrivacyModeSetter(setPrivacyMode);
    m_tellsProblems = true;
    updateSettings([&](PrivacyModeSettings &settings, bool) { settings.isEnabled = privacyModeOn; });
    // Unless they have been set aside, which is told by itself.
    report(StoreUse::loading, {m_settingsStore->problem(), {}});
    report(StoreUse::defaults, {m_defaults.problem(), {}});
    report(StoreUse::log, {m_logStore->problem(), {}});
    m_catalog.reload();
    Q_EMIT summariesChanged();
    refreshInventoryPreview();
    refreshSight();
    configureRelaunchMonitor();
    startScheduleTimer();
    setMonitoring();
    followOtherProcesses();
}

void MacProtectionRuntime::setPrivacyModeSetter(const PrivacyModeSetter &setPrivacyMode) {
    m_privacyModeSetter = setPrivacyMode;
}

Outcome MacProtectionRuntime::updatePrivacyMode(bool privacyModeOn, bool recordChange) {
    Outcome outcome;
    bool wasOn = privacyModeOn;
    outcome.settings = updateSettings([&](PrivacyModeSettings &settings, bool) {
        wasOn = std::exchange(settings.isEnabled, privacyModeOn);
    });
    Q_EMIT summariesChanged();
    if (recordChange && wasOn != privacyModeOn)
        outcome.log = recordEvent(
            privacyModeOn ? MacProtectionEventKind::privacyModeOn : MacProtectionEventKind::privacyModeOff,
            privacyModeOn ? u"Privacy Mode is on for this Mac."_s : u"Privacy Mode is off for this Mac."_s);
    refreshInventoryPreview();
    return outcome;
}

Outcome MacProtectionRuntime::setProtectedDefinitions(const QStringList &ids, bool enabled) {
    Outcome outcome;
    const auto isNews = [&](const QString &id) { return m_protectedDefinitionIDs.contains(id) != enabled; };
    // What is so only as long as nobody's choice can be read becomes one.
    const bool isReadable = m_settingsStore->problem().isEmpty();
    if (isReadable && std::none_of(ids.cbegin(), ids.cend(), isNews))
        return outcome;
    outcome.settings = updateSettings([&](PrivacyModeSettings &, bool areStored) {
        for (const QString &id : ids) {
            if ((isReadable || areStored) && !isNews(id))
                continue;
            if (enabled)
                m_protectedDefinitionIDs.insert(id);
            else
                m_protectedDefinitionIDs.remove(id);
            outcome.changed.append(id);
        }
    });
    Q_EMIT protectedDefinitionIDsChanged();
    for (const QString &id : std::as_const(outcome.changed))
        outcome.log &= recordSelection(nameOf(catalog(), id), enabled);
    refreshInventoryPreview();
    return outcome;
}

StoreResult MacProtectionRuntime::recordSelection(const QString &name, bool enabled) {
    return recordEvent(
        MacProtectionEventKind::riskAppMatched,
        name + (enabled ? u" added to Mac Privacy Mode."_s : u" removed from Mac Privacy Mode."_s), name);
}

Outcome MacProtectionRuntime::addOwnApplication(const OwnApplication &application) {
    Outcome outcome;
    QString id;
    outcome.catalog = m_catalog.add(application, id);
    if (outcome.catalog.isKept())
        selectAdded(id, false, outcome);
    return outcome;
}

void MacProtectionRuntime::selectAdded(const QString &id, bool alone, Outcome &outcome) {
    outcome.settings = updateSettings([&](PrivacyModeSettings &, bool) {
        // Where nothing is selected everything is protected, this one too. Selecting it alone would leave
        // all others unprotected.
        if (alone || !m_protectedDefinitionIDs.isEmpty())
            m_protectedDefinitionIDs.insert(id);
    });
    Q_EMIT protectedDefinitionIDsChanged();
    if (outcome.settings.isKept()) {
        outcome.changed.append(id);
        outcome.log = recordSelection(nameOf(catalog(), id), true);
    }
    refreshInventoryPreview();
}

std::optional<RemovedApplication> MacProtectionRuntime::removedApplication(const QString &id) const {
    const QList<RiskAppDefinition> own = m_catalog.own();
    const auto found = std::find_if(own.cbegin(), own.cend(),
                                    [&](const RiskAppDefinition &definition) { return definition.id == id; });
    if (found == own.cend())
        return std::nullopt;
    using enum RemovedApplication::Selection;
    RemovedApplication removed{*found, found - own.cbegin(), none};
    if (m_protectedDefinitionIDs.isEmpty() || m_protectedDefinitionIDs.contains(id))
        removed.selection = m_protectedDefinitionIDs.size() == 1 ? alone : amongOthers;
    return removed;
}

Outcome MacProtectionRuntime::restoreOwnApplication(const RemovedApplication &removed) {
    Outcome outcome;
    outcome.catalog = m_catalog.restore(removed.definition, removed.place);
    using enum RemovedApplication::Selection;
    if (outcome.catalog.isKept() && removed.selection != none)
        selectAdded(removed.definition.id, removed.selection == alone, outcome);
    return outcome;
}

Outcome MacProtectionRuntime::removeOwnApplications(const QStringList &ids) {
    Outcome outcome;
    m_catalog.reload();
    outcome.catalog.problem = m_catalog.problem();
    if (!outcome.catalog.isKept())
        return outcome;
    QStringList own = ids;
    own.removeIf([this](const QString &id) { return !m_catalog.isOwn(id); });
    // What has protected them so far ends in the log too, selected or with everything else.
    QStringList names;
    outcome.settings = updateSettings([&](PrivacyModeSettings &, bool) {
        for (const QString &id : std::as_const(own)) {
            if (m_protectedDefinitionIDs.isEmpty() || m_protectedDefinitionIDs.contains(id))
                names.append(nameOf(catalog(), id));
        }
        m_protectedDefinitionIDs.subtract(QSet<QString>(own.cbegin(), own.cend()));
    });
    Q_EMIT protectedDefinitionIDsChanged();
    if (!outcome.settings.isKept())
        return outcome;
    for (const QString &name : std::as_const(names))
        outcome.log &= recordSelection(name, false);
    outcome.catalog = m_catalog.remove(own);
    if (outcome.catalog.isKept())
        outcome.changed = own;
    refreshInventoryPreview();
    return outcome;
}

Outcome MacProtectionRuntime::applyRecommendedRiskApps() {
    Outcome outcome;
    outcome.settings = updateSettings([this](auto &, bool) {
        const QSet<QString> &before = m_protectedDefinitionIDs;
        QSet<QString> own = before.isEmpty() ? m_catalog.ids() : before;
        own.removeIf([this](const QString &id) { return !m_catalog.isOwn(id); });
        m_protectedDefinitionIDs = defaultDefinitionIDs().unite(own);
    });
    Q_EMIT protectedDefinitionIDsChanged();
    outcome.log =
        recordEvent(MacProtectionEventKind::riskAppMatched, u"Recommended Mac protected app list applied."_s);
    refreshInventoryPreview();
    return outcome;
}

Outcome MacProtectionRuntime::setEnforceActions(bool enforceActions) {
    Outcome outcome;
    m_enforceActions = enforceActions;
    Q_EMIT enforceActionsChanged();
    Q_EMIT summariesChanged();
    outcome.defaults = m_defaults.setBoolean(enforceActionsKey, enforceActions);
    report(outcome.defaults);
    configureRelaunchMonitor();
    outcome.log =
        recordEvent(enforceActions ? MacProtectionEventKind::quitRequested : MacProtectionEventKind::dryRun,
                    enforceActions ? u"Mac app actions are enforcing for selected protected apps."_s
                                   : u"Mac app actions switched to preview mode."_s);
    outcome.log &= performCheck(!enforceActions).recorded;
    return outcome;
}

PrivacyModeCheck MacProtectionRuntime::performCheck(bool dryRun) {
    const qsizetype count = m_inventoryService->runningApps().size();
    PrivacyModeController controller(m_catalog.matcher(), m_inventoryService, m_actionPerformer, m_logStore,
                                     m_clock);
    PrivacyModeCheck check = controller.check(m_settingsStore->load(), dryRun);
    publishPreview(count, check.result.matches);
    m_lastChecked = m_clock();
    Q_EMIT lastCheckedChanged();
    reloadRecentEvents();
    tellQuitRequests(check.result.events);
    return check;
}

QList<MacProtectionEvent> MacProtectionRuntime::askAgain(const DeviceUse &use) {
    const RiskAppMatcher &matcher = m_catalog.matcher();
    const auto *const wanted =
        matcher.definition({use.processIdentifier, use.localizedName, use.bundleIdentifier, {}});
    if (!wanted)
        return {};
    QList<RunningMacApp> apps = m_inventoryService->runningApps();
    apps.removeIf([&](const RunningMacApp &app) { return matcher.definition(app) != wanted; });
    const auto isUser = [&](const RunningMacApp &app) {
        return app.processIdentifier == use.processIdentifier;
    };
    if (std::any_of(apps.cbegin(), apps.cend(), isUser))
        apps.removeIf([&](const RunningMacApp &app) { return !isUser(app); });
    PrivacyModeController controller(matcher, m_inventoryService, m_actionPerformer, m_logStore, m_clock);
    const PrivacyModeSettings settings = m_settingsStore->load();
    QList<MacProtectionEvent> events;
    for (const RunningMacApp &app : std::as_const(apps))
        events += controller.checkOne(app, settings, !m_enforceActions);
    refreshInventoryPreview();
    reloadRecentEvents();
    tellQuitRequests(events);
    return events;
}

bool MacProtectionRuntime::asksToQuit(const QString &id) const {
    const RiskAppDefinition *const definition = findDefinition(catalog(), id);
    return m_enforceActions && definition && m_settingsStore->load().asksToQuit(*definition);
}

void MacProtectionRuntime::refreshInventoryPreview() {
    const QList<RunningMacApp> apps = m_inventoryService->runningApps();
    const PrivacyModeSettings settings = m_settingsStore->load();
    QList<RiskAppMatch> matches = m_catalog.matcher().matches(apps);
    matches.removeIf([&](const RiskAppMatch &match) { return !settings.protects(match.definition); });
    publishPreview(apps.size(), matches);
}

void MacProtectionRuntime::refreshSight() {
    const Sight sight = m_workspace.sight();
    if (sight == m_sight)
        return;
    m_sight = sight;
    Q_EMIT sightChanged();
}

void MacProtectionRuntime::configureRelaunchMonitor() {
    if (m_monitor)
        m_monitor->stop();
    const auto reacted = [this](const MacProtectionEvent &event) {
        m_reactions.append(event);
        refreshLater();
    };
    m_monitor =
        std::make_unique<RiskAppRelaunchMonitor>(catalog(), m_settingsStore, m_actionPerformer, m_logStore,
                                                 !m_enforceActions, reacted, m_workspace, m_clock);
    m_monitor->start();
    setMonitoring();
}

/// The events of a launch, launches that come together and the log's watch, which hears of them too, all lead
/// to one refresh.
void MacProtectionRuntime::refreshLater() {
    if (std::exchange(m_isRefreshPosted, true))
        return;
    // A queued call is dropped when the runtime has gone by then.
    QMetaObject::invokeMethod(this, &MacProtectionRuntime::refresh, Qt::QueuedConnection);
}

void MacProtectionRuntime::refresh() {
    m_isRefreshPosted = false;
    const QList<MacProtectionEvent> reactions = std::exchange(m_reactions, {});
    reloadRecentEvents();
    // What other processes record tells nothing of what runs.
    if (reactions.isEmpty())
        return;
    refreshInventoryPreview();
    tellQuitRequests(reactions);
}

void MacProtectionRuntime::tellQuitRequests(const QList<MacProtectionEvent> &events) {
    for (const MacProtectionEvent &event : events) {
        if (event.kind == MacProtectionEventKind::quitRequested)
            Q_EMIT quitRequested(event);
    }
}

StoreResult MacProtectionRuntime::recordEvent(MacProtectionEventKind kind, const QString &message,
                                              const std::optional<QString> &appName,
                                              const std::optional<QString> &bundleIdentifier) {
    StoreResult recorded = m_logStore->tryAppend(
        MacProtectionEvent::create(m_clock(), kind, message, appName, bundleIdentifier));
    reloadRecentEvents();
    return recorded;
}

void MacProtectionRuntime::report(StoreUse use, const StoreResult &result) {
    if (!result.notice.isEmpty())
        Q_EMIT fileSetAside(result.notice);
    if (result.isKept())
        m_toldProblems.removeIf([use](const auto &told) { return told.value() == use; });
    else if (m_tellsProblems && !m_toldProblems.contains(result.problem)) {
        m_toldProblems.insert(result.problem, use);
        Q_EMIT storageFailed(result.problem);
    }
}

void MacProtectionRuntime::reloadRecentEvents() {
    // Before it is read, so that whatever comes in between is still told.
    if (m_logWatch)
        m_logWatch->acknowledge();
    m_recentEvents = m_logStore->recent(recentEventLimit);
    Q_EMIT recentEventsChanged();
}

void MacProtectionRuntime::publishPreview(qint64 runningAppCount, const QList<RiskAppMatch> &matches) {
    m_runningAppCount = runningAppCount;
    Q_EMIT runningAppCountChanged();
    m_matches = matches;
    Q_EMIT matchesChanged();
}

void MacProtectionRuntime::setMonitoring() {
    m_isMonitoring = true;
    Q_EMIT isMonitoringChanged();
    Q_EMIT summariesChanged();
}

/// Changes the settings, the selection included, while nobody else can.
StoreResult MacProtectionRuntime::updateSettings(const PrivacyModeSettingsStoring::Change &change) {
    bool isAdopted = false;
    StoreResult saved = m_settingsStore->update([&](PrivacyModeSettings &settings, bool areStored) {
        // What another process has selected since is not to be undone. A fallback is nobody's choice.
        isAdopted = areStored && settings.protectedDefinitionIDs != m_storedDefinitionIDs;
        if (isAdopted)
            m_protectedDefinitionIDs = settings.protectedDefinitionIDs;
        change(settings, areStored);
        settings.protectedDefinitionIDs = m_protectedDefinitionIDs;
    });
    if (saved.isKept())
        m_storedDefinitionIDs = m_protectedDefinitionIDs;
    if (isAdopted)
        Q_EMIT protectedDefinitionIDsChanged();
    return saved;
}

/// Whoever has changed it has recorded that.
void MacProtectionRuntime::adoptCatalog() {
    if (m_monitor)
        m_monitor->setCatalog(catalog());
    Q_EMIT catalogChanged();
    refreshInventoryPreview();
}

void MacProtectionRuntime::followOtherProcesses() {
    m_catalog.follow();
    connect(&m_defaults, &UserDefaults::changed, this, &MacProtectionRuntime::adoptStoredDefault,
            Qt::UniqueConnection);
    if (const QString file = m_settingsStore->file(); !file.isEmpty() && !m_settingsWatch) {
        m_settingsWatch = std::make_unique<FileWatch>(file);
        connect(m_settingsWatch.get(), &FileWatch::changed, this,
                &MacProtectionRuntime::adoptStoredSelection);
    }
    if (const QString file = m_logStore->file(); !file.isEmpty() && !m_logWatch) {
        m_logWatch = std::make_unique<FileWatch>(file);
        connect(m_logWatch.get(), &FileWatch::changed, this, &MacProtectionRuntime::refreshLater);
    }
}

void MacProtectionRuntime::adoptStoredSelection() {
    // The settings change with every switch of our own too; only another selection is news. An empty one
    // stays empty here: it counts as not yet chosen only when a program starts.
    const QSet<QString> stored = m_settingsStore->load().protectedDefinitionIDs;
    Q_EMIT summariesChanged();
    if (stored == m_storedDefinitionIDs)
        return;
    m_storedDefinitionIDs = stored;
    if (stored == m_protectedDefinitionIDs)
        return;
    m_protectedDefinitionIDs = stored;
    Q_EMIT protectedDefinitionIDsChanged();
    refreshInventoryPreview();
}

void MacProtectionRuntime::adoptStoredDefault(const QString &key) {
    // Whoever stored the value has recorded the change and run the check that goes with it.
    if (key == enforceActionsKey) {
        const bool stored = m_defaults.boolean(enforceActionsKey).value_or(false);
        if (stored == m_enforceActions)
            return;
        m_enforceActions = stored;
        Q_EMIT enforceActionsChanged();
        configureRelaunchMonitor();
    } else if (key == Pause::key) {
        followPause();
    } else {
        adoptStoredModes();
    }
}

} // namespace kestrin::runtime
