// What AppKit and Foundation declare and GNUstep does not. Included before everything else.
#pragma once

#import <AppKit/AppKit.h>

// Its value is the one of AppKit.
static NSString *const NSWorkspaceApplicationKey __attribute__((unused)) = @"NSWorkspaceApplicationKey";

static NSString *const NSWorkspaceAccessibilityDisplayOptionsDidChangeNotification __attribute__((unused)) =
    @"NSWorkspaceAccessibilityDisplayOptionsDidChangeNotification";

// The rest is compiled and never run.
@interface NSApplication (Appearance)
- (NSAppearance *)effectiveAppearance;
@end

@interface NSWorkspace (Accessibility)
- (BOOL)accessibilityDisplayShouldReduceMotion;
- (BOOL)accessibilityDisplayShouldIncreaseContrast;
@end

@interface NSImageSymbolConfiguration : NSObject
+ (instancetype)configurationWithPointSize:(CGFloat)pointSize weight:(NSFontWeight)weight;
@end

@interface NSImage (Symbols)
+ (instancetype)imageWithSystemSymbolName:(NSString *)name accessibilityDescription:(NSString *)description;
- (NSImage *)imageWithSymbolConfiguration:(NSImageSymbolConfiguration *)configuration;
@end

// Programs outside the bundle use it, and no test is one.
@interface NSUserDefaults (Suites)
- (instancetype)initWithSuiteName:(NSString *)name;
@end
