#include "desktop/live/PulseLoop.h"

#include <QSocketNotifier>

#include <poll.h>

#include <algorithm>

namespace kestrin::desktop {

using namespace foundation;

namespace {

/// It may be the one that calls.
void discard(QSocketNotifier *notifier) {
    notifier->setEnabled(false);
    notifier->deleteLater();
}

} // namespace

PulseLoop::PulseLoop(const PulseLibrary &library) : m_library(library), m_loop(library.mainloop_new()) {
    m_library.mainloop_set_poll_func(m_loop, &PulseLoop::poll, this);
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &PulseLoop::wake);
}

PulseLoop::~PulseLoop() {
    m_notifiers.clear();
    m_library.mainloop_free(m_loop);
}

int PulseLoop::poll(pollfd *descriptors, unsigned long count, int timeout, void *self) {
    auto &loop = *static_cast<PulseLoop *>(self);
    if (loop.m_way != Way::note)
        return ::poll(descriptors, count, timeout);
    loop.m_descriptors.assign(descriptors, descriptors + count);
    loop.m_timeout = timeout;
    return 0;
}

/// How much has been done.
int PulseLoop::turn(Way way, int microseconds) {
    m_way = way;
    if (m_library.mainloop_prepare(m_loop, microseconds) < 0 || m_library.mainloop_poll(m_loop) < 0)
        return 0;
    return m_library.mainloop_dispatch(m_loop);
}

void PulseLoop::run() {
    // So that nobody who has always more to say keeps us here.
    for (int turns = 0; turns < 1000 && turn(Way::look, 0) > 0; ++turns) {
    }
    goOnLater();
}

void PulseLoop::waitOnce(const Deadline &deadline) {
    constexpr qint64 longest = 1'000'000'000;
    const qint64 left = std::chrono::microseconds(deadline.remaining()).count();
    turn(Way::wait, static_cast<int>(std::min(left, longest)));
}

void PulseLoop::goOnLater() {
    m_descriptors.clear();
    m_timeout = -1;
    // What is done in this turn, if the time of something has just come, is done by the next one otherwise.
    const bool isDue = turn(Way::note, -1) > 0;
    m_notifiers.clear();
    for (const pollfd &waited : m_descriptors) {
        for (const auto &[events, kind] :
             {std::pair(POLLIN, QSocketNotifier::Read), std::pair(POLLOUT, QSocketNotifier::Write)}) {
            if ((waited.events & events) == 0)
                continue;
            auto *const notifier = new QSocketNotifier(waited.fd, kind);
            connect(notifier, &QSocketNotifier::activated, this, &PulseLoop::wake);
            m_notifiers.emplace_back(notifier, &discard);
        }
    }
    if (isDue || m_timeout >= 0)
        m_timer.start(isDue ? 0 : m_timeout);
    else
        m_timer.stop();
}

void PulseLoop::wake() {
    run();
    Q_EMIT ran();
}

} // namespace kestrin::desktop
