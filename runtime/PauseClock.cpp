#include "runtime/PauseClock.h"

#include <algorithm>

namespace kestrin::runtime {

using namespace foundation;
using namespace std::chrono;

namespace {

/// Less is not worth a change of what is stored.
constexpr seconds tolerance{2};

milliseconds between(const QDateTime &earlier, const QDateTime &later) {
    return milliseconds(earlier.msecsTo(later));
}

} // namespace

PauseClock::PauseClock(UserDefaults &defaults, const std::function<void()> &ring) : m_defaults(defaults) {
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    QObject::connect(&m_timer, &QTimer::timeout, &m_timer, ring);
}

StoreResult PauseClock::look(const QDateTime &now) {
    StoreResult moved;
    auto pause = Pause::stored(m_defaults);
    m_timer.stop();
    if (!pause) {
        m_known.reset();
        return moved;
    }
    milliseconds left = between(now, pause->until);
    if (pause == m_known) {
        const milliseconds most = m_left - milliseconds(m_sinceLook.elapsed());
        if (left > most + tolerance) {
            const Pause shorter = pause->movedBack(ceil<seconds>(left - most));
            moved = pause->replaceBy(m_defaults, shorter);
            if (moved.isKept())
                pause = shorter;
        }
        left = std::min(left, most);
    }
    m_known = pause;
    m_left = left;
    m_sinceLook.start();
    // The timer stands still while the machine sleeps, and somebody looks every minute anyway.
    if (m_left > 0ms)
        m_timer.start(std::min<milliseconds>(m_left, hours(1)));
    return moved;
}

} // namespace kestrin::runtime
