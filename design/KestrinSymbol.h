#pragma once

#include "design/KestrinWeight.h"
#include "design/PixelAlignedItem.h"

#include <QColor>

namespace kestrin::design {

/// A symbol, as large and as heavy as a text of the same size and weight beside it. It is centred in the item
/// and silent for assistive technology.
class KestrinSymbol : public kestrin::design::PixelAlignedItem {
    Q_OBJECT
    QML_ELEMENT
    /// A name of the symbol table. An unknown one draws nothing and warns.
    Q_PROPERTY(QString name MEMBER m_name NOTIFY nameChanged)
    /// The font size in points that it goes with.
    Q_PROPERTY(qreal size MEMBER m_size NOTIFY sizeChanged)
    Q_PROPERTY(int weight MEMBER m_weight NOTIFY weightChanged)
    Q_PROPERTY(QColor color MEMBER m_color NOTIFY colorChanged)

  public:
    explicit KestrinSymbol(QQuickItem *parent = nullptr);

  Q_SIGNALS:
    void nameChanged();
    void sizeChanged();
    void weightChanged();
    void colorChanged();

  protected:
    QSGNode *draw(QSGNode *former) override;

  private:
    double side() const;
    void checkName();
    void adapt();

    QString m_name;
    qreal m_size = 13;
    int m_weight = static_cast<int>(KestrinWeight::Regular);
    QColor m_color;
};

} // namespace kestrin::design
