#pragma once

#include "design/PixelAlignedItem.h"

#include <QColor>

namespace kestrin::design {

/// A filled and stroked shape: the ground of cards, tiles, pills, buttons, tracks and badges. Rounded
/// rectangles and capsules have continuous corners. Lengths are in points.
class KestrinSurface : public kestrin::design::PixelAlignedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(Shape shape MEMBER m_shape NOTIFY shapeChanged)
    Q_PROPERTY(QColor color MEMBER m_color NOTIFY colorChanged)
    Q_PROPERTY(qreal radius MEMBER m_radius NOTIFY radiusChanged)
    Q_PROPERTY(QColor strokeColor MEMBER m_strokeColor NOTIFY strokeColorChanged)
    Q_PROPERTY(qreal strokeWidth MEMBER m_strokeWidth NOTIFY strokeWidthChanged)
    Q_PROPERTY(QColor shadowColor MEMBER m_shadowColor NOTIFY shadowColorChanged)
    Q_PROPERTY(qreal shadowBlur MEMBER m_shadowBlur NOTIFY shadowBlurChanged)
    Q_PROPERTY(qreal shadowOffset MEMBER m_shadowOffset NOTIFY shadowOffsetChanged)
    Q_PROPERTY(bool scales MEMBER m_scales NOTIFY scalesChanged)

  public:
    enum Shape {
        RoundedRectangle,
        Capsule, ///< fully rounded ends
        Circle,  ///< an ellipse where it is not square
    };
    Q_ENUM(Shape)

    explicit KestrinSurface(QQuickItem *parent = nullptr);

  Q_SIGNALS:
    void shapeChanged();
    void colorChanged();
    void radiusChanged();
    void strokeColorChanged();
    void strokeWidthChanged();
    void shadowColorChanged();
    void shadowBlurChanged();
    void shadowOffsetChanged();
    void scalesChanged();

  protected:
    QSGNode *draw(QSGNode *former) override;

  private:
    double cornerRadius() const;
    double strokePixels() const;

    Shape m_shape = RoundedRectangle;
    QColor m_color = Qt::transparent;
    qreal m_radius = 0;
    QColor m_strokeColor = Qt::transparent;
    qreal m_strokeWidth = 0; ///< drawn inside the edge
    // The shadow falls straight down, and is drawn outside of the item.
    QColor m_shadowColor = Qt::transparent;
    qreal m_shadowBlur = 0;
    qreal m_shadowOffset = 0;
    bool m_scales = false; ///< painted in one piece, because it is seen scaled at times
};

} // namespace kestrin::design
