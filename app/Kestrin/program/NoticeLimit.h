#pragma once

#include <QHash>
#include <QString>

#include <chrono>
#include <limits>

namespace kestrin::app {

/// Lets something be told once in a while, since what begins again and again would fill the screen otherwise.
class NoticeLimit {
  public:
    using Time = std::chrono::steady_clock::time_point;

    /// `most` are how many different things are told in that while.
    explicit NoticeLimit(std::chrono::seconds interval,
                         qsizetype most = std::numeric_limits<qsizetype>::max())
        : m_interval(interval)
        , m_most(most) {}

    /// Whether this is to be told at `now`; if so it is not for a while.
    bool admits(const QString &what, Time now) {
        m_told.removeIf([&](const auto &told) { return now - told.value() >= m_interval; });
        if (m_told.contains(what) || m_told.size() >= m_most)
            return false;
        m_told.insert(what, now);
        return true;
    }
    /// It may be told again.
    void forget(const QString &what) { m_told.remove(what); }

  private:
    const std::chrono::seconds m_interval;
    const qsizetype m_most;
    /// When each was told last.
    QHash<QString, Time> m_told;
};

} // namespace kestrin::app
