#pragma once

#include "engine/live/DeviceUse.h"

#include <QHash>
#include <QList>

#include <algorithm>
#include <chrono>
#include <optional>

namespace kestrin::runtime {

/// How often something may happen: some times at once, and again once more after every pause.
struct Allowance {
    int atOnce;
    std::chrono::milliseconds pause;
};

/// Decides what of the uses is told in the log, and when. Told is what applications do, whichever of their
/// processes does it. However often one begins and ends, and however many there are, no more is told than
/// the allowances say; what was held back is told later as it is then, and only if that is news. It knows no
/// clock and no log. Nobody waits for ever: of those that are held back the one that waits longest is next.
class UseRecord {
  public:
    using Time = std::chrono::steady_clock::time_point;

    struct Limits {
        /// Of one application and category.
        Allowance each{10, std::chrono::seconds(30)};
        /// Names can be invented.
        Allowance all{100, std::chrono::seconds(3)};
    };
    enum class Happening {
        wasThere, ///< before anything was told
        began,
        hasBegun, ///< some time ago, when it was held back
        ended,
    };
    struct Entry {
        engine::DeviceUse use;
        Happening happening = Happening::began;

        /// For people.
        QString sentence() const;
    };

    explicit UseRecord(const Limits &limits);

    /// From now on these are told, as having been there.
    void begin(const QList<engine::DeviceUse> &uses, Time now);
    /// These are the uses now.
    void follow(const QList<engine::DeviceUse> &uses, Time now);
    /// Nothing is told any more.
    void end();

    /// What is to be told now, one after the other; it counts as told.
    std::optional<Entry> takeDue(Time now);
    /// When there may be something to tell if nothing changes; absent when all has been told.
    std::optional<Time> due() const;
    /// What is held back, for who will not ask again; no more than may be told at once.
    QList<Entry> takeRest(Time now);

  private:
    /// By when as much is allowed at once as ever.
    class Budget {
      public:
        bool isWhole(Time now) const { return m_whole <= now; }
        Time next(const Allowance &allowance) const {
            return m_whole - (allowance.atOnce - 1) * allowance.pause;
        }
        void spend(const Allowance &allowance, Time now) {
            m_whole = std::max(m_whole, now) + allowance.pause;
        }

      private:
        Time m_whole;
    };
    struct Application {
        engine::DeviceUse use;
        bool isUsing = false;
        bool isToldUsing = false;
        Happening beginning = Happening::began;
        /// Of the last change, and its place among all changes.
        Time changed;
        quint64 place = 0;
        Budget budget;

        bool isOwed() const { return isUsing != isToldUsing; }
    };
    using Applications = QHash<QString, Application>;

    static QString keyOf(const engine::DeviceUse &use);
    void adopt(const QList<engine::DeviceUse> &uses, Happening beginning, Time now);
    void change(Application &application, bool isUsing, Time now);
    /// With a time, of those that may be told of then.
    Applications::iterator longestOwed(std::optional<Time> allowedAt);
    static Entry tell(Application &application, Time now);

    const Limits m_limits;
    Applications m_applications;
    Budget m_all;
    quint64 m_changes = 0;
};

} // namespace kestrin::runtime
