#pragma once

#include "design/KestrinWeight.h"

#include <QImage>

namespace kestrin::desktop {

/// A symbol of the system in the middle of a square of `pixels`, as large as beside a text whose font has
/// `em` pixels, or smaller if the square has no room for that. The ink is in its alpha alone. Null where the
/// system has no symbol of that name. Any thread.
QImage appKitSymbol(const char *name, double em, int pixels, design::KestrinWeight weight);

} // namespace kestrin::desktop
