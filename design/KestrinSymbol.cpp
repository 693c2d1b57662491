#include "design/KestrinSymbol.h"

#include "design/PictureNode.h"
#include "design/SymbolImage.h"
#include "design/SymbolTable.h"

#include <QQuickWindow>
#include <QtQml/qqmlinfo.h>

#include <cmath>

namespace kestrin::design {

namespace {

struct SymbolPaint {
    const SymbolDrawing *symbol;
    int pixels;
    KestrinWeight weight;
    QColor color;

    bool operator==(const SymbolPaint &) const = default;
    QImage paint() const { return nativeSymbolImage(*symbol, pixels, weight, color); }
};

} // namespace

KestrinSymbol::KestrinSymbol(QQuickItem *parent) : PixelAlignedItem(parent) {
    connect(this, &KestrinSymbol::weightChanged, this, &QQuickItem::update);
    connect(this, &KestrinSymbol::colorChanged, this, &QQuickItem::update);
    adapt();
}

void KestrinSymbol::setName(const QString &name) {
    if (name == m_name)
        return;
    m_name = name;
    if (!name.isEmpty() && !findSymbol(name))
        qmlWarning(this) << "There is no symbol \"" << name << "\".";
    adapt();
    Q_EMIT nameChanged();
}

void KestrinSymbol::setSize(qreal size) {
    if (size == m_size)
        return;
    m_size = size;
    adapt();
    Q_EMIT sizeChanged();
}

double KestrinSymbol::side() const {
    const SymbolDrawing *const symbol = findSymbol(m_name);
    return symbol ? m_size * symbolSide * symbol->size : 0;
}

void KestrinSymbol::adapt() {
    const double whole = std::ceil(side());
    setImplicitSize(whole, whole);
    update();
}

QSGNode *KestrinSymbol::updatePaintNode(QSGNode *former, UpdatePaintNodeData *) {
    auto *node = static_cast<PaintedNode<SymbolPaint> *>(former);
    noteAlignment();
    const SymbolDrawing *const symbol = findSymbol(m_name);
    const double ratio = pixelRatio();
    const int pixels = qRound(side() * ratio);
    if (!symbol || pixels <= 0 || !m_color.isValid() || m_color.alpha() == 0) {
        delete node;
        return nullptr;
    }
    if (!node)
        node = new PaintedNode<SymbolPaint>;
    const QPointF corner = alignedRect({}).topLeft();
    // Centred, and still on whole pixels.
    const auto centred = [ratio, pixels](double room) {
        return std::round((room * ratio - pixels) / 2) / ratio;
    };
    const QRectF square(corner + QPointF(centred(width()), centred(height())),
                        QSizeF(pixels, pixels) / ratio);
    node->show(*window(), {symbol, pixels, static_cast<KestrinWeight>(m_weight), m_color},
               {.rect = square, .scale = ratio, .smooth = true});
    return node;
}

} // namespace kestrin::design
