#pragma once

#include "design/PixelAlignedItem.h"

#include <QIcon>

namespace kestrin::design {

/// The brand mark, stretched to the item and clipped to continuous corners. Silent for assistive technology.
class KestrinIconMark : public kestrin::design::PixelAlignedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(qreal radius MEMBER m_radius NOTIFY radiusChanged)

  public:
    explicit KestrinIconMark(QQuickItem *parent = nullptr);

    /// The mark as the icon of a window, in any size.
    static QIcon icon();

  Q_SIGNALS:
    void radiusChanged();

  protected:
    QSGNode *draw(QSGNode *former) override;

  private:
    qreal m_radius = 0;
};

} // namespace kestrin::design
