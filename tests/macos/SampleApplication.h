// Running applications that a test makes up. For Objective-C++ only.
#pragma once

#import <AppKit/AppKit.h>

/// A record whose every answer the test chooses. What is not set is nil, 0 or NO; what is set has to last as
/// long as the record.
@interface SampleApplication : NSRunningApplication {
  @public
    NSApplicationActivationPolicy activationPolicy;
    NSString *localizedName;
    NSString *bundleIdentifier;
    NSURL *executableURL;
    pid_t processIdentifier;
    BOOL obeys;
    int requests;
}
+ (SampleApplication *)named:(NSString *)name process:(pid_t)process;
@end

/// From now on NSWorkspace lists these. The caller keeps the array alive.
void listAsRunning(NSArray *applications);

/// GNUstep runs the operations of the main queue on other threads. From now on they run on the main thread,
/// from Qt's event loop, which on a Mac serves that queue.
void serveMainQueueByQt();

/// Posts on the workspace's own notification centre, to the observers in this process. GNUstep's centre would
/// hand it to a daemon that carries property lists between processes, and AppKit's does not.
void postOnWorkspaceCentre(NSString *name, id sender, NSDictionary *userInfo);
