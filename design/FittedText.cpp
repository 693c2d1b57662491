#include "design/FittedText.h"

#include "design/KestrinFonts.h"

#include <QFontMetricsF>
#include <QTextLayout>

#include <algorithm>
#include <cmath>

namespace kestrin {

namespace {

// How far letters may be pulled together before they are made smaller; of the font's size.
constexpr double tightest = 0.02;

// Measured as the text will be laid out. QFontMetricsF is off by a fraction, enough for a text to be cut or
// wrapped in the room that it asked for.
double lineWidth(const QFont &font, const QString &text) {
    double widest = 0;
    for (const QStringView part : QStringView(text).split(u'\n')) {
        QTextLayout layout(part.toString(), font);
        layout.beginLayout();
        const QTextLine line = layout.createLine();
        layout.endLayout();
        if (line.isValid())
            widest = std::max(widest, line.naturalTextWidth());
    }
    return widest;
}

QFont tightened(QFont font, double size, double share) {
    font.setLetterSpacing(QFont::AbsoluteSpacing, font.letterSpacing() - size * tightest * share);
    return font;
}

} // namespace

FittedText::FittedText(QQuickItem *parent) : QQuickItem(parent) {
    for (const auto changed : {&FittedText::textChanged, &FittedText::sizeChanged, &FittedText::weightChanged,
                               &FittedText::minimumScaleChanged, &FittedText::lineLimitChanged})
        connect(this, changed, this, &FittedText::measure);
}

void FittedText::componentComplete() {
    QQuickItem::componentComplete();
    measure();
}

void FittedText::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) {
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    if (newGeometry.width() != oldGeometry.width())
        fit();
}

void FittedText::measure() {
    if (!isComponentComplete())
        return;
    const QFont font = KestrinFonts::font(m_size, static_cast<KestrinWeight>(m_weight));
    const qreal width = std::ceil(lineWidth(font, m_text));
    const qreal height = std::ceil(QFontMetricsF(font).height());
    if (width != m_naturalWidth || height != m_naturalHeight) {
        m_naturalWidth = width;
        m_naturalHeight = height;
        Q_EMIT naturalSizeChanged();
    }
    fit();
}

void FittedText::fit() {
    if (!isComponentComplete())
        return;
    const auto weight = static_cast<KestrinWeight>(m_weight);
    const QFont natural = KestrinFonts::font(m_size, weight);
    if (m_lineLimit != 1 || width() >= m_naturalWidth || width() <= 0)
        return use(natural, 1);

    const double wanted = lineWidth(natural, m_text);
    const double gain = wanted - lineWidth(tightened(natural, m_size, 1), m_text);
    // A sixty-fourth less than there is, because Qt counts in these and would cut a text that just fits.
    const double room = width() - 1.0 / 64;
    if (gain > 0 && wanted - gain <= room)
        return use(tightened(natural, m_size, (wanted - room) / gain), 1);

    // Glyphs do not grow quite in proportion, so that the first guess may need another.
    double scale = std::min(1.0, room / (wanted - gain));
    QFont font;
    for (int attempt = 0; attempt < 4; ++attempt) {
        scale = std::max(scale, m_minimumScale);
        font = tightened(KestrinFonts::font(m_size * scale, weight), m_size * scale, 1);
        const double got = lineWidth(font, m_text);
        if (got <= room || scale <= m_minimumScale)
            break;
        scale *= room / got;
    }
    use(font, scale);
}

void FittedText::use(const QFont &font, qreal scaleFactor) {
    if (font == m_font && scaleFactor == m_scaleFactor)
        return;
    m_font = font;
    m_scaleFactor = scaleFactor;
    Q_EMIT fittedFontChanged();
}

} // namespace kestrin
