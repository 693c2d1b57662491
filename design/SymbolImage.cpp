#include "design/SymbolImage.h"

#include "design/Drawing.h"
#include "design/NativeSymbols.h"

#include <QPainter>

#include <algorithm>
#include <array>
#include <cmath>

using namespace Qt::StringLiterals;

namespace kestrin::design {

namespace {

// The drawings are on a grid of this many units, with lines of one unit.
constexpr double grid = 16;
// Half of the thickest line may stand out of the grid.
constexpr double bleed = 0.5;

/// What a line gains, in units of the grid.
double thickening(KestrinWeight weight) {
    switch (weight) {
    case KestrinWeight::Regular:
        break;
    case KestrinWeight::Medium:
        return 0.2;
    case KestrinWeight::Semibold:
        return 0.4;
    case KestrinWeight::Bold:
        return 0.6;
    case KestrinWeight::Heavy:
        return 0.7;
    }
    return 0;
}

/// Our own drawings have strokes, which become thicker; those of the icon set are outlines of lines, which
/// grow when they are stroked on top.
void thicken(Drawing &drawing, double gain) {
    const auto isStroked = [](const Drawing::Shape &shape) { return shape.stroke.style() != Qt::NoPen; };
    if (std::ranges::any_of(drawing.shapes, isStroked)) {
        for (Drawing::Shape &shape : drawing.shapes)
            shape.stroke.setWidthF(shape.stroke.widthF() + gain);
    } else if (gain > 0) {
        for (Drawing::Shape &shape : drawing.shapes)
            shape.stroke = QPen(Qt::black, gain, Qt::SolidLine, Qt::FlatCap, Qt::RoundJoin);
    }
}

/// What is black becomes the colour, what is white or was left empty is see-through.
void tint(QImage &image, const QColor &color) {
    const auto [red, green, blue, share] =
        std::array{color.red(), color.green(), color.blue(), color.alpha()};
    for (int y = 0; y < image.height(); ++y) {
        auto *const line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            // Premultiplied, so that alpha without grey is the share of black.
            const int black = qAlpha(line[x]) - qRed(line[x]);
            line[x] = qPremultiply(qRgba(red, green, blue, (black * share + 127) / 255));
        }
    }
}

NativeSymbol native = nullptr;

} // namespace

void useNativeSymbols(NativeSymbol symbols) {
    native = symbols;
}

QImage symbolImage(const SymbolDrawing &symbol, int pixels, KestrinWeight weight, const QColor &color) {
    Drawing drawing = Drawing::embedded(u"symbols/"_s + QLatin1StringView(symbol.drawing));
    if (symbol.kind == SymbolDrawing::Kind::Lines)
        thicken(drawing, thickening(weight));
    QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    const double unit = pixels / (grid + 2 * bleed);
    painter.scale(unit, unit);
    painter.translate(bleed, bleed);
    drawing.paint(painter);
    painter.end();
    tint(image, color);
    return image;
}

QImage nativeSymbolImage(const SymbolDrawing &symbol, int pixels, KestrinWeight weight, const QColor &color) {
    // Its own size is right as it is; the table's corrects our drawings.
    QImage image;
    if (native)
        image = native(symbol.name, pixels / (symbolSide * symbol.size), pixels, weight);
    if (image.isNull())
        return symbolImage(symbol, pixels, weight, color);
    image.convertTo(QImage::Format_ARGB32_Premultiplied);
    tint(image, color);
    return image;
}

} // namespace kestrin::design
