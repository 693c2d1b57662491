#pragma once

#include "engine/live/DeviceUses.h"
#include "runtime/UserDefaults.h"

#include <QObject>

#include <memory>

namespace kestrin::runtime {

class MacProtectionRuntime;

/// Who uses microphone, camera and screen now, for whoever shows it. It can be switched off; then nothing is
/// connected to or watched. Main thread only; everything is told from the event loop, but what `setOn` leads
/// to, which is told by the time it returns.
class LiveUse : public QObject {
    Q_OBJECT

  public:
    /// The user default that keeps the switch; on, unless stored otherwise.
    static const QString key;

    /// All of them outlive it. Asks and reads nothing.
    LiveUse(UserDefaults &defaults, engine::DeviceUses &deviceUses, MacProtectionRuntime &runtime,
            QObject *parent = nullptr);
    ~LiveUse() override;

    bool isOn() const;
    [[nodiscard]] foundation::StoreResult setOn(bool on);

    /// Follows from now on the switch, also as other processes store it, and the uses as long as it is on.
    /// Takes no time itself: the first question is asked from the event loop.
    void start();

    /// Of now, in the order in which they began; none while it is off or not started.
    const QList<engine::DeviceUse> &uses() const { return m_uses; }
    /// How much of it can be seen; full while it is off or not started.
    const engine::Sight &sight() const { return m_sight; }

  Q_SIGNALS:
    void switched();
    void usesChanged();
    void sightChanged();
    /// While Privacy Mode is on; `uses` has it already. Who was there before one followed has not begun.
    void began(const kestrin::engine::DeviceUse &use);

  private:
    void adoptSwitch();
    void follow();
    void adoptLater();
    void adopt();
    void publish(const QList<engine::DeviceUse> &uses, const engine::Sight &sight);
    void tellWhoBegan(const QList<engine::DeviceUse> &before);

    UserDefaults &m_defaults;
    engine::DeviceUses &m_deviceUses;
    MacProtectionRuntime &m_runtime;
    QList<engine::DeviceUse> m_uses;
    engine::Sight m_sight;
    bool m_isStarted = false;
    /// As it was told last.
    bool m_isOn = true;
    bool m_isAdoptionPosted = false;
    std::unique_ptr<engine::DeviceUseSubscription> m_subscription;
};

} // namespace kestrin::runtime
