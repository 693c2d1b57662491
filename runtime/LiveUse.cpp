#include "runtime/LiveUse.h"

#include "runtime/MacProtectionRuntime.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace kestrin::runtime {

using namespace foundation;
using namespace engine;

const QString LiveUse::key = u"kestrin.mac.liveUseOn"_s;

LiveUse::LiveUse(UserDefaults &defaults, DeviceUses &deviceUses, MacProtectionRuntime &runtime,
                 QObject *parent)
    : QObject(parent)
    , m_defaults(defaults)
    , m_deviceUses(deviceUses)
    , m_runtime(runtime) {}

LiveUse::~LiveUse() = default;

bool LiveUse::isOn() const {
    return m_defaults.boolean(key).value_or(true);
}

StoreResult LiveUse::setOn(bool on) {
    if (!m_isStarted)
        m_isOn = isOn();
    StoreResult stored = m_defaults.setBoolean(key, on);
    m_runtime.report(stored);
    adoptSwitch();
    return stored;
}

void LiveUse::start() {
    if (std::exchange(m_isStarted, true))
        return;
    m_isOn = isOn();
    connect(&m_defaults, &UserDefaults::changed, this, [this](const QString &changedKey) {
        if (changedKey == key)
            adoptSwitch();
    });
    QMetaObject::invokeMethod(this, &LiveUse::follow, Qt::QueuedConnection);
}

void LiveUse::adoptSwitch() {
    const bool on = isOn();
    if (std::exchange(m_isOn, on) == on)
        return;
    Q_EMIT switched();
    follow();
}

void LiveUse::follow() {
    if (!m_isStarted || !m_isOn) {
        m_subscription.reset();
        publish({}, {});
        return;
    }
    if (m_subscription)
        return;
    m_subscription = m_deviceUses.subscribe({
        .began = [this](const DeviceUse &) { adoptLater(); },
        .ended = [this](const DeviceUse &) { adoptLater(); },
        .sightChanged = [this] { adoptLater(); },
    });
    // Who was there before has not begun.
    publish(m_deviceUses.uses(), m_deviceUses.sight());
}

/// What comes together is one change.
void LiveUse::adoptLater() {
    if (!std::exchange(m_isAdoptionPosted, true))
        QMetaObject::invokeMethod(this, &LiveUse::adopt, Qt::QueuedConnection);
}

void LiveUse::adopt() {
    m_isAdoptionPosted = false;
    if (!m_subscription)
        return;
    const QList<DeviceUse> before = m_uses;
    publish(m_deviceUses.uses(), m_deviceUses.sight());
    tellWhoBegan(before);
}

void LiveUse::publish(const QList<DeviceUse> &uses, const Sight &sight) {
    if (std::exchange(m_sight, sight) != sight)
        Q_EMIT sightChanged();
    if (std::exchange(m_uses, uses) != uses)
        Q_EMIT usesChanged();
}

void LiveUse::tellWhoBegan(const QList<DeviceUse> &before) {
    QList<DeviceUse> news = m_uses;
    news.removeIf([&](const DeviceUse &use) { return before.contains(use); });
    if (news.isEmpty() || !m_runtime.isSavedOn())
        return;
    for (const DeviceUse &use : std::as_const(news))
        Q_EMIT began(use);
}

} // namespace kestrin::runtime
