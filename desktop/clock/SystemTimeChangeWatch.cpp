#include "desktop/clock/SystemTimeChangeWatch.h"

#include "foundation/FileWatch.h"

#include <QFileInfo>
#include <QSocketNotifier>

#include <sys/timerfd.h>
#include <unistd.h>

#include <cerrno>
#include <ctime>
#include <limits>

namespace kestrin::desktop {

using namespace foundation;
using namespace runtime;

namespace {

/// A timer that is due at the end of time. The kernel cancels it when the clock is set and when the machine
/// resumes, and goes on keeping it. -1 when there is none to be had.
int openClockTimer() {
    const int timer = ::timerfd_create(CLOCK_REALTIME, TFD_NONBLOCK | TFD_CLOEXEC);
    itimerspec never{};
    never.it_value.tv_sec = std::numeric_limits<time_t>::max();
    if (timer >= 0 &&
        ::timerfd_settime(timer, TFD_TIMER_ABSTIME | TFD_TIMER_CANCEL_ON_SET, &never, nullptr) == 0)
        return timer;
    if (timer >= 0)
        ::close(timer);
    return -1;
}

bool wasCancelled(int timer) {
    quint64 expirations = 0;
    return ::read(timer, &expirations, sizeof expirations) < 0 && errno == ECANCELED;
}

} // namespace

struct SystemTimeChangeWatch::Private {
    explicit Private(const QString &zoneLink) : zone(zoneLink), timer(openClockTimer()) {
        if (timer >= 0)
            notifier = std::make_unique<QSocketNotifier>(timer, QSocketNotifier::Read);
    }
    Private(const Private &) = delete;
    Private &operator=(const Private &) = delete;
    ~Private() {
        notifier.reset();
        if (timer >= 0)
            ::close(timer);
    }

    FileWatch zone;
    const int timer;
    std::unique_ptr<QSocketNotifier> notifier;
};

SystemTimeChangeWatch::SystemTimeChangeWatch(QObject *parent, const QString &zoneLink)
    : TimeChangeWatch(parent)
    , d(std::make_unique<Private>(zoneLink)) {
    connect(&d->zone, &FileWatch::changed, this, [this, zoneLink] {
        // Some replace the link in two steps. The zone between them, UTC, is nobody's.
        if (!QFileInfo::exists(zoneLink))
            return;
        ::tzset();
        Q_EMIT changed();
    });
    if (d->notifier) {
        connect(d->notifier.get(), &QSocketNotifier::activated, this, [this] {
            if (wasCancelled(d->timer))
                Q_EMIT changed();
        });
    }
}

SystemTimeChangeWatch::~SystemTimeChangeWatch() = default;

} // namespace kestrin::desktop
