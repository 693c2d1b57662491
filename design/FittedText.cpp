#include "design/FittedText.h"

#include "design/KestrinFonts.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QTextLayout>
#include <QTextOption>

#include <algorithm>
#include <cmath>
#include <limits>

namespace kestrin::design {

namespace {

// How far letters may be pulled together before they are made smaller; of the font's size.
constexpr double tightest = 0.02;

// Of the enumerations of Text, which no public header has.
constexpr int qtRendering = 0;
constexpr int nativeRendering = 1;
constexpr int proportionalHeight = 0;
constexpr int fixedHeight = 1;

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
                               &FittedText::minimumScaleChanged, &FittedText::lineLimitChanged,
                               &FittedText::lineSpacingChanged, &FittedText::labelChanged})
        connect(this, changed, this, &FittedText::measure);
    connect(qGuiApp, &QGuiApplication::fontDatabaseChanged, this, &FittedText::measure);
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
    const QFont natural = KestrinFonts::font(m_size, static_cast<KestrinWeight>(m_weight));
    if (m_lineLimit != 1 || width() >= m_naturalWidth || width() <= 0)
        return use(natural, 1);

    // A sixty-fourth less than there is, because Qt counts in these and would cut a text that just fits.
    const double room = width() - 1.0 / 64;
    const double wanted = lineWidth(natural, m_text);
    const QFont tight = tightened(natural, m_size * tightest);
    const double least = lineWidth(tight, m_text);
    if (least > room)
        return use(tight, std::max(m_minimumScale, room / least));
    const double gainOfUnit = (wanted - least) / (natural.letterSpacing() - tight.letterSpacing());
    use(wanted <= room ? natural : tightened(natural, (wanted - room) / gainOfUnit), 1);
}

void FittedText::use(const QFont &font, qreal scaleFactor) {
    if (font != m_font || scaleFactor != m_scaleFactor) {
        m_font = font;
        m_scaleFactor = scaleFactor;
        Q_EMIT fittedFontChanged();
    }
    if (m_label)
        fill(*m_label);
}

void FittedText::fill(QQuickItem &label) const {
    const bool isLimited = m_lineLimit > 0;
    label.setProperty("font", m_font);
    label.setScale(m_scaleFactor);
    // The sharpest, unless it is scaled.
    label.setProperty("renderType", m_scaleFactor < 1 ? qtRendering : nativeRendering);
    label.setProperty("wrapMode",
                      m_lineLimit == 1 ? QTextOption::NoWrap : QTextOption::WrapAtWordBoundaryOrAnywhere);
    label.setProperty("elide", isLimited ? Qt::ElideRight : Qt::ElideNone);
    label.setProperty("maximumLineCount", isLimited ? m_lineLimit : std::numeric_limits<int>::max());
    label.setProperty("lineHeightMode", m_lineSpacing > 0 ? fixedHeight : proportionalHeight);
    label.setProperty("lineHeight", m_lineSpacing > 0 ? m_naturalHeight + m_lineSpacing : 1);
    label.setWidth(std::max(0.0, width()) / m_scaleFactor);
    label.setProperty("text", m_text);
}

} // namespace kestrin::design
