#pragma once

#include <QHash>
#include <QList>

#include <chrono>
#include <optional>

namespace kestrin::desktop {

/// How often an application that shows itself again counts as launched again: at once when its process is
/// new, and otherwise at most once in five seconds. One that comes back sooner is held back until they are
/// over, and is a launch then if it is still shown. So nothing slips through, and a window that comes and
/// goes a hundred times a second is no flood. Main thread only.
class LaunchLimit {
  public:
    using Time = std::chrono::steady_clock::time_point;
    static constexpr std::chrono::seconds interval{5};

    /// Whether the process, which began at `start`, is launched now. Otherwise it is held back.
    bool admits(qint32 process, quint64 start, Time now);
    /// When the first of those that are held back is due.
    std::optional<Time> nextDue() const;
    /// Those that are due, which are held back no longer.
    QList<qint32> takeDue(Time now);

  private:
    struct Launched {
        quint64 start;
        Time last;
        bool isHeldBack = false;
    };

    /// Who was launched in the last interval.
    QHash<qint32, Launched> m_launched;
};

} // namespace kestrin::desktop
