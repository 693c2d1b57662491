#pragma once

#include "engine/PrivacyModeController.h"
#include "engine/PrivacyModeSettingsStoring.h"
#include "engine/RiskAppRelaunchMonitor.h"
#include "engine/live/DeviceUse.h"
#include "runtime/CurrentCatalog.h"
#include "runtime/Outcome.h"
#include "runtime/PauseClock.h"
#include "runtime/ReportedStores.h"
#include "runtime/ScheduleOutlook.h"
#include "runtime/TimeChangeWatch.h"
#include "runtime/UserDefaults.h"
#include "shared/DomainRecords.h"

#include <QHash>
#include <QObject>
#include <QSet>
#include <QUrl>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

class QTimer;

namespace kestrin::foundation {
class FileWatch;
}

namespace kestrin::runtime {

/// What the runtime stands on, which the program chooses that makes it.
struct MacProtectionSurroundings {
    /// Outlives the runtime.
    engine::Workspace &workspace;
    std::shared_ptr<engine::PrivacyModeSettingsStoring> settingsStore;
    std::shared_ptr<engine::MacActivityLogStoring> logStore;
    std::shared_ptr<engine::OwnApplicationsStoring> ownApplications;
    foundation::Clock clock = foundation::systemTime;
    /// How the runtime hears that the clock jumped.
    TimeChangeWatchMaker watchTime = {};
    /// How often the schedules are evaluated.
    std::chrono::milliseconds scheduleInterval = std::chrono::minutes(1);
};

/// An application of the user's own as it was before it was removed.
struct RemovedApplication {
    engine::RiskAppDefinition definition;
    /// Among the own ones.
    qsizetype place = 0;
    /// With nothing else selected it is `alone`; a selection that is empty protects everything.
    enum class Selection { none, amongOthers, alone } selection = Selection::none;
};

/// The one object between the engine and whoever shows and steers it, a window or a command line. It owns the
/// stores, the services, the relaunch monitor and the schedule timer, publishes the state that is shown, and
/// records what the user and the schedules change. Nothing fails; who wants to know whether his change was
/// kept looks at the outcome. Main thread only; checks and file access are synchronous.
///
/// Once started it also follows what other processes store: the own applications, the selection, the log and
/// the user defaults.
class MacProtectionRuntime : public QObject {
    Q_OBJECT

  public:
    using PrivacyModeSetter = std::function<Outcome(bool)>;

    /// The user default that keeps the choice between previewing and enforcing; absent for previewing.
    static const QString enforceActionsKey;

    /// Reads the stored state and computes a first preview. Saves nothing, records nothing, starts nothing.
    /// `defaults` outlives the runtime.
    MacProtectionRuntime(UserDefaults &defaults, MacProtectionSurroundings surroundings,
                         QObject *parent = nullptr);
    /// Stops the timer, then the monitor.
    ~MacProtectionRuntime() override;

    /// The folder "Kestrin" in the user's application-support directory. It need not exist.
    static QUrl applicationSupportURL();

    // State, as published

    const QList<engine::MacProtectionEvent> &recentEvents() const { return m_recentEvents; }
    bool isMonitoring() const { return m_isMonitoring; }
    const QList<engine::RiskAppMatch> &matches() const { return m_matches; }
    qint64 runningAppCount() const { return m_runningAppCount; }
    /// How much of what runs can be seen; full until the runtime is started.
    const engine::Sight &sight() const { return m_sight; }
    const std::optional<QDateTime> &lastChecked() const { return m_lastChecked; }
    const QSet<QString> &protectedDefinitionIDs() const { return m_protectedDefinitionIDs; }
    QStringList sortedProtectedDefinitionIDs() const;
    const QList<shared::ModePreset> &modes() const { return m_modes; }
    bool enforceActions() const { return m_enforceActions; }
    /// As it is now, the user's own applications included.
    const engine::RiskAppCatalog &catalog() const { return m_catalog.catalog(); }
    /// Why those cannot be read now, as a sentence; empty when they can be.
    QString ownApplicationsProblem() { return m_catalog.problem(); }
    bool knowsOwnApplications() const { return m_catalog.isReadable(); }
    bool isOwnApplication(const QString &id) const { return m_catalog.isOwn(id); }
    /// Lists what runs now.
    QList<engine::RunningMacApp> runningApps() const { return m_inventoryService->runningApps(); }
    engine::MacActivityLogStoring &logStore() const { return *m_logStore; }

    // Summaries, derived from the state at each call

    QString monitorLabel() const;
    QString lastCheckedLabel() const;
    /// Loads the settings.
    QList<shared::ProtectionDevice> devices() const;
    qint64 enabledScheduleCount() const;
    qint64 actionEventCount() const;
    QString diagnosticsText() const;

    // Operations

    /// Makes the flag that the caller keeps the saved one, starts the monitor and the schedules.
    /// `setPrivacyMode` is called when a schedule wants another flag; it has to lead to updatePrivacyMode.
    /// Calling `start` again replaces the callback and the monitor and leaves the timer alone.
    void start(bool privacyModeOn, const PrivacyModeSetter &setPrivacyMode);
    /// Only the callback of `start`, for callers that steer without monitoring.
    void setPrivacyModeSetter(const PrivacyModeSetter &setPrivacyMode);
    /// Saves the flag, records the change (if it is one, and if wanted) and refreshes the preview. Takes no
    /// action.
    Outcome updatePrivacyMode(bool privacyModeOn, bool recordEvent);
    Outcome setProtectedDefinition(const QString &id, bool enabled) {
        return setProtectedDefinitions({id}, enabled);
    }
    /// Several as one change, each recorded.
    Outcome setProtectedDefinitions(const QStringList &ids, bool enabled);
    /// Adds an application of the user's own to the catalog, and selects it. Its id is what was changed.
    Outcome addOwnApplication(const engine::OwnApplication &application);
    /// Deselects those of the user's own applications that have these ids, and removes them from the catalog.
    Outcome removeOwnApplications(const QStringList &ids);
    /// What has to be known to take a removal back; none for what is not the user's own.
    std::optional<RemovedApplication> removedApplication(const QString &id) const;
    /// Takes a removal back.
    Outcome restoreOwnApplication(const RemovedApplication &removed);
    /// Selects the whole default catalog. The choice about own applications stays.
    Outcome applyRecommendedRiskApps();
    /// Stores the choice, replaces the monitor, records an event and runs a check, also when the value stays
    /// the same.
    Outcome setEnforceActions(bool enforceActions);
    /// One check that previews or enforces, as chosen.
    void runLiveCheck() { performCheck(!m_enforceActions); }
    /// The same with the choice made by the caller.
    engine::PrivacyModeCheck performCheck(bool dryRun);
    /// Asks one application that uses a device to quit, as a check would: what runs under its process, else
    /// what runs of the same definition. Returns what was recorded: nothing where it is not to be asked by
    /// now, or has no window.
    QList<engine::MacProtectionEvent> askAgain(const engine::DeviceUse &use);
    /// Whether checks and the monitor ask applications of this definition to quit now. Loads the settings.
    bool asksToQuit(const QString &id) const;
    /// Counts and matches the running applications without acting or recording. Ignores whether Privacy Mode
    /// is on.
    void refreshInventoryPreview();
    /// Looks at once how much can be seen, which happens every minute anyway.
    void refreshSight();

    // Schedules

    /// The seed presets with the stored switches.
    static QList<shared::ModePreset> loadModes(const UserDefaults &defaults);
    Outcome setMode(const QString &id, bool enabled) { return setModes({id}, enabled); }
    /// Several as one change, each recorded, and one evaluation.
    Outcome setModes(const QStringList &ids, bool enabled);
    /// What the enabled presets want at this moment's local time of day; absent when none has an opinion.
    std::optional<bool> scheduledPrivacyModeState(const QDateTime &date) const;
    ScheduleOutlook scheduleOutlook() const;
    /// Brings Privacy Mode to what the presets want, if that differs from the saved flag. While it is paused
    /// they rest.
    Outcome evaluateSchedules(const QDateTime &date);
    /// Disables the presets because of which Privacy Mode is now wanted to be another than this.
    Outcome disableModesAgainst(bool privacyModeOn);
    /// Evaluates now, every minute, and when the local time has jumped. Does nothing at all while the timer
    /// runs.
    void startScheduleTimer();

    // Pauses

    QDateTime now() const { return m_clock(); }
    /// Whether a stored pause is.
    bool isPauseOver() const;
    /// Turns Privacy Mode on where a pause is over, as whoever keeps the flag does it.
    Outcome endPause();

    // What is stored

    /// Whether Privacy Mode is on in the settings, by which launches and checks go. Loads them.
    bool isSavedOn() const { return m_settingsStore->load().isEnabled; }
    /// What is selected in them. Unlike the selection that is shown it stays empty.
    QSet<QString> savedDefinitionIDs() const { return m_settingsStore->load().protectedDefinitionIDs; }
    /// Whether the settings that were loaded last are stored ones, or nothing is stored. By a fallback that
    /// could not be stored either nobody is asked to quit.
    bool areSettingsChosen() const { return m_settingsStore->areChosen(); }
    /// Adds to the log what others notice who follow with this runtime, about an application or as such.
    foundation::StoreResult recordNotice(const QString &message,
                                         const std::optional<QString> &appName = std::nullopt,
                                         const std::optional<QString> &bundleIdentifier = std::nullopt) {
        return recordEvent(engine::MacProtectionEventKind::riskAppMatched, message, appName,
                           bundleIdentifier);
    }
    /// Tells of what became of the user defaults that others stored for this runtime.
    void report(const foundation::StoreResult &result) { report(StoreUse::defaults, result); }

  Q_SIGNALS:
    /// A file that could not be used was set aside; a sentence.
    void fileSetAside(const QString &sentence);
    /// Something could not be stored, or what is stored cannot be read. A sentence, and each once until it is
    /// over.
    void storageFailed(const QString &sentence);
    void catalogChanged();
    void recentEventsChanged();
    void isMonitoringChanged();
    void matchesChanged();
    void runningAppCountChanged();
    void sightChanged();
    void lastCheckedChanged();
    void protectedDefinitionIDsChanged();
    void modesChanged();
    /// Another pause is stored, or how its end is called may have changed.
    void pauseChanged();
    void enforceActionsChanged();
    /// An application was asked to quit, by a check or because it was started; already recorded.
    void quitRequested(const kestrin::engine::MacProtectionEvent &event);
    /// The time of day has switched Privacy Mode, and not somebody who switched a preset; the words of the
    /// log.
    void scheduleSwitched(bool privacyModeOn, const QString &message);
    /// A value derived from several others may be another one: monitorLabel, devices.
    void summariesChanged();

  private:
    /// What succeeds or fails by itself.
    enum class StoreUse { loading, saving, defaults, log, catalog };

    void report(StoreUse use, const foundation::StoreResult &result);
    foundation::StoreResult recordEvent(engine::MacProtectionEventKind kind, const QString &message,
                                        const std::optional<QString> &appName = std::nullopt,
                                        const std::optional<QString> &bundleIdentifier = std::nullopt);
    void reloadRecentEvents();
    void publishPreview(qint64 runningAppCount, const QList<engine::RiskAppMatch> &matches);
    void setMonitoring();
    /// Replaces the monitor with one that previews or enforces as chosen now.
    void configureRelaunchMonitor();
    void refreshLater();
    void refresh();
    void tellQuitRequests(const QList<engine::MacProtectionEvent> &events);
    foundation::StoreResult updateSettings(const engine::PrivacyModeSettingsStoring::Change &change);
    void selectAdded(const QString &id, bool alone, Outcome &outcome);
    foundation::StoreResult recordSelection(const QString &name, bool enabled);
    void adoptCatalog();
    void followOtherProcesses();
    void adoptStoredSelection();
    void adoptStoredModes();
    void followSchedules();
    void followPause();
    void postScheduleTick();
    void adoptStoredDefault(const QString &key);

    QList<engine::MacProtectionEvent> m_recentEvents;
    bool m_isMonitoring = false;
    QList<engine::RiskAppMatch> m_matches;
    qint64 m_runningAppCount = 0;
    engine::Sight m_sight;
    std::optional<QDateTime> m_lastChecked;
    QSet<QString> m_protectedDefinitionIDs;
    /// The selection in the settings as it was last read or saved here; another one is another process's.
    QSet<QString> m_storedDefinitionIDs;
    QList<shared::ModePreset> m_modes;
    /// The same of the presets in the user defaults.
    std::optional<QStringList> m_storedModeIDs;
    bool m_enforceActions = false;

    const foundation::Clock m_clock;
    const TimeChangeWatchMaker m_watchTime;
    const std::chrono::milliseconds m_scheduleInterval;
    engine::Workspace &m_workspace;
    CurrentCatalog m_catalog;
    const std::shared_ptr<engine::MacAppInventoryService> m_inventoryService;
    const std::shared_ptr<RememberedSettings> m_settingsStore;
    const std::shared_ptr<engine::RiskAppActionPerforming> m_actionPerformer;
    const std::shared_ptr<engine::MacActivityLogStoring> m_logStore;
    /// Present for the stores that are files, once started.
    std::unique_ptr<foundation::FileWatch> m_settingsWatch;
    std::unique_ptr<foundation::FileWatch> m_logWatch;
    UserDefaults &m_defaults;
    std::unique_ptr<engine::RiskAppRelaunchMonitor> m_monitor;
    std::unique_ptr<QTimer> m_scheduleTimer;
    std::unique_ptr<TimeChangeWatch> m_timeWatch;
    std::unique_ptr<PauseClock> m_pauseClock;
    PrivacyModeSetter m_privacyModeSetter;
    /// The problems that were told and are not over.
    /// Not before the start, since nobody listens yet.
    bool m_tellsProblems = false;
    QHash<QString, StoreUse> m_toldProblems;
    bool m_isRefreshPosted = false;
    /// What the monitor has recorded since the last refresh.
    QList<engine::MacProtectionEvent> m_reactions;
};

} // namespace kestrin::runtime
