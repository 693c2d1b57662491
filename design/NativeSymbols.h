// The desktop's own drawings of symbols, where it has some.
#pragma once

#include "design/KestrinWeight.h"

#include <QImage>

namespace kestrin::design {

/// Draws a symbol in the middle of a square of `pixels`, as large as beside a text whose font has `em`
/// pixels, or smaller if the square has no room for that. The ink is in its alpha alone. Null where the
/// desktop has no symbol of that name. Any thread.
using NativeSymbol = QImage (*)(const char *name, double em, int pixels, KestrinWeight weight);

/// Every symbol that is drawn from now on is asked for there first; null, which it is to begin with, for
/// nowhere. Before the first symbol is shown.
void useNativeSymbols(NativeSymbol symbols);

} // namespace kestrin::design
