#include "app/Kestrin/pages/MacProtectionState.h"

#include "app/Kestrin/pages/MacSection.h"
#include "runtime/StatusSummaries.h"
#include "shared/KestrinCopy.h"

#include <QClipboard>
#include <QGuiApplication>

using namespace Qt::StringLiterals;

namespace kestrin::app {

using namespace shared;
using namespace engine;
using namespace runtime;

namespace {

constexpr qsizetype shownMatchLimit = 5;

template <class Record>
QList<PageRow> rowsOf(const QList<Record> &records) {
    QList<PageRow> rows;
    for (const Record &record : records)
        rows.append(rowOf(record));
    return rows;
}

} // namespace

MacProtectionState::MacProtectionState(MacProtectionRuntime &runtime, PrivacyModeFlag &privacyMode,
                                       LiveUse &liveUse, InstalledApplications &installed, QObject *parent)
    : QObject(parent)
    , m_runtime(runtime)
    , m_privacyMode(privacyMode)
    , m_ownApps(new MacOwnApps(runtime, installed, this))
    , m_liveUse(new MacLiveUse(liveUse, this)) {
    m_sections->setRows(sectionRows());
    fillDevices();
    fillDefinitions();
    fillMatches();
    fillPresets();
    fillEvents();
    follow();
}

void MacProtectionState::follow() {
    using Runtime = MacProtectionRuntime;
    using State = MacProtectionState;
    connect(&m_privacyMode, &PrivacyModeFlag::changed, this, &State::privacyModeOnChanged);
    connect(&m_privacyMode, &PrivacyModeFlag::changed, this, &State::pauseChanged);
    connect(&m_runtime, &Runtime::pauseChanged, this, &State::pauseChanged);
    connect(&m_runtime, &Runtime::enforceActionsChanged, this, &State::enforceActionsChanged);
    connect(&m_runtime, &Runtime::summariesChanged, this, &State::monitorLabelChanged);
    connect(&m_runtime, &Runtime::summariesChanged, this, &State::fillDevices);
    connect(&m_runtime, &Runtime::lastCheckedChanged, this, &State::lastCheckedLabelChanged);
    connect(&m_runtime, &Runtime::sightChanged, this, &State::sightChanged);
    connect(&m_runtime, &Runtime::runningAppCountChanged, this, &State::runningAppCountChanged);
    // The lists come first: who hears of a change finds them as they are now.
    connect(&m_runtime, &Runtime::catalogChanged, this, &State::fillDefinitions);
    connect(&m_runtime, &Runtime::protectedDefinitionIDsChanged, this, &State::fillDefinitions);
    connect(&m_runtime, &Runtime::protectedDefinitionIDsChanged, this, &State::selectionChanged);
    connect(&m_runtime, &Runtime::matchesChanged, this, &State::fillMatches);
    connect(&m_runtime, &Runtime::matchesChanged, this, &State::matchesChanged);
    connect(&m_runtime, &Runtime::modesChanged, this, &State::fillPresets);
    connect(&m_runtime, &Runtime::modesChanged, this, &State::presetsChanged);
    connect(&m_runtime, &Runtime::modesChanged, this, &State::scheduleTextChanged);
    connect(&m_privacyMode, &PrivacyModeFlag::changed, this, &State::scheduleTextChanged);
    connect(&m_runtime, &Runtime::recentEventsChanged, this, &State::fillEvents);
    connect(&m_runtime, &Runtime::recentEventsChanged, this, &State::eventsChanged);
}

QString MacProtectionState::pauseText() const {
    const auto until = m_privacyMode.pausedUntil();
    return until ? u"Privacy Mode is paused until "_s + momentLabelFor(*until, m_runtime.now()) : QString();
}

void MacProtectionState::pauseForAnHour() {
    m_privacyMode.pause(m_runtime.now().addDuration(std::chrono::hours(1)));
}

void MacProtectionState::pauseUntilTomorrow() {
    m_privacyMode.pause(startOfTomorrow(m_runtime.now()));
}

QString MacProtectionState::actionsLabel() const {
    return actionsLabelFor(m_runtime.enforceActions());
}

QString MacProtectionState::sightHelp() const {
    switch (m_runtime.sight().help) {
    case Sight::Help::allow:
        return u"Enable"_s;
    case Sight::Help::read:
        return u"Read How"_s;
    case Sight::Help::none:
        break;
    }
    return {};
}

int MacProtectionState::actionCount() const {
    return actionCountOf(m_runtime.matches());
}

QString MacProtectionState::tagline() {
    return KestrinCopy::coreTagline;
}

void MacProtectionState::setProtectedDefinition(const QString &id, bool enabled) {
    m_runtime.setProtectedDefinition(id, enabled);
}

void MacProtectionState::copyDiagnostics() {
    QClipboard *const clipboard = QGuiApplication::clipboard();
    clipboard->clear();
    clipboard->setText(m_runtime.diagnosticsText());
}

void MacProtectionState::fillDevices() {
    m_devices->setRows(rowsOf(m_runtime.devices()));
}

void MacProtectionState::fillDefinitions() {
    QList<PageRow> rows;
    const QList<RiskAppDefinition> &definitions = m_runtime.catalog().definitions;
    const qsizetype builtIn = RiskAppCatalog::defaultDefinitions().size();
    for (qsizetype number = 0; number < definitions.size(); ++number) {
        const RiskAppDefinition &definition = definitions.at(number);
        const bool isSelected = m_runtime.protectedDefinitionIDs().contains(definition.id);
        rows.append(rowOf(definition, isSelected, number >= builtIn));
    }
    m_definitions->setRows(rows);
}

void MacProtectionState::fillMatches() {
    m_shownMatches->setRows(rowsOf(m_runtime.matches().mid(0, shownMatchLimit)));
}

void MacProtectionState::fillPresets() {
    m_presets->setRows(rowsOf(m_runtime.modes()));
}

void MacProtectionState::fillEvents() {
    m_events->setRows(rowsOf(m_runtime.recentEvents()));
}

} // namespace kestrin::app
