#pragma once

#include "app/Kestrin/program/NoticeLimit.h"
#include "engine/MacProtectionEvent.h"

namespace kestrin::app {

/// Which quit requests are worth a notice of the desktop: an application that starts again and again would
/// otherwise fill the screen.
class QuitNotices {
  public:
    using Time = NoticeLimit::Time;

    static constexpr std::chrono::seconds interval{10};

    /// Whether this event is to be shown at `now`; if so, the application's next ones are not for a while.
    bool isDue(const engine::MacProtectionEvent &event, Time now);

  private:
    NoticeLimit m_applications{interval};
};

} // namespace kestrin::app
