#include "design/KestrinIconMark.h"

#include "design/ContinuousRectangle.h"
#include "design/Drawing.h"
#include "design/PictureNode.h"

#include <QIconEngine>
#include <QPainter>
#include <QQuickWindow>

using namespace Qt::StringLiterals;

namespace kestrin::design {

namespace {

// Of its side, as that of the icons which are installed.
constexpr double iconRadius = 0.22;

struct MarkPaint {
    QSize pixels;
    double radius;

    bool operator==(const MarkPaint &) const = default;
    QImage paint() const;
};

QImage MarkPaint::paint() const {
    QImage picture(pixels, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    const Drawing mark = Drawing::embedded(u"KestrinIconMark"_s);
    painter.scale(pixels.width() / mark.size.width(), pixels.height() / mark.size.height());
    mark.paint(painter);
    painter.resetTransform();
    const QImage mask = SurfacePaint{pixels, radius, false, Qt::black, {}, 0}.paint();
    painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    painter.drawImage(0, 0, mask);
    return picture;
}

/// Of whatever size somebody asks for.
class MarkIcon : public QIconEngine {
  public:
    void paint(QPainter *painter, const QRect &rect, QIcon::Mode, QIcon::State) override {
        painter->drawImage(rect, MarkPaint{rect.size(), iconRadius * rect.width()}.paint());
    }
    QIconEngine *clone() const override { return new MarkIcon; }
};

} // namespace

QIcon KestrinIconMark::icon() {
    return QIcon(new MarkIcon);
}

KestrinIconMark::KestrinIconMark(QQuickItem *parent) : PixelAlignedItem(parent) {
    connect(this, &KestrinIconMark::radiusChanged, this, &QQuickItem::update);
}

QSGNode *KestrinIconMark::draw(QSGNode *former) {
    const double ratio = pixelRatio();
    const QRectF rect = alignedRect(size());
    const QSize pixels(qRound(rect.width() * ratio), qRound(rect.height() * ratio));
    if (pixels.isEmpty())
        return nullptr;
    auto *const node = former ? static_cast<PaintedNode<MarkPaint> *>(former) : new PaintedNode<MarkPaint>;
    node->show(*window(), {pixels, m_radius * ratio}, {rect, ratio});
    return node;
}

} // namespace kestrin::design
