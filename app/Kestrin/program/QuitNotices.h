#pragma once

#include "engine/MacProtectionEvent.h"

#include <QHash>

#include <chrono>

namespace kestrin::app {

/// Which quit requests are worth a notice of the desktop: an application that starts again and again would
/// otherwise fill the screen.
class QuitNotices {
  public:
    using Time = std::chrono::steady_clock::time_point;

    static constexpr std::chrono::seconds interval{10};

    /// Whether this event is to be shown at `now`; if so, the application's next ones are not for a while.
    bool isDue(const engine::MacProtectionEvent &event, Time now);

  private:
    /// When each application was shown last.
    QHash<QString, Time> m_shown;
};

} // namespace kestrin::app
