// The desktop of macOS as the window sees it: appearance, display options, symbols, the bundle's icon. What
// GNUstep lacks of them is put there by the test.

#include "design/platform/macos/AppKitPreferences.h"
#include "design/platform/macos/AppKitSymbols.h"
#include "tests/macos/MacTests.h"
#include "tests/macos/SampleApplication.h"

#include <QSignalSpy>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace kestrin;

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

/// The symbol that there is, and where it was drawn.
struct {
    CGFloat widthInEm;
    CGFloat em;
    NSRect rect;
    NSBitmapImageRep *bitmap;
} symbol;

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
    symbol.em = pointSize;
    return [[[self alloc] init] autorelease];
}
@end

@interface SampleSymbol : NSImage
@end

@implementation SampleSymbol
- (NSImage *)imageWithSymbolConfiguration:(NSImageSymbolConfiguration *)configuration {
    return configuration ? self : nil;
}
- (NSSize)size {
    return NSMakeSize(symbol.widthInEm * symbol.em, symbol.em);
}
/// One white pixel is enough to see whose memory it is.
- (void)drawInRect:(NSRect)rect {
    symbol.rect = rect;
    std::fill_n([symbol.bitmap bitmapData], 4, 255);
}
@end

@interface SampleContext : NSGraphicsContext
@end

@implementation SampleContext
- (void)flushGraphics {
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

id symbolNamed(id, SEL, NSString *name, NSString *) {
    return [name isEqualToString:@"shield"] ? [[[SampleSymbol alloc] init] autorelease] : nil;
}

id contextFor(id, SEL, NSBitmapImageRep *bitmap) {
    static SampleContext *const context = NSAllocateObject([SampleContext class], 0, nullptr);
    symbol.bitmap = bitmap;
    return context;
}

class DesktopTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void preferencesAreFollowed();
    void symbolsAreThoseOfTheSystem();
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
        QCOMPARE(staying.animations(), !motion);
        QCOMPARE(staying.highContrast(), bool(increase));
    }
    QCOMPARE(spy.size(), 4);
}

void DesktopTest::symbolsAreThoseOfTheSystem() {
    QVERIFY(appKitSymbol("shield", 48, 64, KestrinWeight::Regular).isNull());
    class_addMethod(object_getClass([NSImage class]),
                    @selector(imageWithSystemSymbolName:accessibilityDescription:),
                    reinterpret_cast<IMP>(symbolNamed), "@@:@@");
    class_replaceMethod(object_getClass([NSGraphicsContext class]),
                        @selector(graphicsContextWithBitmapImageRep:), reinterpret_cast<IMP>(contextFor),
                        "@@:@");
    QVERIFY(appKitSymbol("kestrin", 48, 64, KestrinWeight::Regular).isNull());
    for (const auto &[width, place] :
         {std::pair(0.5, NSMakeRect(20, 8, 24, 48)), std::pair(2.0, NSMakeRect(0, 16, 64, 32))}) {
        symbol.widthInEm = width;
        const QImage image = appKitSymbol("shield", 48, 64, KestrinWeight::Regular);
        QVERIFY(NSEqualRects(symbol.rect, place));
        // Whatever colour it came in.
        QCOMPARE(image.convertToFormat(QImage::Format_ARGB32_Premultiplied).pixel(0, 0), 0xff000000U);
        QCOMPARE(qAlpha(image.pixel(1, 0)), 0);
    }
}

void DesktopTest::iconOfTheBundle() {
    NSString *name = [[NSBundle mainBundle] objectForInfoDictionaryKey:@"CFBundleIconFile"];
    NSString *file = [[NSBundle mainBundle] pathForResource:name ofType:nil];
    // GNUstep's reader knows those with one pixel a point, from 256 on, and the largest.
    QList<NSInteger> sizes;
    for (NSBitmapImageRep *picture in [NSImageRep imageRepsWithContentsOfFile:file]) {
        const NSInteger size = [picture pixelsWide];
        sizes.append(size);
        QCOMPARE([[picture colorAtX:size / 2 y:size / 2] alphaComponent], 1.0);
        // Round corners.
        QCOMPARE([[picture colorAtX:size / 9 y:size / 9] alphaComponent], 0.0);
    }
    QCOMPARE(sizes, (QList<NSInteger>{256, 512, 1024}));
}

} // namespace

int runDesktopTests(const QStringList &arguments) {
    DesktopTest test;
    return QTest::qExec(&test, arguments);
}

#include "tst_desktop.moc"
