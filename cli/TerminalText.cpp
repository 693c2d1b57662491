#include "cli/TerminalText.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace kestrin::cli {

namespace {

struct Range {
    char32_t first;
    char32_t last;
};

/// The blocks that terminals show two columns wide, roughly; being wrong only puts a column out of line.
constexpr std::array wideRanges{
    Range{0x1100, 0x115f},   Range{0x2e80, 0x303e},   Range{0x3041, 0x4dbf},   Range{0x4e00, 0xa4cf},
    Range{0xac00, 0xd7a3},   Range{0xf900, 0xfaff},   Range{0xfe30, 0xfe6f},   Range{0xff00, 0xff60},
    Range{0xffe0, 0xffe6},   Range{0x1f300, 0x1f64f}, Range{0x1f680, 0x1f6ff}, Range{0x1f900, 0x1faff},
    Range{0x20000, 0x3fffd},
};

bool isWide(char32_t character) {
    return std::any_of(wideRanges.cbegin(), wideRanges.cend(), [&](const Range &range) {
        return character >= range.first && character <= range.last;
    });
}

bool takesNoRoom(char32_t character) {
    const QChar::Category category = QChar::category(character);
    return category == QChar::Mark_NonSpacing || category == QChar::Mark_Enclosing ||
           category == QChar::Other_Format;
}

/// One cell that is very long puts only its own line out of order.
qsizetype countedWidth(const Cell &cell) {
    constexpr qsizetype widest = 48;
    const qsizetype width = displayWidth(visibleText(cell.text));
    return width > widest ? 0 : width;
}

QString selectGraphicRendition(TextColour colour) {
    switch (colour) {
    case TextColour::plain:
        break;
    case TextColour::strong:
        return u"1"_s;
    case TextColour::faint:
        return u"2"_s;
    case TextColour::good:
        return u"32"_s;
    case TextColour::caution:
        return u"33"_s;
    case TextColour::bad:
        return u"31"_s;
    }
    return {};
}

} // namespace

qsizetype displayWidth(const QString &text) {
    qsizetype width = 0;
    for (const char32_t character : text.toUcs4()) {
        if (!takesNoRoom(character))
            width += isWide(character) ? 2 : 1;
    }
    return width;
}

QString Palette::paint(TextColour colour, const QString &text) const {
    if (!m_colourful || colour == TextColour::plain || text.isEmpty())
        return text;
    return u"\x1b["_s + selectGraphicRendition(colour) + u'm' + text + u"\x1b[0m"_s;
}

QString alignedLines(const QList<QList<Cell>> &rows, const Palette &palette) {
    QList<qsizetype> widths;
    for (const QList<Cell> &row : rows) {
        widths.resize(std::max(widths.size(), row.size()));
        for (qsizetype i = 0; i < row.size(); ++i)
            widths[i] = std::max(widths.at(i), countedWidth(row.at(i)));
    }

    QString lines;
    for (const QList<Cell> &row : rows) {
        // Spaces are owed until something follows them.
        qsizetype owed = 0;
        for (qsizetype i = 0; i < row.size(); ++i) {
            const QString text = visibleText(row.at(i).text);
            if (!text.isEmpty()) {
                lines += QString(owed, u' ') + palette.paint(row.at(i).colour, text);
                owed = 0;
            }
            owed += std::max<qsizetype>(widths.at(i) - displayWidth(text), 0) + 2;
        }
        lines += u'\n';
    }
    return lines;
}

} // namespace kestrin::cli
