#include "desktop/macos/AppKitSymbols.h"

#include "desktop/macos/ObjectReference.h"

#import <AppKit/AppKit.h>

#include <algorithm>

namespace kestrin::desktop {

using namespace design;

namespace {

NSFontWeight fontWeight(KestrinWeight weight) {
    switch (weight) {
    case KestrinWeight::Regular:
        break;
    case KestrinWeight::Medium:
        return NSFontWeightMedium;
    case KestrinWeight::Semibold:
        return NSFontWeightSemibold;
    case KestrinWeight::Bold:
        return NSFontWeightBold;
    case KestrinWeight::Heavy:
        return NSFontWeightHeavy;
    }
    return NSFontWeightRegular;
}

/// Nil where the system lacks it, or symbols altogether.
NSImage *symbolNamed(const char *name, double em, KestrinWeight weight) {
    if (![NSImage respondsToSelector:@selector(imageWithSystemSymbolName:accessibilityDescription:)])
        return nil;
    NSImage *symbol = [NSImage imageWithSystemSymbolName:[NSString stringWithUTF8String:name]
                                accessibilityDescription:nil];
    return [symbol imageWithSymbolConfiguration:[NSImageSymbolConfiguration
                                                    configurationWithPointSize:em
                                                                        weight:fontWeight(weight)]];
}

/// A context that paints into the picture, which has AppKit's own format.
NSGraphicsContext *contextFor(QImage &picture) {
    unsigned char *plane = picture.bits();
    return [NSGraphicsContext
        graphicsContextWithBitmapImageRep:autoreleased([[NSBitmapImageRep alloc]
                                              initWithBitmapDataPlanes:&plane
                                                            pixelsWide:picture.width()
                                                            pixelsHigh:picture.height()
                                                         bitsPerSample:8
                                                       samplesPerPixel:4
                                                              hasAlpha:YES
                                                              isPlanar:NO
                                                        colorSpaceName:NSDeviceRGBColorSpace
                                                           bytesPerRow:picture.bytesPerLine()
                                                          bitsPerPixel:32])];
}

NSRect placed(NSSize size, double side) {
    const double scale = std::min({1.0, side / size.width, side / size.height});
    const NSSize fitted = NSMakeSize(size.width * scale, size.height * scale);
    return NSMakeRect((side - fitted.width) / 2, (side - fitted.height) / 2, fitted.width, fitted.height);
}

} // namespace

QImage appKitSymbol(const char *name, double em, int pixels, KestrinWeight weight) {
    @autoreleasepool {
        NSImage *symbol = symbolNamed(name, em, weight);
        if (!symbol)
            return {};
        QImage picture(pixels, pixels, QImage::Format_RGBA8888_Premultiplied);
        picture.fill(Qt::transparent);
        NSGraphicsContext *context = contextFor(picture);
        if (!context)
            return {};
        [NSGraphicsContext saveGraphicsState];
        [NSGraphicsContext setCurrentContext:context];
        [symbol drawInRect:placed([symbol size], pixels)];
        [context flushGraphics];
        [NSGraphicsContext restoreGraphicsState];
        return picture.convertToFormat(QImage::Format_Alpha8);
    }
}

} // namespace kestrin::desktop
