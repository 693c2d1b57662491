#include "design/ContinuousRectangle.h"

#include <QPainter>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <vector>

namespace kestrin::design {

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

std::vector<QPointF> corner(const Direction &across, const Direction &along) {
    // Enough for the corner to be off by less than a hundredth of a pixel.
    const int steps = 4 + static_cast<int>(6 * std::sqrt(std::max(across.extent, along.extent)));
    std::vector<QPointF> points;
    points.reserve(static_cast<size_t>(steps) + 1);
    for (int step = 0; step <= steps; ++step) {
        const double angle = std::numbers::pi / 2 * step / steps;
        const double x = across.extent * std::pow(std::max(0.0, std::cos(angle)), 2 / across.exponent);
        const double y = along.extent * std::pow(std::max(0.0, std::sin(angle)), 2 / along.exponent);
        points.emplace_back(x, y);
    }
    return points;
}

/// The grey values of a picture, row by row.
struct Greys {
    size_t width;
    size_t height;
    std::vector<float> values;

    Greys(size_t w, size_t h) : width(w), height(h), values(w * h) {}
    float *row(size_t y) { return values.data() + y * width; }
    const float *row(size_t y) const { return values.data() + y * width; }

    Greys turned() const {
        Greys other(height, width);
        for (size_t y = 0; y < height; ++y) {
            for (size_t x = 0; x < width; ++x)
                other.row(x)[y] = row(y)[x];
        }
        return other;
    }
};

/// Each value becomes the mean of those up to so far above and below it. All columns side by side, because
/// compilers turn that into few instructions.
Greys meanOfColumns(const Greys &greys, size_t radius) {
    Greys means(greys.width, greys.height);
    std::vector<float> sums(greys.width);
    const auto add = [&](size_t y, float sign) {
        const float *const row = greys.row(y);
        for (size_t x = 0; x < greys.width; ++x)
            sums[x] += sign * row[x];
    };
    for (size_t y = 0; y < std::min(radius, greys.height); ++y)
        add(y, 1);
    const float share = 1 / static_cast<float>(2 * radius + 1);
    for (size_t y = 0; y < greys.height; ++y) {
        if (y + radius < greys.height)
            add(y + radius, 1);
        if (y > radius)
            add(y - radius - 1, -1);
        for (size_t x = 0; x < greys.width; ++x)
            means.row(y)[x] = sums[x] * share;
    }
    return means;
}

/// Three boxes in a row are as good as the bell curve.
Greys blurred(Greys greys, size_t radius) {
    for (int direction = 0; direction < 2; ++direction) {
        for (int pass = 0; pass < 3; ++pass)
            greys = meanOfColumns(greys, radius);
        greys = greys.turned();
    }
    return greys;
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

QImage SurfacePaint::filled(const QPainterPath &path, const QColor &color) const {
    QImage image(static_cast<int>(std::ceil(size.width())), static_cast<int>(std::ceil(size.height())),
                 QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(path, color);
    return image;
}

QImage SurfacePaint::paint() const {
    if (strokeWidth <= 0)
        return filled(outline(0), fill);
    const QPainterPath inside = outline(strokeWidth);
    // Walked the other way round, so that what it covers is taken away exactly, also of a pixel's part.
    QPainterPath ring = outline(0);
    ring.setFillRule(Qt::WindingFill);
    ring.addPath(inside.toReversed());
    QImage image = filled(ring, stroke);
    // Where both cover a part of a pixel, the parts add up: neither shines through the other. Painting the
    // fill into the ring with that mode would not do, since it adds up whole colours before it asks how much
    // is covered.
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_Plus);
    painter.drawImage(0, 0, filled(inside, fill));
    return image;
}

int ShadowPaint::margin() const {
    return static_cast<int>(std::ceil(blur * 1.5));
}

QImage ShadowPaint::paint() const {
    const QSize around = size.grownBy({margin(), margin(), margin(), margin()});
    QImage shape(around, QImage::Format_Alpha8);
    shape.fill(Qt::transparent);
    {
        QPainter painter(&shape);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.fillPath(ContinuousRectangle{size, radius}.path(QPointF(margin(), margin())), Qt::black);
    }
    Greys greys(static_cast<size_t>(around.width()), static_cast<size_t>(around.height()));
    for (int y = 0; y < around.height(); ++y) {
        const uchar *const line = shape.constScanLine(y);
        std::copy(line, line + around.width(), greys.row(static_cast<size_t>(y)));
    }
    // Three boxes of the radius r have the variance r(r + 1).
    const double deviation = blur / 2;
    greys = blurred(std::move(greys),
                    static_cast<size_t>(std::round(std::sqrt(deviation * deviation + 0.25) - 0.5)));
    std::array<QRgb, 256> tints{};
    for (size_t grey = 0; grey < tints.size(); ++grey) {
        const auto alpha = static_cast<int>(std::lround(static_cast<double>(grey) * color.alphaF()));
        tints.at(grey) = qPremultiply(qRgba(color.red(), color.green(), color.blue(), alpha));
    }
    QImage image(around, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < around.height(); ++y) {
        const float *const row = greys.row(static_cast<size_t>(y));
        std::transform(row, row + greys.width, reinterpret_cast<QRgb *>(image.scanLine(y)), [&](float grey) {
            return tints.at(static_cast<size_t>(std::clamp(grey + 0.5F, 0.0F, 255.0F)));
        });
    }
    return image;
}

} // namespace kestrin::design
