// What this desktop says about how it wants to be drawn. Only the programs themselves ask for it, once.
#pragma once

#include "design/DesktopPreferences.h"
#include "design/NativeSymbols.h"

#include <memory>

namespace kestrin::desktop {

/// The preferences of the desktop that this process runs on; null where the toolkit's palette is all there
/// is. Asks without waiting: the values arrive later, with `changed`, or never. Needs a QGuiApplication.
std::unique_ptr<design::DesktopPreferences> makePreferences();

/// Null where the desktop has no symbols.
design::NativeSymbol nativeSymbols();

} // namespace kestrin::desktop
