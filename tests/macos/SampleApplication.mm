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

/// Stands in for the main queue, which nobody serves where Qt's event loop runs.
@interface MainThreadQueue : NSOperationQueue
@end

/// Stands in for the workspace's list.
@interface ListedApplications : NSObject
- (NSArray *)runningApplications;
@end

static NSArray *running = nil;

@implementation MainThreadQueue

+ (NSOperationQueue *)mainQueue {
    static MainThreadQueue *const queue = [[MainThreadQueue alloc] init];
    return queue;
}

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

@implementation ListedApplications

- (NSArray *)runningApplications {
    return running;
}

@end

void listAsRunning(NSArray *applications) {
    running = applications;
    const SEL list = @selector(runningApplications);
    class_replaceMethod([NSWorkspace class], list, [ListedApplications instanceMethodForSelector:list],
                        "@@:");
}

void serveMainQueueByQt() {
    const SEL queue = @selector(mainQueue);
    class_replaceMethod(object_getClass([NSOperationQueue class]), queue,
                        [MainThreadQueue methodForSelector:queue], "@@:");
}

void postOnWorkspaceCentre(NSString *name, id sender, NSDictionary *userInfo) {
    // The centre's own way of posting asks a daemon; that of its superclass, under another name, does not.
    NSNotificationCenter *const centre = [[NSWorkspace sharedWorkspace] notificationCenter];
    const SEL here = @selector(postHere:);
    class_addMethod([centre class], here,
                    [NSNotificationCenter instanceMethodForSelector:@selector(postNotification:)], "v@:@");
    [centre performSelector:here
                 withObject:[NSNotification notificationWithName:name object:sender userInfo:userInfo]];
}
