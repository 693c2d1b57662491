#pragma once

#include "design/KestrinWeight.h"

#include <QFont>
#include <QQuickItem>

namespace kestrin::design {

/// What KestrinText is made of: finds the font and the scale in which a text of one line fits the width it is
/// given. It first tightens the letters a little, then shrinks them down to the minimum scale; what is then
/// still too long is cut.
///
/// It shows the text in its `label`, a Text of Qt Quick, to which it gives all that depends on this, and the
/// text last: a label lays out its text anew with every single thing that it is told.
class FittedText : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString text MEMBER m_text NOTIFY textChanged)
    Q_PROPERTY(qreal size MEMBER m_size NOTIFY sizeChanged)
    Q_PROPERTY(int weight MEMBER m_weight NOTIFY weightChanged)
    Q_PROPERTY(qreal minimumScale MEMBER m_minimumScale NOTIFY minimumScaleChanged)
    Q_PROPERTY(int lineLimit MEMBER m_lineLimit NOTIFY lineLimitChanged)
    Q_PROPERTY(qreal lineSpacing MEMBER m_lineSpacing NOTIFY lineSpacingChanged)
    Q_PROPERTY(QQuickItem *label MEMBER m_label NOTIFY labelChanged)
    Q_PROPERTY(QFont fittedFont READ fittedFont NOTIFY fittedFontChanged)
    Q_PROPERTY(qreal scaleFactor READ scaleFactor NOTIFY fittedFontChanged)
    Q_PROPERTY(qreal naturalWidth READ naturalWidth NOTIFY naturalSizeChanged)
    Q_PROPERTY(qreal naturalHeight READ naturalHeight NOTIFY naturalSizeChanged)

  public:
    explicit FittedText(QQuickItem *parent = nullptr);

    QFont fittedFont() const { return m_font; }
    /// How much smaller than the font says it has to be drawn; 1 where it did not have to shrink. It is not
    /// in the font, because Qt Quick rounds the sizes of fonts.
    qreal scaleFactor() const { return m_scaleFactor; }
    /// Of the text in one line, or of its longest line where it has several.
    qreal naturalWidth() const { return m_naturalWidth; }
    /// Of one line.
    qreal naturalHeight() const { return m_naturalHeight; }

  Q_SIGNALS:
    void textChanged();
    void sizeChanged();
    void weightChanged();
    void minimumScaleChanged();
    void lineLimitChanged();
    void lineSpacingChanged();
    void labelChanged();
    void fittedFontChanged();
    void naturalSizeChanged();

  protected:
    void componentComplete() override;
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;

  private:
    void measure();
    void fit();
    void use(const QFont &font, qreal scaleFactor);
    void fill(QQuickItem &label) const;

    QString m_text;
    qreal m_size = 13;
    int m_weight = static_cast<int>(KestrinWeight::Regular);
    qreal m_minimumScale = 1;
    int m_lineLimit = 0;     ///< 0 for none
    qreal m_lineSpacing = 0; ///< between lines, on top of the font's own
    QQuickItem *m_label = nullptr;
    QFont m_font;
    qreal m_scaleFactor = 1;
    qreal m_naturalWidth = 0;
    qreal m_naturalHeight = 0;
};

} // namespace kestrin::design
