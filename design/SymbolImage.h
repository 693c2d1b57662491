#pragma once

#include "design/KestrinWeight.h"
#include "design/SymbolTable.h"

#include <QColor>
#include <QImage>

namespace kestrin::design {

/// The square of a symbol beside a text of size 1: it stands a little above capitals and below the base line.
constexpr double symbolSide = 1.28;

/// Draws a symbol in one colour on a transparent square of `pixels`.
QImage symbolImage(const SymbolDrawing &symbol, int pixels, KestrinWeight weight, const QColor &color);

/// The same, with the desktop's own drawing where it has symbols and this one among them.
QImage nativeSymbolImage(const SymbolDrawing &symbol, int pixels, KestrinWeight weight, const QColor &color);

} // namespace kestrin::design
