#pragma once

#include "app/Kestrin/pages/MacLiveUse.h"
#include "app/Kestrin/pages/MacOwnApps.h"
#include "app/Kestrin/rows/RecordListModel.h"
#include "runtime/MacProtectionRuntime.h"
#include "runtime/PrivacyModeFlag.h"

#include <QtQml/qqmlregistration.h>

#include <QObject>

namespace kestrin::app {

/// What the pages see of the runtime and of the Privacy Mode flag, in the types that they need, and what they
/// can do. It keeps no state of its own and decides nothing; every value is the runtime's at the moment it is
/// read.
class MacProtectionState : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The window has one.")
    Q_PROPERTY(bool privacyModeOn READ privacyModeOn WRITE setPrivacyModeOn NOTIFY privacyModeOnChanged)
    /// "Privacy Mode is paused until 14:30"; empty when it is not.
    Q_PROPERTY(QString pauseText READ pauseText NOTIFY pauseChanged)
    Q_PROPERTY(bool enforceActions READ enforceActions WRITE setEnforceActions NOTIFY enforceActionsChanged)
    Q_PROPERTY(QString monitorLabel READ monitorLabel NOTIFY monitorLabelChanged)
    Q_PROPERTY(QString actionsLabel READ actionsLabel NOTIFY enforceActionsChanged)
    Q_PROPERTY(QString lastCheckedLabel READ lastCheckedLabel NOTIFY lastCheckedLabelChanged)
    Q_PROPERTY(int runningAppCount READ runningAppCount NOTIFY runningAppCountChanged)
    /// What cannot be seen of what runs, and what to do about it; empty when everything can.
    Q_PROPERTY(QString sightText READ sightText NOTIFY sightChanged)
    /// The title of a button that helps; empty when none would.
    Q_PROPERTY(QString sightHelp READ sightHelp NOTIFY sightChanged)
    Q_PROPERTY(int selectedCount READ selectedCount NOTIFY selectionChanged)
    Q_PROPERTY(int matchCount READ matchCount NOTIFY matchesChanged)
    Q_PROPERTY(int actionCount READ actionCount NOTIFY matchesChanged)
    Q_PROPERTY(int enabledScheduleCount READ enabledScheduleCount NOTIFY presetsChanged)
    /// What the schedules do now and today.
    Q_PROPERTY(QString scheduleText READ scheduleText NOTIFY scheduleTextChanged)
    Q_PROPERTY(int actionEventCount READ actionEventCount NOTIFY eventsChanged)
    Q_PROPERTY(kestrin::app::RecordListModel *devices MEMBER m_devices CONSTANT)
    /// The whole catalog.
    Q_PROPERTY(kestrin::app::RecordListModel *definitions MEMBER m_definitions CONSTANT)
    /// The first five of the matches.
    Q_PROPERTY(kestrin::app::RecordListModel *shownMatches MEMBER m_shownMatches CONSTANT)
    Q_PROPERTY(kestrin::app::RecordListModel *presets MEMBER m_presets CONSTANT)
    Q_PROPERTY(kestrin::app::RecordListModel *events MEMBER m_events CONSTANT)
    Q_PROPERTY(kestrin::app::RecordListModel *sections MEMBER m_sections CONSTANT)
    Q_PROPERTY(kestrin::app::MacOwnApps *ownApps MEMBER m_ownApps CONSTANT)
    Q_PROPERTY(kestrin::app::MacLiveUse *liveUse MEMBER m_liveUse CONSTANT)
    Q_PROPERTY(QString tagline READ tagline CONSTANT)

  public:
    /// All outlive this object.
    MacProtectionState(runtime::MacProtectionRuntime &runtime, runtime::PrivacyModeFlag &privacyMode,
                       runtime::LiveUse &liveUse, runtime::InstalledApplications &installed,
                       QObject *parent = nullptr);

    bool privacyModeOn() const { return m_privacyMode.isOn(); }
    void setPrivacyModeOn(bool on) { m_privacyMode.setOn(on); }
    QString pauseText() const;
    bool enforceActions() const { return m_runtime.enforceActions(); }
    void setEnforceActions(bool enforce) { m_runtime.setEnforceActions(enforce); }
    QString monitorLabel() const { return m_runtime.monitorLabel(); }
    QString actionsLabel() const;
    QString lastCheckedLabel() const { return m_runtime.lastCheckedLabel(); }
    int runningAppCount() const { return static_cast<int>(m_runtime.runningAppCount()); }
    QString sightText() const { return m_runtime.sight().text(); }
    QString sightHelp() const;
    int selectedCount() const { return static_cast<int>(m_runtime.protectedDefinitionIDs().size()); }
    int matchCount() const { return static_cast<int>(m_runtime.matches().size()); }
    int actionCount() const;
    int enabledScheduleCount() const { return static_cast<int>(m_runtime.enabledScheduleCount()); }
    QString scheduleText() const { return m_runtime.scheduleOutlook().text(); }
    int actionEventCount() const { return static_cast<int>(m_runtime.actionEventCount()); }
    static QString tagline();

    Q_INVOKABLE void pauseForAnHour();
    Q_INVOKABLE void pauseUntilTomorrow();
    Q_INVOKABLE void helpSight() { Q_EMIT sightHelpWanted(); }
    Q_INVOKABLE void openLog() { Q_EMIT logWanted(); }
    /// Starts the runtime; for the root view, when it appears.
    Q_INVOKABLE void start() { m_privacyMode.startRuntime(); }
    Q_INVOKABLE void runLiveCheck() { m_runtime.runLiveCheck(); }
    /// Hands a flag that was changed to the runtime, which records the change unless somebody did already.
    Q_INVOKABLE void updatePrivacyMode(bool on) { m_runtime.updatePrivacyMode(on, true); }
    Q_INVOKABLE void setProtectedDefinition(const QString &id, bool enabled);
    Q_INVOKABLE void applyRecommendedRiskApps() { m_runtime.applyRecommendedRiskApps(); }
    Q_INVOKABLE void setPreset(const QString &id, bool enabled) { m_runtime.setMode(id, enabled); }
    /// Puts the diagnostics text, and nothing else, on the clipboard.
    Q_INVOKABLE void copyDiagnostics();

  Q_SIGNALS:
    void privacyModeOnChanged();
    void pauseChanged();
    void enforceActionsChanged();
    void monitorLabelChanged();
    void lastCheckedLabelChanged();
    void runningAppCountChanged();
    void sightChanged();
    void sightHelpWanted();
    void logWanted();
    void selectionChanged();
    void matchesChanged();
    void presetsChanged();
    void scheduleTextChanged();
    void eventsChanged();

  private:
    void follow();
    void fillDevices();
    void fillDefinitions();
    void fillMatches();
    void fillPresets();
    void fillEvents();

    runtime::MacProtectionRuntime &m_runtime;
    runtime::PrivacyModeFlag &m_privacyMode;
    MacOwnApps *const m_ownApps;
    MacLiveUse *const m_liveUse;
    RecordListModel *const m_devices = new RecordListModel(this);
    RecordListModel *const m_definitions = new RecordListModel(this);
    RecordListModel *const m_shownMatches = new RecordListModel(this);
    RecordListModel *const m_presets = new RecordListModel(this);
    RecordListModel *const m_events = new RecordListModel(this);
    RecordListModel *const m_sections = new RecordListModel(this);
};

} // namespace kestrin::app
