#pragma once

#include "desktop/quitting/QuitCommands.h"

#include <algorithm>
#include <chrono>

namespace kestrin::desktop {

/// What conversations with silent applications may cost together, however many of them a check or a burst of
/// launches meets. Who comes when it is used up is asked through his windows at once. It is there again when
/// nobody has been talked to for as long. Main thread only.
class QuitPatience {
  public:
    static constexpr std::chrono::milliseconds inAll{2000};

    /// As long as there is patience left, and at most `busPatience`.
    bool acceptsQuitCommand(const QuitTarget &target) {
        using namespace std::chrono;
        const auto begin = steady_clock::now();
        if (begin - m_lastTalk >= inAll)
            m_left = inAll;
        const auto patience = std::min(busPatience, duration_cast<milliseconds>(m_left));
        if (patience.count() == 0)
            return false;
        const bool isAccepted = desktop::acceptsQuitCommand(target, patience);
        m_lastTalk = steady_clock::now();
        m_left = std::max(m_left - (m_lastTalk - begin), nanoseconds::zero());
        return isAccepted;
    }

  private:
    std::chrono::nanoseconds m_left = inAll;
    std::chrono::steady_clock::time_point m_lastTalk;
};

} // namespace kestrin::desktop
