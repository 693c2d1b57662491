// What AppKit and Foundation declare and GNUstep does not. Included before everything else.
#pragma once

#import <AppKit/AppKit.h>

// Its value is the one of AppKit.
static NSString *const NSWorkspaceApplicationKey __attribute__((unused)) = @"NSWorkspaceApplicationKey";

// Only declared. Programs outside the bundle use it, and no test is one.
@interface NSUserDefaults (Suites)
- (instancetype)initWithSuiteName:(NSString *)name;
@end
