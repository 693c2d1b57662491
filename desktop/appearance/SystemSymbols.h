#pragma once

#ifdef __APPLE__
#include "desktop/macos/AppKitSymbols.h"
#else
#include "design/KestrinWeight.h"

#include <QImage>
#endif

namespace kestrin {

/// The desktop's own drawing of a symbol of that name (AppKitSymbols.h tells what it looks like), or null. No
/// desktop but macOS has any.
inline QImage systemSymbol([[maybe_unused]] const char *name, [[maybe_unused]] double em,
                           [[maybe_unused]] int pixels, [[maybe_unused]] KestrinWeight weight) {
#ifdef __APPLE__
    return appKitSymbol(name, em, pixels, weight);
#else
    return {};
#endif
}

} // namespace kestrin
