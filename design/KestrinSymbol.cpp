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
    connect(this, &KestrinSymbol::nameChanged, this, &KestrinSymbol::checkName);
    for (const auto changed : {&KestrinSymbol::nameChanged, &KestrinSymbol::sizeChanged,
                               &KestrinSymbol::weightChanged, &KestrinSymbol::colorChanged})
        connect(this, changed, this, &KestrinSymbol::adapt);
}

void KestrinSymbol::checkName() {
    if (!m_name.isEmpty() && !findSymbol(m_name))
        qmlWarning(this) << "There is no symbol \"" << m_name << "\".";
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

QSGNode *KestrinSymbol::draw(QSGNode *former) {
    const SymbolDrawing *const symbol = findSymbol(m_name);
    const double ratio = pixelRatio();
    const int pixels = qRound(side() * ratio);
    if (!symbol || pixels <= 0 || !m_color.isValid() || m_color.alpha() == 0)
        return nullptr;
    auto *const node =
        former ? static_cast<PaintedNode<SymbolPaint> *>(former) : new PaintedNode<SymbolPaint>;
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
