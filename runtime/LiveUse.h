#pragma once

#include "engine/live/DeviceUses.h"
#include "runtime/UseRecord.h"
#include "runtime/UserDefaults.h"

#include <QObject>
#include <QTimer>

#include <memory>

namespace kestrin::runtime {

class MacProtectionRuntime;

/// Who uses microphone, camera and screen now, for whoever shows it, and the record of it in the log while
/// Privacy Mode is on: who begins and ends, and who was there already when it began to record. It can be
/// switched off; then nothing is connected to or watched. Main thread only; everything is told from the event
/// loop, but what `setOn` leads to, which is told by the time it returns.
class LiveUse : public QObject {
    Q_OBJECT

  public:
    /// The user default that keeps the switch; on, unless stored otherwise.
    static const QString key;

    /// All of them outlive it. Asks and reads nothing.
    LiveUse(UserDefaults &defaults, engine::DeviceUses &deviceUses, MacProtectionRuntime &runtime,
            QObject *parent = nullptr, const UseRecord::Limits &limits = {});
    /// Stops.
    ~LiveUse() override;

    bool isOn() const { return isOn(m_defaults); }
    static bool isOn(const UserDefaults &defaults) { return defaults.boolean(key).value_or(true); }
    /// Records a change.
    [[nodiscard]] foundation::StoreResult setOn(bool on);

    /// Follows from now on the switch, also as other processes store it, and the uses as long as it is on.
    /// Only who watches may: there is one log. Takes no time itself: the first question is asked from the
    /// event loop.
    void start();
    /// Records what was held back, and follows no longer.
    void stop();

    /// Of now, in the order in which they began; none while it is off or not started.
    const QList<engine::DeviceUse> &uses() const { return m_uses; }
    /// How much of it can be seen; full while it is off or not started.
    const engine::Sight &sight() const { return m_sight; }

  Q_SIGNALS:
    void switched();
    void usesChanged();
    void sightChanged();
    /// While Privacy Mode is on; already recorded, and no more often than it is recorded. Who was there when
    /// it began to record has not begun.
    void began(const kestrin::engine::DeviceUse &use);

  private:
    void adoptSwitch();
    void follow();
    void unfollow();
    void adoptLater();
    void adopt();
    void publish(const QList<engine::DeviceUse> &uses, const engine::Sight &sight);
    void record();
    void recordRest();
    void write(const UseRecord::Entry &entry);

    UserDefaults &m_defaults;
    engine::DeviceUses &m_deviceUses;
    MacProtectionRuntime &m_runtime;
    QList<engine::DeviceUse> m_uses;
    engine::Sight m_sight;
    bool m_isStarted = false;
    /// As it was told last.
    bool m_isOn = true;
    bool m_isAdoptionPosted = false;
    UseRecord m_record;
    bool m_isRecording = false;
    QTimer m_recordsLater;
    std::unique_ptr<engine::DeviceUseSubscription> m_subscription;
};

} // namespace kestrin::runtime
