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

/// Derived from others, as AppKit's are. The best match is the first of its line that is asked for.
@interface SampleAppearance : NSAppearance {
  @public
    NSArray *line;
}
@end

@implementation SampleAppearance
- (NSAppearanceName)bestMatchFromAppearancesWithNames:(NSArray *)names {
    return [line firstObjectCommonWithArray:names];
}
- (void)dealloc {
    [line release];
    [super dealloc];
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

/// How the last symbol was asked for, and where it was drawn.
struct {
    CGFloat size;
    CGFloat weight;
    NSRect rect;
    NSBitmapImageRep *bitmap;
} drawn;

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
    drawn.size = pointSize;
    drawn.weight = weight;
    return [[[self alloc] init] autorelease];
}
@end

/// A white box of one em's height.
@interface SampleSymbol : NSImage {
  @public
    CGFloat widthInEm;
    NSSize points;
}
@end

@implementation SampleSymbol
- (NSImage *)imageWithSymbolConfiguration:(NSImageSymbolConfiguration *)configuration {
    points = NSMakeSize(widthInEm * drawn.size, drawn.size);
    return configuration ? self : nil;
}
- (NSSize)size {
    return points;
}
- (void)drawInRect:(NSRect)rect {
    drawn.rect = rect;
    for (NSInteger y = 0; y < [drawn.bitmap pixelsHigh]; ++y) {
        unsigned char *line = [drawn.bitmap bitmapData] + y * [drawn.bitmap bytesPerRow];
        std::fill_n(line + 4 * NSInteger(NSMinX(rect)), 4 * NSInteger(NSWidth(rect)), 255);
    }
}
@end

@interface SampleContext : NSGraphicsContext
@end

@implementation SampleContext
- (void)flushGraphics {
}
@end

namespace {

NSAppearance *appearance(NSArray *line) {
    SampleAppearance *result = [[[SampleAppearance alloc] init] autorelease];
    result->line = [line retain];
    return result;
}

NSAppearance *light() {
    return appearance([NSArray arrayWithObject:NSAppearanceNameAqua]);
}

NSAppearance *dark() {
    return appearance([NSArray arrayWithObject:NSAppearanceNameDarkAqua]);
}

id sharedApplication(id, SEL) {
    return desktop;
}

id symbolNamed(id, SEL, NSString *name, NSString *) {
    SampleSymbol *symbol = nil;
    if ([name isEqualToString:@"shield"] || [name isEqualToString:@"video.fill"]) {
        symbol = [[[SampleSymbol alloc] init] autorelease];
        symbol->widthInEm = [name isEqualToString:@"shield"] ? 0.5 : 2;
    }
    return symbol;
}

id contextFor(id, SEL, NSBitmapImageRep *bitmap) {
    static SampleContext *const context = NSAllocateObject([SampleContext class], 0, nullptr);
    drawn.bitmap = bitmap;
    return context;
}

class DesktopTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase() {
        desktop = [[SampleDesktop alloc] init];
        class_replaceMethod(object_getClass([NSApplication class]), @selector(sharedApplication),
                            reinterpret_cast<IMP>(sharedApplication), "@@:");
    }
    void init() {
        m_pool = [[NSAutoreleasePool alloc] init];
        [desktop setEffectiveAppearance:light()];
    }
    void cleanup() { [m_pool release]; }

    void appearanceIsTheBestMatch();
    void appearanceIsFollowed();
    void displayOptionsAreFollowed();
    void symbolsAreThoseOfTheSystem();
    void iconOfTheBundle();

  private:
    NSAutoreleasePool *m_pool = nil;
};

void DesktopTest::appearanceIsTheBestMatch() {
    const std::pair<NSAppearance *, bool> cases[] = {
        {light(), false},
        {dark(), true},
        {appearance([NSArray arrayWithObjects:NSAppearanceNameAccessibilityHighContrastDarkAqua,
                                              NSAppearanceNameDarkAqua, nil]),
         true},
        {appearance([NSArray arrayWithObjects:NSAppearanceNameVibrantLight, NSAppearanceNameAqua, nil]),
         false},
        // One that a later system may add.
        {appearance([NSArray array]), false},
        {nil, false}};
    for (const auto &[sample, isDark] : cases) {
        [desktop setEffectiveAppearance:sample];
        QCOMPARE(AppKitPreferences().prefersDark(), isDark);
    }
}

void DesktopTest::appearanceIsFollowed() {
    AppKitPreferences staying;
    auto leaving = std::make_unique<AppKitPreferences>();
    QSignalSpy spy(&staying, &DesktopPreferences::changed);
    [desktop setEffectiveAppearance:dark()];
    QCOMPARE(spy.size(), 1);
    QVERIFY(*staying.prefersDark() && *leaving->prefersDark());
    leaving.reset();
    // Would reach what is gone, if that still listened.
    [desktop setEffectiveAppearance:light()];
    postOnWorkspaceCentre(NSWorkspaceAccessibilityDisplayOptionsDidChangeNotification, nil, nil);
    QCOMPARE(spy.size(), 3);
    QVERIFY(!*staying.prefersDark());
}

void DesktopTest::displayOptionsAreFollowed() {
    AppKitPreferences preferences;
    QSignalSpy spy(&preferences, &DesktopPreferences::changed);
    for (const auto &[motion, increase] : {std::pair(YES, NO), std::pair(NO, YES)}) {
        reduced = motion;
        contrast = increase;
        postOnWorkspaceCentre(NSWorkspaceAccessibilityDisplayOptionsDidChangeNotification, nil, nil);
        QCOMPARE(preferences.animations(), !motion);
        QCOMPARE(preferences.highContrast(), bool(increase));
    }
    QCOMPARE(spy.size(), 2);
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

    const QImage narrow = appKitSymbol("shield", 48, 64, KestrinWeight::Heavy);
    QCOMPARE(drawn.weight, NSFontWeightHeavy);
    QVERIFY(NSEqualRects(drawn.rect, NSMakeRect(20, 8, 24, 48)));
    QCOMPARE(narrow.size(), QSize(64, 64));
    // Whatever colour it came in.
    QCOMPARE(narrow.convertToFormat(QImage::Format_ARGB32_Premultiplied).pixel(20, 32), 0xff000000U);
    QCOMPARE(qAlpha(narrow.pixel(19, 32)), 0);

    appKitSymbol("video.fill", 48, 64, KestrinWeight::Semibold);
    QCOMPARE(drawn.weight, NSFontWeightSemibold);
    QVERIFY(NSEqualRects(drawn.rect, NSMakeRect(0, 16, 64, 32)));
}

void DesktopTest::iconOfTheBundle() {
    NSString *name = [[NSBundle mainBundle] objectForInfoDictionaryKey:@"CFBundleIconFile"];
    NSString *file = [[NSBundle mainBundle] pathForResource:name ofType:nil];
    // GNUstep's reader knows those with one pixel a point, from 256 on, and the largest.
    QList<NSInteger> sizes;
    for (NSBitmapImageRep *picture in [NSImageRep imageRepsWithContentsOfFile:file]) {
        const NSInteger size = [picture pixelsWide];
        sizes.append(size);
        QCOMPARE([[picture colorAtX:size / 2 y:size / 40] alphaComponent], 0.0);
        QCOMPARE([[picture colorAtX:size / 2 y:size / 2] alphaComponent], 1.0);
        // Round corners.
        QCOMPARE([[picture colorAtX:size / 9 y:size / 9] alphaComponent], 0.0);
        QCOMPARE([[picture colorAtX:size / 9 y:size / 2] alphaComponent], 1.0);
    }
    QCOMPARE(sizes, (QList<NSInteger>{256, 512, 1024}));
}

} // namespace

int runDesktopTests(const QStringList &arguments) {
    DesktopTest test;
    return QTest::qExec(&test, arguments);
}

#include "tst_desktop.moc"
