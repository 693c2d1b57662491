// The other door to the operating system: who uses microphone, camera or screen right now.
#pragma once

#include "engine/live/DeviceUse.h"
#include "engine/workspace/Sight.h"

#include <QList>

#include <chrono>
#include <functional>
#include <memory>

namespace kestrin::engine {

/// A registration; it lasts as long as the object. Destroying it unsubscribes at once.
class DeviceUseSubscription {
  public:
    DeviceUseSubscription() = default;
    DeviceUseSubscription(const DeviceUseSubscription &) = delete;
    DeviceUseSubscription &operator=(const DeviceUseSubscription &) = delete;
    virtual ~DeviceUseSubscription() = default;
};

/// What a subscriber hears, on the main thread and from the event loop. Each use that began ends exactly
/// once, with the same record, also when what told of it goes away.
struct DeviceUseHandlers {
    std::function<void(const DeviceUse &)> began;
    std::function<void(const DeviceUse &)> ended;
    /// Asked for again by sight().
    std::function<void()> sightChanged;
};

/// It observes and changes nothing. Everything is called on the main thread; nothing throws, and what cannot
/// be found out is left out. As long as nobody asks or subscribes, nothing is connected to or watched.
class DeviceUses {
  public:
    DeviceUses() = default;
    DeviceUses(const DeviceUses &) = delete;
    DeviceUses &operator=(const DeviceUses &) = delete;
    virtual ~DeviceUses() = default;

    /// The uses now, in the order in which they began.
    virtual QList<DeviceUse> uses() = 0;

    /// Tells of what begins and ends from now on; `uses()`, called right afterwards, has what began before.
    [[nodiscard]] virtual std::unique_ptr<DeviceUseSubscription> subscribe(DeviceUseHandlers handlers) = 0;

    /// How much of it can be seen here.
    virtual Sight sight() = 0;

    /// How long a question waits for those who do not answer; two seconds, unless set. What they know is told
    /// to subscribers once they do, so who subscribes needs little of it.
    virtual void setPatience(std::chrono::milliseconds patience) = 0;
};

} // namespace kestrin::engine
