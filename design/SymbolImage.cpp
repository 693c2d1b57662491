#include "design/SymbolImage.h"

#include "design/platform/SystemSymbols.h"

#include <QFile>
#include <QPainter>
#include <QSvgRenderer>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace kestrin {

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

QByteArray drawingSource(const SymbolDrawing &symbol) {
    QFile file(":/kestrin/symbols/"_L1 + QLatin1StringView(symbol.drawing) + ".svg"_L1);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Our own drawings have strokes, whose width is said once; those of the icon set are outlines of lines,
/// which grow when they are stroked on top.
void thicken(QByteArray &source, double gain) {
    const QByteArray own = "stroke-width=\"1\"";
    if (source.contains(own)) {
        source.replace(own, "stroke-width=\"" + QByteArray::number(1 + gain) + '"');
    } else if (gain > 0) {
        source.replace("<svg ", "<svg stroke=\"#000\" stroke-linejoin=\"round\" stroke-width=\"" +
                                    QByteArray::number(gain) + "\" ");
    }
}

/// What is black becomes the colour, what is white or was left empty is see-through.
void tint(QImage &image, const QColor &color) {
    for (int y = 0; y < image.height(); ++y) {
        auto *const line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            // Premultiplied, so that alpha without grey is the share of black.
            const int black = qAlpha(line[x]) - qRed(line[x]);
            const int alpha = static_cast<int>(std::lround(black * static_cast<double>(color.alphaF())));
            line[x] = qPremultiply(qRgba(color.red(), color.green(), color.blue(), alpha));
        }
    }
}

} // namespace

QImage symbolImage(const SymbolDrawing &symbol, int pixels, KestrinWeight weight, const QColor &color) {
    QByteArray source = drawingSource(symbol);
    if (symbol.kind == SymbolDrawing::Kind::Lines)
        thicken(source, thickening(weight));
    QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QSvgRenderer renderer(source);
    renderer.setViewBox(QRectF(-bleed, -bleed, grid + 2 * bleed, grid + 2 * bleed));
    QPainter painter(&image);
    renderer.render(&painter, QRectF(0, 0, pixels, pixels));
    painter.end();
    tint(image, color);
    return image;
}

QImage nativeSymbolImage(const SymbolDrawing &symbol, int pixels, KestrinWeight weight, const QColor &color) {
    // Its own size is right as it is; the table's corrects our drawings.
    QImage image = systemSymbol(symbol.name, pixels / (symbolSide * symbol.size), pixels, weight);
    if (image.isNull())
        return symbolImage(symbol, pixels, weight, color);
    image.convertTo(QImage::Format_ARGB32_Premultiplied);
    tint(image, color);
    return image;
}

} // namespace kestrin
