#include "design/ContinuousRectangle.h"

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

namespace kestrin {

namespace {

// A corner reaches this much further along its edges than the quarter of a circle would.
constexpr double reachOfUnitRadius = 1.528665;
// The distance between the corner's point and the circle's point on the diagonal, seen along an edge.
constexpr double cutOfUnitRadius = 1 - std::numbers::sqrt2 / 2;

/// One direction of a corner, which is the superellipse |x/a|^m + |y/b|^n = 1. The exponent is what makes it
/// cut the diagonal where the circle does: 2 and so the circle itself where an edge gives no room to reach
/// further, above 3 where it does, and then the curvature begins at nothing.
struct Direction {
    double extent;
    double exponent;

    Direction(double radius, double room)
        : extent(std::min(ContinuousRectangle::reach(radius), room))
        , exponent(std::numbers::ln2 / -std::log1p(-cutOfUnitRadius * radius / extent)) {}
};

// Enough for a quarter of any corner in use to be off by less than a hundredth of a pixel.
constexpr int stepsOfCorner = 48;

std::vector<QPointF> corner(const Direction &across, const Direction &along) {
    std::vector<QPointF> points;
    points.reserve(stepsOfCorner + 1);
    for (int step = 0; step <= stepsOfCorner; ++step) {
        const double angle = std::numbers::pi / 2 * step / stepsOfCorner;
        const double x = across.extent * std::pow(std::max(0.0, std::cos(angle)), 2 / across.exponent);
        const double y = along.extent * std::pow(std::max(0.0, std::sin(angle)), 2 / along.exponent);
        points.emplace_back(x, y);
    }
    return points;
}

void blurRow(std::vector<float> &row, int radius) {
    const int size = static_cast<int>(row.size());
    const auto at = [&row, size](int i) { return i < 0 || i >= size ? 0.0F : row[static_cast<size_t>(i)]; };
    std::vector<float> blurred(row.size());
    float sum = 0;
    for (int i = -radius; i <= radius; ++i)
        sum += at(i);
    for (int i = 0; i < size; ++i) {
        blurred[static_cast<size_t>(i)] = sum / static_cast<float>(2 * radius + 1);
        sum += at(i + radius + 1) - at(i - radius);
    }
    row.swap(blurred);
}

// Three boxes in a row are as good as the bell curve.
void blurPlane(std::vector<float> &plane, int width, int height, int radius) {
    std::vector<float> line;
    for (int y = 0; y < height; ++y) {
        const auto begin = plane.begin() + static_cast<ptrdiff_t>(y) * width;
        line.assign(begin, begin + width);
        for (int pass = 0; pass < 3; ++pass)
            blurRow(line, radius);
        std::copy(line.begin(), line.end(), begin);
    }
    for (int x = 0; x < width; ++x) {
        line.resize(static_cast<size_t>(height));
        for (int y = 0; y < height; ++y)
            line[static_cast<size_t>(y)] = plane[static_cast<size_t>(y * width + x)];
        for (int pass = 0; pass < 3; ++pass)
            blurRow(line, radius);
        for (int y = 0; y < height; ++y)
            plane[static_cast<size_t>(y * width + x)] = line[static_cast<size_t>(y)];
    }
}

} // namespace

double ContinuousRectangle::reach(double radius) {
    return reachOfUnitRadius * radius;
}

QPainterPath ContinuousRectangle::path(QPointF at) const {
    const double rounded = std::min({radius, size.width() / 2, size.height() / 2});
    QPainterPath path;
    if (rounded <= 0) {
        path.addRect(QRectF(at, size));
        return path;
    }
    const Direction across(rounded, size.width() / 2);
    const Direction along(rounded, size.height() / 2);
    const QPointF inner(size.width() - across.extent, size.height() - along.extent);
    const std::vector<QPointF> points = corner(across, along);
    QPolygonF outline;
    // Clockwise from the right edge; every other corner is walked the other way round.
    for (auto p = points.begin(); p != points.end(); ++p)
        outline << at + QPointF(inner.x() + p->x(), inner.y() + p->y());
    for (auto p = points.rbegin(); p != points.rend(); ++p)
        outline << at + QPointF(across.extent - p->x(), inner.y() + p->y());
    for (auto p = points.begin(); p != points.end(); ++p)
        outline << at + QPointF(across.extent - p->x(), along.extent - p->y());
    for (auto p = points.rbegin(); p != points.rend(); ++p)
        outline << at + QPointF(inner.x() + p->x(), along.extent - p->y());
    path.addPolygon(outline);
    path.closeSubpath();
    return path;
}

QPainterPath SurfacePaint::outline(double inset) const {
    const QSizeF inside(size.width() - 2 * inset, size.height() - 2 * inset);
    if (ellipse) {
        QPainterPath path;
        path.addEllipse(QRectF(QPointF(inset, inset), inside));
        return path;
    }
    return ContinuousRectangle{inside, std::max(0.0, radius - inset)}.path({inset, inset});
}

QImage SurfacePaint::paint() const {
    QImage image(static_cast<int>(std::ceil(size.width())), static_cast<int>(std::ceil(size.height())),
                 QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    if (strokeWidth <= 0) {
        painter.fillPath(outline(0), fill);
        return image;
    }
    painter.fillPath(outline(0), stroke);
    // The fill takes the place of the stroke, so that it shows through neither at a translucent fill nor at
    // the softened edge.
    const QPainterPath inside = outline(strokeWidth);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
    painter.fillPath(inside, Qt::black);
    painter.setCompositionMode(QPainter::CompositionMode_Plus);
    painter.fillPath(inside, fill);
    return image;
}

int ShadowPaint::margin() const {
    return static_cast<int>(std::ceil(blur * 1.5));
}

QImage ShadowPaint::paint() const {
    const int width = size.width() + 2 * margin();
    const int height = size.height() + 2 * margin();
    QImage shape(width, height, QImage::Format_Alpha8);
    shape.fill(Qt::transparent);
    {
        QPainter painter(&shape);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.fillPath(ContinuousRectangle{size, radius}.path(QPointF(margin(), margin())), Qt::black);
    }
    std::vector<float> plane(static_cast<size_t>(width) * static_cast<size_t>(height));
    for (int y = 0; y < height; ++y) {
        const uchar *const line = shape.constScanLine(y);
        std::copy(line, line + width, plane.begin() + static_cast<ptrdiff_t>(y) * width);
    }
    // Three boxes of the radius r have the variance r(r + 1).
    const double deviation = blur / 2;
    blurPlane(plane, width, height,
              static_cast<int>(std::round(std::sqrt(deviation * deviation + 0.25) - 0.5)));
    QImage image(width, height, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < height; ++y) {
        auto *const line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < width; ++x) {
            const double alpha =
                static_cast<double>(plane[static_cast<size_t>(y * width + x)]) * color.alphaF();
            line[x] = qPremultiply(
                qRgba(color.red(), color.green(), color.blue(), static_cast<int>(std::lround(alpha))));
        }
    }
    return image;
}

} // namespace kestrin
