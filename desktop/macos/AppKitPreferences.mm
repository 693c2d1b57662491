#include "desktop/macos/AppKitPreferences.h"

#include "desktop/macos/ObjectReference.h"

#import <AppKit/AppKit.h>

@interface KestrinPreferencesObserver : NSObject {
  @public
    kestrin::desktop::AppKitPreferences *preferences;
}
- (void)displayOptionsDidChange:(NSNotification *)notification;
@end

@implementation KestrinPreferencesObserver

- (void)observeValueForKeyPath:(NSString *)path
                      ofObject:(id)object
                        change:(NSDictionary *)change
                       context:(void *)context {
    preferences->refresh();
}

- (void)displayOptionsDidChange:(NSNotification *)notification {
    preferences->refresh();
}

@end

namespace kestrin::desktop {

namespace {

NSString *const appearanceKey = @"effectiveAppearance";

/// Appearances are more than two: those of increased contrast have names of their own.
bool isDark(NSAppearance *appearance) {
    NSArray *names = [NSArray arrayWithObjects:NSAppearanceNameDarkAqua, NSAppearanceNameAqua, nil];
    return [[appearance bestMatchFromAppearancesWithNames:names] isEqualToString:NSAppearanceNameDarkAqua];
}

} // namespace

struct AppKitPreferences::Observation {
    explicit Observation(AppKitPreferences *preferences) : observer(autoreleased([[Observer alloc] init])) {
        observer.get()->preferences = preferences;
        [[NSApplication sharedApplication] addObserver:observer.get()
                                            forKeyPath:appearanceKey
                                               options:0
                                               context:nullptr];
        [[[NSWorkspace sharedWorkspace] notificationCenter]
            addObserver:observer.get()
               selector:@selector(displayOptionsDidChange:)
                   name:NSWorkspaceAccessibilityDisplayOptionsDidChangeNotification
                 object:nil];
    }

    ~Observation() {
        [[NSApplication sharedApplication] removeObserver:observer.get() forKeyPath:appearanceKey];
        [[[NSWorkspace sharedWorkspace] notificationCenter] removeObserver:observer.get()];
    }

    using Observer = KestrinPreferencesObserver;
    const ObjectReference<Observer *> observer;
};

AppKitPreferences::AppKitPreferences() {
    @autoreleasepool {
        m_observation = std::make_unique<Observation>(this);
    }
    read();
}

AppKitPreferences::~AppKitPreferences() {
    @autoreleasepool {
        m_observation.reset();
    }
}

void AppKitPreferences::refresh() {
    read();
    Q_EMIT changed();
}

void AppKitPreferences::read() {
    @autoreleasepool {
        m_prefersDark = isDark([[NSApplication sharedApplication] effectiveAppearance]);
        NSWorkspace *workspace = [NSWorkspace sharedWorkspace];
        m_reducedMotion = [workspace accessibilityDisplayShouldReduceMotion];
        m_highContrast = [workspace accessibilityDisplayShouldIncreaseContrast];
    }
}

} // namespace kestrin::desktop
