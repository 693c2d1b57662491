// The part of the runtime that switches Privacy Mode by time of day.

#include "runtime/MacProtectionRuntime.h"

#include "shared/KestrinSeedData.h"

#include <QTimer>

#include <algorithm>
#include <utility>

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

/// Presets after a switch, and those that it changed.
struct SwitchedModes {
    QList<ModePreset> modes;
    QStringList names;
    QStringList ids;
};

/// Those that nobody has chosen are changed also if they stay as they are.
SwitchedModes switchedModes(const QList<ModePreset> &modes, const QStringList &ids, bool enabled,
                            bool areChosen) {
    SwitchedModes switched{modes, {}, {}};
    for (const QString &id : ids) {
        const auto found = std::find_if(switched.modes.begin(), switched.modes.end(),
                                        [&](const ModePreset &mode) { return mode.id == id; });
        if (found == switched.modes.end() || (areChosen && found->enabled == enabled))
            continue;
        found->enabled = enabled;
        switched.names.append(found->name);
        switched.ids.append(id);
    }
    return switched;
}

/// The minute of the day at which an hour begins.
constexpr int clockMinute(int hour) {
    return hour * 60;
}

int minuteOfDay(const QDateTime &date) {
    const QTime time = date.toLocalTime().time();
    return time.isValid() ? time.hour() * 60 + time.minute() : 0;
}

/// Presets that only people switch have no opinion of their own.
bool takesPart(const ModePreset &mode) {
    return mode.enabled && mode.id != u"manual" && mode.id != u"travel";
}

QString switchMessage(bool on) {
    return on ? u"Schedule turned Privacy Mode on."_s : u"Schedule turned Privacy Mode off."_s;
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

Outcome MacProtectionRuntime::setModes(const QStringList &ids, bool enabled) {
    Outcome outcome;
    const bool isReadable = m_defaults.problem().isEmpty();
    if (switchedModes(m_modes, ids, enabled, isReadable).ids.isEmpty())
        return outcome;
    QStringList names;
    outcome.defaults = m_defaults.updateStringArray(enabledModeIDsKey, [&](const auto &stored) {
        // What another process has switched since is not to be undone.
        const QList<ModePreset> before = stored == m_storedModeIDs ? m_modes : seedModes(stored);
        const SwitchedModes switched = switchedModes(before, ids, enabled, isReadable || stored);
        m_modes = switched.modes;
        names = switched.names;
        outcome.changed = switched.ids;
        return enabledIDs(m_modes);
    });
    report(outcome.defaults);
    if (outcome.defaults.isKept())
        m_storedModeIDs = enabledIDs(m_modes);
    Q_EMIT modesChanged();
    for (const QString &name : std::as_const(names))
        outcome.log &= recordEvent(enabled ? MacProtectionEventKind::privacyModeOn
                                           : MacProtectionEventKind::privacyModeOff,
                                   name + (enabled ? u" enabled."_s : u" disabled."_s));
    outcome &= evaluateSchedules(m_clock());
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
    if (std::none_of(m_modes.cbegin(), m_modes.cend(), takesPart))
        return std::nullopt;
    const int minute = minuteOfDay(date);
    return std::any_of(m_modes.cbegin(), m_modes.cend(),
                       [&](const ModePreset &mode) { return takesPart(mode) && isActive(mode, minute); });
}

ScheduleOutlook MacProtectionRuntime::scheduleOutlook() const {
    constexpr int minutesOfDay = 24 * 60;
    const QDateTime now = m_clock().toLocalTime();
    ScheduleOutlook outlook{scheduledPrivacyModeState(now), {}, {}};
    for (const ModePreset &mode : m_modes) {
        if (takesPart(mode) && isActive(mode, minuteOfDay(now)))
            outlook.active.append(mode.name);
    }
    std::optional<bool> before = outlook.wanted;
    for (int minute = minuteOfDay(now) + 1; outlook.wanted && minute < minutesOfDay; ++minute) {
        const QDateTime time(now.date(), QTime(minute / 60, minute % 60));
        const std::optional<bool> wanted = scheduledPrivacyModeState(time);
        if (wanted != std::exchange(before, wanted))
            outlook.today.append({time, *wanted});
    }
    return outlook;
}

Outcome MacProtectionRuntime::evaluateSchedules(const QDateTime &date) {
    Outcome outcome;
    const std::optional<bool> wanted = scheduledPrivacyModeState(date);
    if (!wanted || *wanted == isSavedOn())
        return outcome;
    // Privacy Mode is off where it is paused.
    if (const auto pause = Pause::stored(m_defaults); *wanted && pause && !pause->isOver(date))
        return outcome;
    // What holds where somebody's choice cannot be read is nobody's: neither do the presets' own switches
    // count, nor is it stored.
    if (!areSettingsChosen() || (!m_storedModeIDs && !m_defaults.problem().isEmpty()))
        return outcome;
    outcome.log =
        recordEvent(*wanted ? MacProtectionEventKind::privacyModeOn : MacProtectionEventKind::privacyModeOff,
                    switchMessage(*wanted));
    outcome &= m_privacyModeSetter ? m_privacyModeSetter(*wanted) : updatePrivacyMode(*wanted, true);
    if (outcome.settings.isKept())
        outcome.switchedBySchedules = wanted;
    return outcome;
}

Outcome MacProtectionRuntime::disableModesAgainst(bool privacyModeOn) {
    const QDateTime now = m_clock();
    if (scheduledPrivacyModeState(now).value_or(privacyModeOn) == privacyModeOn)
        return {};
    // It is off because none of them is active.
    QStringList ids;
    for (const ModePreset &mode : std::as_const(m_modes)) {
        if (takesPart(mode) && (privacyModeOn || isActive(mode, minuteOfDay(now))))
            ids.append(mode.id);
    }
    return setModes(ids, false);
}

bool MacProtectionRuntime::isPauseOver() const {
    const auto pause = Pause::stored(m_defaults);
    return pause && pause->isOver(m_clock());
}

Outcome MacProtectionRuntime::endPause() {
    if (!isPauseOver() || isSavedOn())
        return {};
    return m_privacyModeSetter ? m_privacyModeSetter(true) : updatePrivacyMode(true, true);
}

void MacProtectionRuntime::followPause() {
    report(m_pauseClock->look(m_clock()));
    Q_EMIT pauseChanged();
}

void MacProtectionRuntime::followSchedules() {
    if (Pause::stored(m_defaults)) {
        followPause();
        endPause();
    }
    const Outcome outcome = evaluateSchedules(m_clock());
    if (outcome.switchedBySchedules)
        Q_EMIT scheduleSwitched(*outcome.switchedBySchedules, switchMessage(*outcome.switchedBySchedules));
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
    m_pauseClock = std::make_unique<PauseClock>(m_defaults, [this] { postScheduleTick(); });
    followSchedules();
}

void MacProtectionRuntime::postScheduleTick() {
    // Only posted, so that it never runs in the middle of another operation.
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_catalog.reload();
            adoptStoredSelection();
            followSchedules();
            refreshSight();
        },
        Qt::QueuedConnection);
}

} // namespace kestrin::runtime
