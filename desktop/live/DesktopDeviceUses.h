#pragma once

#include "desktop/applications/DesktopPatience.h"
#include "desktop/live/DeviceUsers.h"
#include "desktop/live/UseSource.h"
#include "engine/live/DeviceUseBroadcast.h"

#include <QTimer>

#include <chrono>
#include <memory>
#include <vector>

namespace kestrin::desktop {

/// What all of its sources tell together, by application. They are open while somebody subscribes, and for
/// the moment in which somebody asks. While somebody subscribes, what cannot be opened or does not answer is
/// tried again when it says that it is there, and every ten minutes. Whoever begins and ends all the time is
/// looked at twenty times a second. Main thread only.
class DesktopDeviceUses final : public engine::DeviceUses {
  public:
    /// `workspace` names applications, and outlives this object. `blindSpot` is a sentence about what nobody
    /// can see here; empty where there is nothing of that kind.
    DesktopDeviceUses(std::vector<std::unique_ptr<UseSource>> sources, engine::Workspace &workspace,
                      QString blindSpot = {});

    QList<engine::DeviceUse> uses() override;
    [[nodiscard]] std::unique_ptr<engine::DeviceUseSubscription>
    subscribe(engine::DeviceUseHandlers handlers) override;
    engine::Sight sight() override;
    void setPatience(std::chrono::milliseconds patience) override { m_patience = patience; }

  private:
    struct Part {
        std::unique_ptr<UseSource> source;
        QList<SourceUse> uses = {};
        /// They may be others by now.
        bool isStale = true;
    };
    enum class Closed { open, leave };

    bool isWatched() const { return !m_broadcast.isEmpty(); }
    void follow(Part &part);
    void askLater();
    void ask(Closed closed);
    static bool isAnswered(Part &part, Closed closed, const foundation::Deadline &deadline);
    void askAndTell(Closed closed);
    void release();
    QList<engine::DeviceUse> usesOfAll();
    engine::Sight sightOfAll() const;

    std::vector<Part> m_parts;
    const QString m_blindSpot;
    DeviceUsers m_users;
    engine::DeviceUseBroadcast m_broadcast;
    engine::Sight m_sight;
    std::chrono::milliseconds m_patience{desktopPatience};
    bool m_opensClosed = false;
    std::chrono::steady_clock::time_point m_asked;
    QTimer m_soon;
    /// All connections end with it.
    QTimer m_again;
};

} // namespace kestrin::desktop
