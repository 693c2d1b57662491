#include "tests/macos/SampleApplication.h"

#include <QCoreApplication>

@implementation SampleApplication

@synthesize activationPolicy, localizedName, bundleIdentifier, executableURL, processIdentifier;

+ (SampleApplication *)named:(NSString *)name process:(pid_t)process {
    SampleApplication *application = [[[SampleApplication alloc] init] autorelease];
    application->localizedName = name;
    application->processIdentifier = process;
    return application;
}

- (BOOL)terminate {
    ++requests;
    return obeys;
}

@end

@interface MainThreadQueue : NSOperationQueue
@end

@implementation MainThreadQueue

- (void)addOperation:(NSOperation *)operation {
    [operation retain];
    QMetaObject::invokeMethod(
        QCoreApplication::instance(),
        [operation] {
            [operation start];
            [operation release];
        },
        Qt::QueuedConnection);
}

@end

namespace {

NSArray *running = nil;

id runningApplications(id, SEL) {
    return running;
}

id mainQueue(id, SEL) {
    static MainThreadQueue *const queue = [[MainThreadQueue alloc] init];
    return queue;
}

} // namespace

void listAsRunning(NSArray *applications) {
    running = applications;
    class_replaceMethod([NSWorkspace class], @selector(runningApplications),
                        reinterpret_cast<IMP>(runningApplications), "@@:");
}

void serveMainQueueByQt() {
    class_replaceMethod(object_getClass([NSOperationQueue class]), @selector(mainQueue),
                        reinterpret_cast<IMP>(mainQueue), "@@:");
}

void postOnWorkspaceCentre(NSString *name, id sender, NSDictionary *userInfo) {
    using Post = void (*)(id, SEL, NSNotification *);
    const auto post =
        reinterpret_cast<Post>([NSNotificationCenter instanceMethodForSelector:@selector(postNotification:)]);
    post([[NSWorkspace sharedWorkspace] notificationCenter], @selector(postNotification:),
         [NSNotification notificationWithName:name object:sender userInfo:userInfo]);
}
