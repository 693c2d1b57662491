#include "design/KestrinSurface.h"

#include "design/ContinuousRectangle.h"
#include "design/PictureNode.h"

#include <QQuickWindow>

#include <cmath>

namespace kestrin::design {

namespace {

/// The ground and its shadow, in the order in which they are drawn.
struct SurfaceNode : GrowingNode {
    PictureNode *shadow = nullptr;
    PictureNode *ground = nullptr;
};

PictureNode &childOf(SurfaceNode &node, PictureNode *&child, bool first) {
    if (!child) {
        child = new PictureNode;
        child->setFlag(QSGNode::OwnedByParent);
        first ? node.prependChildNode(child) : node.appendChildNode(child);
    }
    return *child;
}

/// Only the corners of a large shape are painted; a single pixel between them is stretched over the rest.
struct Reduced {
    QSize pixels;
    int cornerWidth;
    int cornerHeight;
    bool across;
    bool along;

    Reduced(const QSize &whole, int corner)
        : pixels(whole)
        , cornerWidth(corner)
        , cornerHeight(corner)
        , across(whole.width() > 2 * corner + 1)
        , along(whole.height() > 2 * corner + 1) {
        if (across)
            pixels.setWidth(2 * corner + 1);
        if (along)
            pixels.setHeight(2 * corner + 1);
    }
};

QByteArray lookKey(const char *kind, const QSize &pixels, double radius, QRgba64 fill, QRgba64 stroke,
                   double width) {
    return QByteArray(kind) + '|' + QByteArray::number(pixels.width()) + 'x' +
           QByteArray::number(pixels.height()) + '|' + QByteArray::number(radius) + '|' +
           QByteArray::number(quint64(fill), 16) + '|' + QByteArray::number(quint64(stroke), 16) + '|' +
           QByteArray::number(width);
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

QSGNode *KestrinSurface::updatePaintNode(QSGNode *former, UpdatePaintNodeData *) {
    auto *node = static_cast<SurfaceNode *>(former);
    noteAlignment();
    const double ratio = pixelRatio();
    const QRectF rect = alignedRect(size());
    const QSize whole(qRound(rect.width() * ratio), qRound(rect.height() * ratio));
    // Most focus rings are never seen.
    if (whole.isEmpty() || !isVisible()) {
        delete node;
        return nullptr;
    }
    if (!node)
        node = new SurfaceNode;

    const double radius = cornerRadius() * ratio;
    const int corner = static_cast<int>(std::ceil(ContinuousRectangle::reach(radius) + strokePixels()));
    const Reduced ground(whole,
                         m_scales || m_shape == Circle ? std::max(whole.width(), whole.height()) : corner);
    const SurfacePaint paint{ground.pixels, radius,        m_shape == Circle,
                             m_color,       m_strokeColor, strokePixels()};
    const QByteArray key = lookKey(m_shape == Circle ? "circle" : "rectangle", ground.pixels, radius,
                                   m_color.rgba64(), m_strokeColor.rgba64(), paint.strokeWidth);
    const QMargins fixed(ground.cornerWidth, ground.cornerHeight, ground.cornerWidth, ground.cornerHeight);
    childOf(*node, node->ground, false)
        .show(*window(), sharedTexture(*window(), key, [&paint] { return paint.paint(); }),
              {rect, ratio, fixed, ground.across, ground.along, false, m_scales});

    if (m_shadowColor.alpha() > 0) {
        const double blur = m_shadowBlur * ratio;
        // The shadow of a straight edge has become straight only where the corner's blur has ended.
        const Reduced shaped(whole, corner + static_cast<int>(std::ceil(blur * 1.5)));
        const ShadowPaint shadow{shaped.pixels, radius, blur, m_shadowColor};
        const int margin = shadow.margin();
        const QByteArray shadowKey =
            lookKey("shadow", shaped.pixels, radius, m_shadowColor.rgba64(), {}, blur);
        const int kept = shaped.cornerWidth + margin;
        const QRectF around = rect.translated(0, std::round(m_shadowOffset * ratio) / ratio)
                                  .adjusted(-margin / ratio, -margin / ratio, margin / ratio, margin / ratio);
        childOf(*node, node->shadow, true)
            .show(*window(), sharedTexture(*window(), shadowKey, [&shadow] { return shadow.paint(); }),
                  {around, ratio, QMargins(kept, kept, kept, kept), shaped.across, shaped.along, true});
    } else if (node->shadow) {
        delete std::exchange(node->shadow, nullptr);
    }
    return node;
}

} // namespace kestrin::design
