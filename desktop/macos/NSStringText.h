// Text between Qt and Foundation. For Objective-C++ only.
#pragma once

#import <Foundation/Foundation.h>

#include <QString>

namespace kestrin::desktop {

/// Both directions copy the UTF-16 units as they are: a zero character or half a surrogate pair, which other
/// programs may have in their names, comes through. `text` is not nil.
inline QString fromNSString(NSString *text) {
    QString result(static_cast<qsizetype>([text length]), Qt::Uninitialized);
    [text getCharacters:reinterpret_cast<unichar *>(result.data()) range:NSMakeRange(0, [text length])];
    return result;
}

inline NSString *toNSString(const QString &text) {
    return [NSString stringWithCharacters:reinterpret_cast<const unichar *>(text.utf16())
                                   length:static_cast<NSUInteger>(text.size())];
}

} // namespace kestrin::desktop
