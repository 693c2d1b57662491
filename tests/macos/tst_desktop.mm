// The desktop of macOS as the window sees it: appearance, display options, symbols, the bundle's icon. What
// GNUstep lacks of them is put there by the test.

#include "desktop/macos/AppKitPreferences.h"
#include "desktop/macos/AppKitSymbols.h"
#include "tests/macos/MacTests.h"
#include "tests/macos/SampleApplication.h"

#include <QSignalSpy>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace kestrin;
using namespace kestrin::design;
using namespace kestrin::desktop;

/// Matches one of the two that there were at first, as all of AppKit's do.
@interface SampleAppearance : NSAppearance {
  @public
    NSAppearanceName match;
}
@end

@implementation SampleAppearance
- (NSAppearanceName)bestMatchFromAppearancesWithNames:(NSArray *)names {
    return [names containsObject:match] ? match : nil;
}
@end

/// What there is of the application without a display.
@interface SampleDesktop : NSObject {
    NSAppearance *effectiveAppearance;
}
@property(retain) NSAppearance *effectiveAppearance;
@end

@implementation SampleDesktop
@synthesize effectiveAppearance;
@end

namespace {

SampleDesktop *desktop = nil;
BOOL reduced = NO;
BOOL contrast = NO;

} // namespace

@implementation NSWorkspace (Accessibility)
- (BOOL)accessibilityDisplayShouldReduceMotion {
    return reduced;
}
- (BOOL)accessibilityDisplayShouldIncreaseContrast {
    return contrast;
}
@end

@implementation NSImageSymbolConfiguration
+ (instancetype)configurationWithPointSize:(CGFloat)pointSize weight:(NSFontWeight)weight {
    return nil;
}
@end

namespace {

NSAppearance *appearance(NSAppearanceName match) {
    SampleAppearance *result = [[[SampleAppearance alloc] init] autorelease];
    result->match = match;
    return result;
}

id sharedApplication(id, SEL) {
    return desktop;
}

class DesktopTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void preferencesAreFollowed();
    void symbolsOlderSystemsLack();
    void iconOfTheBundle();
};

void DesktopTest::preferencesAreFollowed() {
    desktop = [[[SampleDesktop alloc] init] autorelease];
    class_replaceMethod(object_getClass([NSApplication class]), @selector(sharedApplication),
                        reinterpret_cast<IMP>(sharedApplication), "@@:");
    AppKitPreferences staying;
    QCOMPARE(staying.prefersDark(), false);
    auto leaving = std::make_unique<AppKitPreferences>();
    QSignalSpy spy(&staying, &DesktopPreferences::changed);
    [desktop setEffectiveAppearance:appearance(NSAppearanceNameDarkAqua)];
    QCOMPARE(spy.size(), 1);
    QVERIFY(*staying.prefersDark() && *leaving->prefersDark());
    leaving.reset();
    // Would reach what is gone, if that still listened.
    [desktop setEffectiveAppearance:appearance(NSAppearanceNameAqua)];
    QCOMPARE(staying.prefersDark(), false);
    for (const auto &[motion, increase] : {std::pair(YES, NO), std::pair(NO, YES)}) {
        reduced = motion;
        contrast = increase;
        postOnWorkspaceCentre(NSWorkspaceAccessibilityDisplayOptionsDidChangeNotification, nil, nil);
        QCOMPARE(staying.reducedMotion(), bool(motion));
        QCOMPARE(staying.highContrast(), bool(increase));
    }
    QCOMPARE(spy.size(), 4);
}

/// GNUstep has none at all, like a Mac before they came; then ours are drawn.
void DesktopTest::symbolsOlderSystemsLack() {
    QVERIFY(appKitSymbol("shield", 48, 64, KestrinWeight::Regular).isNull());
}

void DesktopTest::iconOfTheBundle() {
    NSString *name = [[NSBundle mainBundle] objectForInfoDictionaryKey:@"CFBundleIconFile"];
    NSString *file = [[NSBundle mainBundle] pathForResource:name ofType:nil];
    QList<NSInteger> sizes;
    for (NSBitmapImageRep *picture in [NSImageRep imageRepsWithContentsOfFile:file]) {
        const NSInteger size = [picture pixelsWide];
        sizes.append(size);
        QCOMPARE([[picture colorAtX:size / 2 y:size / 2] alphaComponent], 1.0);
        // Round corners.
        QCOMPARE([[picture colorAtX:size / 9 y:size / 9] alphaComponent], 0.0);
    }
    // Each png2icns puts them in an order of its own.
    std::ranges::sort(sizes);
    QCOMPARE(sizes, (QList<NSInteger>{16, 32, 128, 256, 512, 1024}));
}

} // namespace

int runDesktopTests(const QStringList &arguments) {
    DesktopTest test;
    return QTest::qExec(&test, arguments);
}

#include "tst_desktop.moc"
