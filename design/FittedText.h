#pragma once

#include "design/KestrinWeight.h"

#include <QFont>
#include <QQuickItem>

namespace kestrin::design {

/// What KestrinText is made of: finds the font and the scale in which a text of one line fits the width it is
/// given. It first tightens the letters a little, then shrinks them down to the minimum scale; what is then
/// still too long is cut.
class FittedText : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString text MEMBER m_text NOTIFY textChanged)
    Q_PROPERTY(QString directedText READ directedText NOTIFY textChanged)
    Q_PROPERTY(qreal size MEMBER m_size NOTIFY sizeChanged)
    Q_PROPERTY(int weight MEMBER m_weight NOTIFY weightChanged)
    Q_PROPERTY(qreal minimumScale MEMBER m_minimumScale NOTIFY minimumScaleChanged)
    Q_PROPERTY(int lineLimit MEMBER m_lineLimit NOTIFY lineLimitChanged)
    Q_PROPERTY(QFont fittedFont READ fittedFont NOTIFY fitted)
    Q_PROPERTY(qreal scaleFactor READ scaleFactor NOTIFY fitted)
    Q_PROPERTY(qreal fittedWidth READ fittedWidth NOTIFY fitted)
    Q_PROPERTY(qreal naturalWidth READ naturalWidth NOTIFY naturalSizeChanged)
    Q_PROPERTY(qreal leastWidth READ leastWidth NOTIFY naturalSizeChanged)
    Q_PROPERTY(qreal naturalHeight READ naturalHeight NOTIFY naturalSizeChanged)

  public:
    explicit FittedText(QQuickItem *parent = nullptr);

    /// The text as it is to be drawn: from left to right as a whole, like the interface that it is part of,
    /// also where it begins with what is written the other way.
    QString directedText() const;
    QFont fittedFont() const { return m_font; }
    /// How much smaller than the font says it has to be drawn; 1 where it did not have to shrink. It is not
    /// in the font, because Qt Quick rounds the sizes of fonts.
    qreal scaleFactor() const { return m_scaleFactor; }
    /// The item's width before it is drawn so much smaller.
    qreal fittedWidth() const { return m_fittedWidth; }
    /// Of the text in one line, or of its longest line where it has several.
    qreal naturalWidth() const { return m_naturalWidth; }
    /// The least that the text can be fitted to before it is cut.
    qreal leastWidth() const { return m_leastWidth; }
    /// Of one line.
    qreal naturalHeight() const { return m_naturalHeight; }

  Q_SIGNALS:
    void textChanged();
    void sizeChanged();
    void weightChanged();
    void minimumScaleChanged();
    void lineLimitChanged();
    void fitted();
    void naturalSizeChanged();

  protected:
    void componentComplete() override;
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;

  private:
    QFont naturalFont() const;
    /// Where there is no room for large text, it may become as small as usual text may.
    double leastScale() const;
    void measure();
    void fit();
    void use(const QFont &font, qreal scaleFactor);

    QString m_text;
    qreal m_size = 13;
    int m_weight = static_cast<int>(KestrinWeight::Regular);
    qreal m_minimumScale = 1;
    int m_lineLimit = 0; ///< 0 for none
    QFont m_font;
    qreal m_scaleFactor = 1;
    qreal m_fittedWidth = 0;
    qreal m_naturalWidth = 0;
    qreal m_leastWidth = 0;
    qreal m_naturalHeight = 0;
};

} // namespace kestrin::design
