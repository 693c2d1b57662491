// Uses that exist in memory only.
#pragma once

#include "engine/live/DeviceUseBroadcast.h"

namespace kestrin::engine {

/// Uses begin and end as the owner says, and are told synchronously.
class InMemoryDeviceUses final : public DeviceUses {
  public:
    QList<DeviceUse> uses() override { return m_broadcast.uses(); }
    [[nodiscard]] std::unique_ptr<DeviceUseSubscription> subscribe(DeviceUseHandlers handlers) override {
        return m_broadcast.subscribe(std::move(handlers));
    }
    Sight sight() override { return m_sight; }
    void setPatience(std::chrono::milliseconds /*patience*/) override {}

    void begin(const DeviceUse &use) { m_broadcast.adopt(m_broadcast.uses() + QList{use}); }
    void end(const DeviceUse &use) {
        QList<DeviceUse> left = m_broadcast.uses();
        left.removeOne(use);
        m_broadcast.adopt(left);
    }
    void setSight(const Sight &sight) {
        m_sight = sight;
        m_broadcast.tellSightChanged();
    }
    bool isWatched() const { return !m_broadcast.isEmpty(); }

  private:
    DeviceUseBroadcast m_broadcast;
    Sight m_sight;
};

} // namespace kestrin::engine
