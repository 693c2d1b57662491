#include "runtime/PrivacyModeFlag.h"

#include "runtime/MacProtectionRuntime.h"

namespace kestrin::runtime {

const QString PrivacyModeFlag::key = QStringLiteral("kestrin.mac.privacyModeOn");

PrivacyModeFlag::PrivacyModeFlag(UserDefaults &defaults, MacProtectionRuntime &runtime, QObject *parent)
    : QObject(parent)
    , m_defaults(defaults)
    , m_runtime(runtime)
    , m_known(isOn()) {
    m_runtime.setPrivacyModeSetter([this](bool on) { setOn(on); });
}

PrivacyModeFlag::~PrivacyModeFlag() {
    m_runtime.setPrivacyModeSetter({});
}

bool PrivacyModeFlag::isOn() const {
    return m_defaults.boolean(key).value_or(true);
}

void PrivacyModeFlag::setOn(bool on) {
    const bool before = m_known;
    // The settings come first: a process that follows the flag then finds the change already made and
    // recorded.
    m_runtime.updatePrivacyMode(on, true);
    // A flag that the engine does not follow would be a lie.
    if (m_runtime.settingsStore().load().isEnabled != on)
        return;
    m_known = on;
    m_defaults.setBoolean(key, on);
    // What could not be stored is not so.
    m_known = isOn();
    if (m_known != before)
        Q_EMIT changed();
}

void PrivacyModeFlag::startRuntime() {
    connect(&m_defaults, &UserDefaults::changed, this, &PrivacyModeFlag::follow, Qt::UniqueConnection);
    m_runtime.start(isOn(), [this](bool on) { setOn(on); });
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
