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
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged)
    Q_PROPERTY(qreal size READ size WRITE setSize NOTIFY sizeChanged)
    Q_PROPERTY(int weight MEMBER m_weight NOTIFY weightChanged)
    Q_PROPERTY(QColor color MEMBER m_color NOTIFY colorChanged)

  public:
    explicit KestrinSymbol(QQuickItem *parent = nullptr);

    QString name() const { return m_name; }
    void setName(const QString &name);
    /// The font size in points that it goes with.
    qreal size() const { return m_size; }
    void setSize(qreal size);

  Q_SIGNALS:
    void nameChanged();
    void sizeChanged();
    void weightChanged();
    void colorChanged();

  protected:
    QSGNode *updatePaintNode(QSGNode *node, UpdatePaintNodeData *data) override;

  private:
    double side() const;
    void adapt();

    QString m_name;
    qreal m_size = 13;
    int m_weight = static_cast<int>(KestrinWeight::Regular);
    QColor m_color;
};

} // namespace kestrin::design
