#include "runtime/PrivacyModeFlag.h"

#include "runtime/MacProtectionRuntime.h"

#include <utility>

namespace kestrin::runtime {

using namespace foundation;

const QString PrivacyModeFlag::key = QStringLiteral("kestrin.mac.privacyModeOn");

PrivacyModeFlag::PrivacyModeFlag(UserDefaults &defaults, MacProtectionRuntime &runtime, QObject *parent)
    : QObject(parent)
    , m_defaults(defaults)
    , m_runtime(runtime)
    , m_known(isOn()) {
    m_runtime.setPrivacyModeSetter([this](bool on) { return setOn(on); });
}

PrivacyModeFlag::~PrivacyModeFlag() {
    m_runtime.setPrivacyModeSetter({});
}

bool PrivacyModeFlag::isOn() const {
    if (const auto stored = m_defaults.boolean(key))
        return *stored || m_runtime.isPauseOver();
    // Without anything stored it is on. What cannot be read is nobody's choice.
    return m_defaults.problem().isEmpty() || m_runtime.isSavedOn();
}

Outcome PrivacyModeFlag::setOn(bool on) {
    const bool before = m_known;
    Outcome outcome = store(on);
    // Last, so that Privacy Mode comes back where this is interrupted.
    if (const auto pause = Pause::stored(m_defaults); pause && outcome.settings.isKept()) {
        const StoreResult forgotten = pause->replaceBy(m_defaults, std::nullopt);
        m_runtime.report(forgotten);
        outcome.defaults &= forgotten;
    }
    if (m_known != before)
        Q_EMIT changed();
    return outcome;
}

std::optional<QDateTime> PrivacyModeFlag::pausedUntil() const {
    const auto pause = Pause::stored(m_defaults);
    return pause && !isOn() ? std::optional(pause->until) : std::nullopt;
}

Outcome PrivacyModeFlag::pause(const QDateTime &until) {
    Outcome outcome;
    if (!isOn() && !pausedUntil())
        return outcome;
    const auto former = Pause::stored(m_defaults);
    const Pause pause = Pause::between(m_runtime.now(), until);
    // First, so that Privacy Mode comes back where this is interrupted.
    outcome.defaults = pause.store(m_defaults);
    m_runtime.report(outcome.defaults);
    if (!outcome.defaults.isKept())
        return outcome;
    const bool before = m_known;
    outcome &= store(false);
    if (!outcome.settings.isKept() || !outcome.defaults.isKept())
        m_runtime.report(pause.replaceBy(m_defaults, former));
    if (m_known != before)
        Q_EMIT changed();
    return outcome;
}

Outcome PrivacyModeFlag::store(bool on) {
    // The settings come first: a process that follows the flag then finds the change already made and
    // recorded.
    Outcome outcome = m_runtime.updatePrivacyMode(on, true);
    // A flag that the engine does not follow would be a lie.
    if (!outcome.settings.isKept())
        return outcome;
    const bool before = std::exchange(m_known, on);
    const StoreResult stored = m_defaults.setBoolean(key, on);
    m_runtime.report(stored);
    const bool readsSo = m_defaults.problem().isEmpty() && isOn() == on;
    if (!stored.isKept() && !readsSo) {
        outcome.defaults = stored;
        m_known = before;
    }
    return outcome;
}

void PrivacyModeFlag::startRuntime() {
    m_runtime.endPause();
    connect(&m_defaults, &UserDefaults::changed, this, &PrivacyModeFlag::follow, Qt::UniqueConnection);
    m_runtime.start(isOn(), [this](bool on) { return setOn(on); });
}

void PrivacyModeFlag::follow(const QString &changedKey) {
    const bool on = isOn();
    if (changedKey != key || on == m_known)
        return;
    m_known = on;
    m_runtime.updatePrivacyMode(on, true);
    Q_EMIT changed();
}

} // namespace kestrin::runtime
