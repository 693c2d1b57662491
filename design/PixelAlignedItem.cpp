#include "design/PixelAlignedItem.h"

#include <QQuickWindow>

#include <cmath>

namespace kestrin::design {

PixelAlignedItem::PixelAlignedItem(QQuickItem *parent) : QQuickItem(parent) {
    setFlag(ItemHasContents);
}

double PixelAlignedItem::pixelRatio() const {
    return window() ? window()->effectiveDevicePixelRatio() : 1;
}

QPointF PixelAlignedItem::alignmentOffset() const {
    const QPointF origin = mapToScene({});
    // Only a plain position can be put right; while something shrinks or turns, pixels do not matter.
    if (mapToScene({1, 0}) - origin != QPointF(1, 0))
        return {};
    const double ratio = pixelRatio();
    return {std::round(origin.x() * ratio) / ratio - origin.x(),
            std::round(origin.y() * ratio) / ratio - origin.y()};
}

QRectF PixelAlignedItem::alignedRect(const QSizeF &size) const {
    const double ratio = pixelRatio();
    const QSizeF whole(std::round(size.width() * ratio) / ratio, std::round(size.height() * ratio) / ratio);
    return {alignmentOffset(), whole};
}

QSGNode *PixelAlignedItem::updatePaintNode(QSGNode *former, UpdatePaintNodeData *) {
    m_drawnOffset = alignmentOffset();
    QSGNode *const node = draw(former);
    if (!node)
        delete former;
    return node;
}

void PixelAlignedItem::realign() {
    if (alignmentOffset() != m_drawnOffset)
        update();
}

void PixelAlignedItem::itemChange(ItemChange change, const ItemChangeData &data) {
    if (change == ItemSceneChange) {
        disconnect(m_synchronizing);
        // An item is not told when an ancestor moves. By now all positions of the frame are known, and the
        // thread of the items is waiting.
        if (data.window)
            m_synchronizing = connect(data.window, &QQuickWindow::beforeSynchronizing, this,
                                      &PixelAlignedItem::realign, Qt::DirectConnection);
    } else if (change == ItemDevicePixelRatioHasChanged) {
        update();
    }
    QQuickItem::itemChange(change, data);
}

void PixelAlignedItem::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) {
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    if (newGeometry.size() != oldGeometry.size())
        update();
}

} // namespace kestrin::design
