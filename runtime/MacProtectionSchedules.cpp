// The part of the runtime that switches Privacy Mode by time of day.

#include "runtime/MacProtectionRuntime.h"

#include "shared/KestrinSeedData.h"

#include <QTimer>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace kestrin::runtime {

using namespace shared;
using namespace engine;

namespace {

const QString enabledModeIDsKey = u"kestrin.mac.enabledModeIDs"_s;

QStringList enabledIDs(const QList<ModePreset> &modes) {
    QStringList ids;
    for (const ModePreset &mode : modes) {
        if (mode.enabled)
            ids.append(mode.id);
    }
    return ids;
}

/// The presets with these switches, or else with their own.
QList<ModePreset> seedModes(const std::optional<QStringList> &enabledModeIDs) {
    QList<ModePreset> modes = KestrinSeedData::modes();
    const QStringList enabled = enabledModeIDs.value_or(enabledIDs(modes));
    for (ModePreset &mode : modes)
        mode.enabled = enabled.contains(mode.id);
    return modes;
}

/// The minute of the day at which an hour begins.
constexpr int clockMinute(int hour) {
    return hour * 60;
}

int minuteOfDay(const QDateTime &date) {
    const QTime time = date.toLocalTime().time();
    return time.isValid() ? time.hour() * 60 + time.minute() : 0;
}

/// Presets that only people switch; they have no opinion of their own.
bool isManual(const ModePreset &mode) {
    return mode.id == u"manual" || mode.id == u"travel";
}

bool isActive(const ModePreset &mode, int minute) {
    if (mode.id == u"sleep")
        return minute < clockMinute(7) || minute >= clockMinute(23);
    if (mode.id == u"away")
        return minute >= clockMinute(8) && minute < clockMinute(18);
    if (mode.id == u"focus")
        return minute >= clockMinute(21) && minute < clockMinute(23);
    return false;
}

} // namespace

QList<ModePreset> MacProtectionRuntime::loadModes(const UserDefaults &defaults) {
    return seedModes(defaults.stringArray(enabledModeIDsKey));
}

Outcome MacProtectionRuntime::setMode(const QString &id, bool enabled) {
    Outcome outcome;
    const auto isIt = [&](const ModePreset &mode) { return mode.id == id; };
    const auto found = std::find_if(m_modes.cbegin(), m_modes.cend(), isIt);
    if (found == m_modes.cend() || found->enabled == enabled)
        return outcome;
    const QString name = found->name;
    const auto change = [&] { std::find_if(m_modes.begin(), m_modes.end(), isIt)->enabled = enabled; };
    change();
    Q_EMIT modesChanged();
    bool isAdopted = false;
    outcome.defaultsSaved = m_defaults.updateStringArray(enabledModeIDsKey, [&](const auto &stored) {
        // What another process has switched since is not to be undone.
        isAdopted = stored != m_storedModeIDs;
        if (isAdopted) {
            m_modes = seedModes(stored);
            change();
        }
        return enabledIDs(m_modes);
    });
    if (outcome.defaultsSaved)
        m_storedModeIDs = enabledIDs(m_modes);
    if (isAdopted)
        Q_EMIT modesChanged();
    outcome.changesRecorded =
        recordEvent(enabled ? MacProtectionEventKind::privacyModeOn : MacProtectionEventKind::privacyModeOff,
                    name + (enabled ? u" enabled."_s : u" disabled."_s));
    evaluateSchedules(m_clock());
    return outcome;
}

void MacProtectionRuntime::adoptStoredModes() {
    const std::optional<QStringList> stored = m_defaults.stringArray(enabledModeIDsKey);
    if (!m_modes.isEmpty() && stored == m_storedModeIDs)
        return;
    m_storedModeIDs = stored;
    if (const QList<ModePreset> modes = seedModes(stored); modes != m_modes) {
        m_modes = modes;
        Q_EMIT modesChanged();
    }
}

std::optional<bool> MacProtectionRuntime::scheduledPrivacyModeState(const QDateTime &date) const {
    const auto takesPart = [](const ModePreset &mode) { return mode.enabled && !isManual(mode); };
    if (std::none_of(m_modes.cbegin(), m_modes.cend(), takesPart))
        return std::nullopt;
    const int minute = minuteOfDay(date);
    return std::any_of(m_modes.cbegin(), m_modes.cend(),
                       [&](const ModePreset &mode) { return takesPart(mode) && isActive(mode, minute); });
}

void MacProtectionRuntime::evaluateSchedules(const QDateTime &date) {
    const std::optional<bool> wanted = scheduledPrivacyModeState(date);
    if (!wanted || *wanted == m_settingsStore->load().isEnabled)
        return;
    recordEvent(*wanted ? MacProtectionEventKind::privacyModeOn : MacProtectionEventKind::privacyModeOff,
                *wanted ? u"Schedule turned Privacy Mode on."_s : u"Schedule turned Privacy Mode off."_s);
    if (m_privacyModeSetter)
        m_privacyModeSetter(*wanted);
    else
        updatePrivacyMode(*wanted, true);
}

void MacProtectionRuntime::startScheduleTimer() {
    if (m_scheduleTimer)
        return;
    m_scheduleTimer = std::make_unique<QTimer>();
    m_scheduleTimer->setTimerType(Qt::PreciseTimer);
    m_scheduleTimer->setInterval(m_scheduleInterval);
    connect(m_scheduleTimer.get(), &QTimer::timeout, this, &MacProtectionRuntime::postScheduleTick);
    m_scheduleTimer->start();
    // The timer knows nothing of the time of day and stands still while the machine sleeps.
    if (m_watchTime) {
        m_timeWatch = m_watchTime();
        connect(m_timeWatch.get(), &TimeChangeWatch::changed, this, &MacProtectionRuntime::postScheduleTick);
    }
    evaluateSchedules(m_clock());
}

void MacProtectionRuntime::postScheduleTick() {
    // Only posted, so that it never runs in the middle of another operation.
    QMetaObject::invokeMethod(
        this,
        [this] {
            adoptStoredSelection();
            evaluateSchedules(m_clock());
        },
        Qt::QueuedConnection);
}

} // namespace kestrin::runtime
