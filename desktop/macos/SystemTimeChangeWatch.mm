#include "desktop/clock/SystemTimeChangeWatch.h"

#include "desktop/macos/ObjectReference.h"

#include <QPointer>

#import <AppKit/AppKit.h>

#include <ctime>

namespace kestrin::desktop {

using namespace runtime;

namespace {

/// Hears one notification of one centre, which lasts as long as the process.
class TimeObservation {
  public:
    TimeObservation(TimeChangeWatch *told, NSNotificationCenter *centre, NSString *name) : m_centre(centre) {
        // One may wait in the main queue when the token is removed.
        const QPointer<TimeChangeWatch> watch(told);
        m_token.reset([centre addObserverForName:name
                                          object:nil
                                           queue:[NSOperationQueue mainQueue]
                                      usingBlock:^(NSNotification *) {
                                        if (!watch)
                                            return;
                                        ::tzset();
                                        Q_EMIT watch->changed();
                                      }]);
    }
    TimeObservation(const TimeObservation &) = delete;
    TimeObservation &operator=(const TimeObservation &) = delete;
    ~TimeObservation() { [m_centre removeObserver:m_token.get()]; }

  private:
    NSNotificationCenter *m_centre;
    ObjectReference<id> m_token;
};

} // namespace

struct SystemTimeChangeWatch::Private {
    explicit Private(TimeChangeWatch *told)
        : clock(told, [NSNotificationCenter defaultCenter], NSSystemClockDidChangeNotification)
        , zone(told, [NSNotificationCenter defaultCenter], NSSystemTimeZoneDidChangeNotification)
        , wake(told, [[NSWorkspace sharedWorkspace] notificationCenter], NSWorkspaceDidWakeNotification) {}

    TimeObservation clock;
    TimeObservation zone;
    TimeObservation wake;
};

SystemTimeChangeWatch::SystemTimeChangeWatch(QObject *parent, const QString &) : TimeChangeWatch(parent) {
    @autoreleasepool {
        d = std::make_unique<Private>(this);
    }
}

SystemTimeChangeWatch::~SystemTimeChangeWatch() {
    @autoreleasepool {
        d.reset();
    }
}

} // namespace kestrin::desktop
