#pragma once

#include <QColor>
#include <QImage>
#include <QPainterPath>
#include <QRectF>

namespace kestrin::design {

/// A rectangle whose corners are continuous: the curvature grows from nothing at the straight edge to its
/// greatest value on the diagonal, instead of jumping to that of a circle. The corner meets its diagonal
/// where the circle of the same radius would.
struct ContinuousRectangle {
    QSizeF size;
    double radius = 0; ///< more than half of the shorter side counts as that half

    /// How far a corner of this radius reaches along an edge that has room for it.
    static double reach(double radius);

    /// The outline, with its top left corner at `at`.
    QPainterPath path(QPointF at = {}) const;
};

/// What a surface looks like; all lengths in pixels of the image that it is painted to.
struct SurfacePaint {
    QSizeF size;
    double radius = 0;
    bool ellipse = false; ///< an ellipse instead of a rectangle
    QColor fill;
    QColor stroke;
    double strokeWidth = 0; ///< inside the edge; 0 for none

    bool operator==(const SurfacePaint &) const = default;
    QImage paint() const;

  private:
    QPainterPath outline(double inset) const;
    QImage filled(const QPainterPath &path, const QColor &color) const;
};

/// A soft shadow of a continuous rectangle, on an image that is larger by `margin` on every side.
struct ShadowPaint {
    QSize size;
    double radius = 0;
    double blur = 0; ///< twice the standard deviation
    QColor color;

    bool operator==(const ShadowPaint &) const = default;
    int margin() const;
    QImage paint() const;
};

} // namespace kestrin::design
