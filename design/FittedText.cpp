#include "design/FittedText.h"

#include "design/KestrinAppearance.h"
#include "design/KestrinFonts.h"

#include <QFontMetricsF>
#include <QTextLayout>

#include <algorithm>
#include <cmath>

namespace kestrin::design {

namespace {

// How far letters may be pulled together before they are made smaller; of the font's size.
constexpr double tightest = 0.04;

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

// Fonts keep their spacing in sixty-fourths; rounded the other way a text would be a little too long again.
QFont tightened(QFont font, double letter) {
    font.setLetterSpacing(QFont::AbsoluteSpacing, std::floor((font.letterSpacing() - letter) * 64) / 64);
    return font;
}

} // namespace

FittedText::FittedText(QQuickItem *parent) : QQuickItem(parent) {
    for (const auto changed : {&FittedText::textChanged, &FittedText::sizeChanged, &FittedText::weightChanged,
                               &FittedText::minimumScaleChanged, &FittedText::lineLimitChanged})
        connect(this, changed, this, &FittedText::measure);
    connect(&KestrinAppearance::shared(), &KestrinAppearance::textScaleChanged, this, &FittedText::measure);
}

QString FittedText::directedText() const {
    constexpr QChar leftToRightMark(0x200e);
    return m_text.isRightToLeft() ? leftToRightMark + m_text : m_text;
}

QFont FittedText::naturalFont() const {
    return KestrinFonts::font(m_size * KestrinAppearance::shared().textScale(),
                              static_cast<KestrinWeight>(m_weight));
}

double FittedText::leastScale() const {
    return m_minimumScale / KestrinAppearance::shared().textScale();
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
    const QFont font = naturalFont();
    const qreal width = std::ceil(lineWidth(font, directedText()));
    const qreal height = std::ceil(QFontMetricsF(font).height());
    const qreal least =
        std::ceil(lineWidth(tightened(font, font.pixelSize() * tightest), directedText()) * leastScale());
    if (width != m_naturalWidth || height != m_naturalHeight || least != m_leastWidth) {
        m_naturalWidth = width;
        m_naturalHeight = height;
        m_leastWidth = least;
        Q_EMIT naturalSizeChanged();
    }
    fit();
}

void FittedText::fit() {
    if (!isComponentComplete())
        return;
    const QFont natural = naturalFont();
    if (m_lineLimit != 1 || width() >= m_naturalWidth || width() <= 0)
        return use(natural, 1);

    // A sixty-fourth less than there is, because Qt counts in these and would cut a text that just fits.
    const double room = width() - 1.0 / 64;
    const double wanted = lineWidth(natural, directedText());
    const QFont tight = tightened(natural, natural.pixelSize() * tightest);
    const double least = lineWidth(tight, directedText());
    if (least > room)
        return use(tight, std::max(leastScale(), room / least));
    const double gainOfUnit = (wanted - least) / (natural.letterSpacing() - tight.letterSpacing());
    use(wanted <= room ? natural : tightened(natural, (wanted - room) / gainOfUnit), 1);
}

void FittedText::use(const QFont &font, qreal scaleFactor) {
    const qreal fittedWidth = std::max(0.0, width()) / scaleFactor;
    if (font == m_font && scaleFactor == m_scaleFactor && fittedWidth == m_fittedWidth)
        return;
    m_font = font;
    m_scaleFactor = scaleFactor;
    m_fittedWidth = fittedWidth;
    Q_EMIT fitted();
}

} // namespace kestrin::design
