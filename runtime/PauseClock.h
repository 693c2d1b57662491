#pragma once

#include "runtime/Pause.h"

#include <QElapsedTimer>
#include <QTimer>

namespace kestrin::runtime {

/// Rings when the stored pause is over, and knows how much of it is left whatever the clock is set to. Main
/// thread only.
class PauseClock {
  public:
    /// `defaults` outlives the clock. Rings from the event loop.
    PauseClock(UserDefaults &defaults, const std::function<void()> &ring);

    /// To be called when the stored pause is another one, when the clock was set, and now and then. A clock
    /// that was set back takes the pause with it, so that it becomes no longer.
    [[nodiscard]] foundation::StoreResult look(const QDateTime &now);

  private:
    UserDefaults &m_defaults;
    QTimer m_timer;
    std::optional<Pause> m_known;
    /// At the last look.
    std::chrono::milliseconds m_left{};
    QElapsedTimer m_sinceLook;
};

} // namespace kestrin::runtime
