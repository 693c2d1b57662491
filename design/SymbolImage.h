#pragma once

#include "design/KestrinWeight.h"
#include "design/SymbolTable.h"

#include <QColor>
#include <QImage>

namespace kestrin {

/// Draws a symbol in one colour on a transparent square of `pixels`.
QImage symbolImage(const SymbolDrawing &symbol, int pixels, KestrinWeight weight, const QColor &color);

} // namespace kestrin
