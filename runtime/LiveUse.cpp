#include "runtime/LiveUse.h"

#include "runtime/MacProtectionRuntime.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace kestrin::runtime {

using namespace foundation;
using namespace engine;

namespace {

/// Longer nobody may be kept waiting who uses the window, or whose launch is to be noticed.
constexpr std::chrono::milliseconds patience{500};

} // namespace

const QString LiveUse::key = u"kestrin.mac.liveUseOn"_s;

LiveUse::LiveUse(UserDefaults &defaults, DeviceUses &deviceUses, MacProtectionRuntime &runtime,
                 QObject *parent, const UseRecord::Limits &limits)
    : QObject(parent)
    , m_defaults(defaults)
    , m_deviceUses(deviceUses)
    , m_runtime(runtime)
    , m_record(limits) {
    m_recordsLater.setSingleShot(true);
    connect(&m_recordsLater, &QTimer::timeout, this, &LiveUse::record);
}

LiveUse::~LiveUse() {
    stop();
}

StoreResult LiveUse::setOn(bool on) {
    const bool before = isOn();
    const bool told = m_isStarted ? m_isOn : before;
    // What follows from it comes after what is recorded about it.
    m_isOn = on;
    StoreResult result = m_defaults.setBoolean(key, on);
    m_runtime.report(result);
    m_isOn = told;
    if (isOn() != before)
        result &=
            m_runtime.recordNotice(on ? u"Kestrin tells who uses microphone, camera or screen."_s
                                      : u"Kestrin no longer tells who uses microphone, camera or screen."_s);
    adoptSwitch();
    return result;
}

void LiveUse::start() {
    if (std::exchange(m_isStarted, true))
        return;
    m_isOn = isOn();
    connect(&m_defaults, &UserDefaults::changed, this, [this](const QString &changedKey) {
        if (changedKey == key)
            adoptSwitch();
    });
    // Privacy Mode may have been switched. What is recorded about that comes first.
    connect(&m_runtime, &MacProtectionRuntime::summariesChanged, this, &LiveUse::adoptLater);
    QMetaObject::invokeMethod(this, &LiveUse::follow, Qt::QueuedConnection);
}

void LiveUse::stop() {
    if (!std::exchange(m_isStarted, false))
        return;
    disconnect(&m_defaults, nullptr, this, nullptr);
    disconnect(&m_runtime, nullptr, this, nullptr);
    unfollow();
}

void LiveUse::adoptSwitch() {
    const bool on = isOn();
    if (std::exchange(m_isOn, on) == on)
        return;
    Q_EMIT switched();
    follow();
}

void LiveUse::follow() {
    if (!m_isStarted || !m_isOn)
        return unfollow();
    if (m_subscription)
        return;
    m_deviceUses.setPatience(patience);
    m_subscription = m_deviceUses.subscribe({
        .began = [this](const DeviceUse &) { adoptLater(); },
        .ended = [this](const DeviceUse &) { adoptLater(); },
        .sightChanged = [this] { adoptLater(); },
    });
    adopt();
}

void LiveUse::unfollow() {
    m_subscription.reset();
    recordRest();
    publish({}, {});
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
    publish(m_deviceUses.uses(), m_deviceUses.sight());
    record();
}

void LiveUse::publish(const QList<DeviceUse> &uses, const Sight &sight) {
    if (std::exchange(m_sight, sight) != sight)
        Q_EMIT sightChanged();
    if (std::exchange(m_uses, uses) != uses)
        Q_EMIT usesChanged();
}

void LiveUse::record() {
    // Asked each time: what another process has switched counts at once.
    const bool records = m_subscription && m_runtime.isSavedOn();
    const auto now = std::chrono::steady_clock::now();
    const bool recorded = std::exchange(m_isRecording, records);
    if (!records)
        m_record.end();
    else if (!recorded)
        m_record.begin(m_uses, now);
    else
        m_record.follow(m_uses, now);
    while (const auto entry = m_record.takeDue(now))
        write(*entry);
    m_recordsLater.stop();
    if (const auto due = m_record.due())
        m_recordsLater.start(std::chrono::ceil<std::chrono::milliseconds>(*due - now));
}

void LiveUse::recordRest() {
    m_recordsLater.stop();
    if (std::exchange(m_isRecording, false) && m_runtime.isSavedOn()) {
        const QList<UseRecord::Entry> rest = m_record.takeRest(std::chrono::steady_clock::now());
        for (const UseRecord::Entry &entry : rest)
            write(entry);
    }
    m_record.end();
}

void LiveUse::write(const UseRecord::Entry &entry) {
    m_runtime.recordNotice(entry.sentence(), entry.use.localizedName, entry.use.bundleIdentifier);
    using Happening = UseRecord::Happening;
    if (entry.happening == Happening::began || entry.happening == Happening::hasBegun)
        Q_EMIT began(entry.use);
}

} // namespace kestrin::runtime
