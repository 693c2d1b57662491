#pragma once

#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace kestrin::design {

/// A painted item whose edges are kept on whole pixels of the screen at every scale factor, wherever layouts
/// and scrolling leave it.
/// Derive from it by its full name: the description of the QML types takes the name
/// as it is written.
class PixelAlignedItem : public QQuickItem {
    Q_OBJECT
    QML_ANONYMOUS

  public:
    explicit PixelAlignedItem(QQuickItem *parent = nullptr);

  protected:
    /// Pixels of the screen a unit.
    double pixelRatio() const;
    /// The nearest rectangle on whole pixels; its size depends on the item's size only.
    QRectF alignedRect(const QSizeF &size) const;

    /// Makes what is seen of what was seen, which is null at first; null where nothing is to be seen.
    virtual QSGNode *draw(QSGNode *former) = 0;

    void itemChange(ItemChange change, const ItemChangeData &data) override;
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;
    QSGNode *updatePaintNode(QSGNode *former, UpdatePaintNodeData *data) final;

  private:
    QPointF alignmentOffset() const;
    void realign();

    QMetaObject::Connection m_synchronizing;
    QPointF m_drawnOffset;
};

} // namespace kestrin::design
