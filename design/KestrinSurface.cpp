#include "design/KestrinSurface.h"

#include "design/ContinuousRectangle.h"
#include "design/PictureNode.h"

#include <QQuickWindow>

#include <cmath>
#include <optional>

namespace kestrin::design {

namespace {

/// The ground and its shadow, in the order in which they are drawn.
struct SurfaceNode : GrowingNode {
    std::optional<PaintedNode<ShadowPaint>> shadow;
    PaintedNode<SurfacePaint> ground;

    SurfaceNode() {
        ground.setFlag(OwnedByParent, false);
        appendChildNode(&ground);
    }
    void setShadow(bool wanted) {
        if (wanted == shadow.has_value())
            return;
        if (!wanted)
            return shadow.reset();
        shadow.emplace().setFlag(OwnedByParent, false);
        prependChildNode(&*shadow);
    }
};

/// Only the corners of a large shape are painted; a single pixel between them is stretched over the rest.
QSize reduced(const QSize &whole, int corner) {
    return whole.boundedTo({2 * corner + 1, 2 * corner + 1});
}

} // namespace

KestrinSurface::KestrinSurface(QQuickItem *parent) : PixelAlignedItem(parent) {
    for (const auto changed :
         {&KestrinSurface::shapeChanged, &KestrinSurface::colorChanged, &KestrinSurface::radiusChanged,
          &KestrinSurface::strokeColorChanged, &KestrinSurface::strokeWidthChanged,
          &KestrinSurface::shadowColorChanged, &KestrinSurface::shadowBlurChanged,
          &KestrinSurface::shadowOffsetChanged, &KestrinSurface::scalesChanged})
        connect(this, changed, this, &QQuickItem::update);
}

double KestrinSurface::cornerRadius() const {
    const double largest = std::min(width(), height()) / 2;
    return m_shape == RoundedRectangle ? std::min(m_radius, largest) : largest;
}

// A line that is nearly a whole number of pixels wide is sharper as that number.
double KestrinSurface::strokePixels() const {
    const double exact = m_strokeWidth * pixelRatio();
    const double whole = std::max(1.0, std::round(exact));
    return m_strokeWidth > 0 && std::abs(exact - whole) <= 0.25 ? whole : exact;
}

QSGNode *KestrinSurface::draw(QSGNode *former) {
    const double ratio = pixelRatio();
    const QRectF rect = alignedRect(size());
    const QSize whole(qRound(rect.width() * ratio), qRound(rect.height() * ratio));
    if (whole.isEmpty())
        return nullptr;
    auto *const node = former ? static_cast<SurfaceNode *>(former) : new SurfaceNode;

    const double radius = cornerRadius() * ratio;
    const bool isWhole = m_scales || m_shape == Circle;
    const int corner = static_cast<int>(std::ceil(ContinuousRectangle::reach(radius) + strokePixels()));
    const QSize painted = isWhole ? whole : reduced(whole, corner);
    node->ground.show(*window(), {painted, radius, m_shape == Circle, m_color, m_strokeColor, strokePixels()},
                      {rect, ratio, corner, m_scales});

    node->setShadow(m_shadowColor.alpha() > 0);
    if (node->shadow) {
        const double blur = m_shadowBlur * ratio;
        // The shadow of a straight edge has become straight only where the corner's blur has ended.
        const int softCorner = corner + static_cast<int>(std::ceil(blur * 1.5));
        const ShadowPaint look{reduced(whole, softCorner), radius, blur, m_shadowColor};
        const double margin = look.margin() / ratio;
        const QRectF around = rect.translated(0, std::round(m_shadowOffset * ratio) / ratio)
                                  .adjusted(-margin, -margin, margin, margin);
        node->shadow->show(*window(), look, {around, ratio, softCorner + look.margin()});
    }
    return node;
}

} // namespace kestrin::design
