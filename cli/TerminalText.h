// Text that is safe and pleasant to look at on a terminal.
#pragma once

#include "foundation/VisibleText.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace kestrin::cli {

using foundation::visibleJson;
using foundation::visibleText;

/// How many columns of a terminal the text takes. Wide for most East Asian text and pictographs.
qsizetype displayWidth(const QString &text);

enum class TextColour { plain, strong, faint, good, caution, bad };

/// Puts text into colours where they are wanted and leaves it alone where not.
class Palette {
  public:
    explicit Palette(bool colourful) : m_colourful(colourful) {}

    QString paint(TextColour colour, const QString &text) const;

  private:
    bool m_colourful;
};

/// One cell of a table, made visible when it is laid out.
struct Cell {
    Cell() = default;
    // Most cells are plain text, and tables read better without a ceremony for it.
    // NOLINTNEXTLINE(google-explicit-constructor)
    Cell(QString cellText, TextColour cellColour = TextColour::plain)
        : text(std::move(cellText))
        , colour(cellColour) {}

    QString text;
    TextColour colour = TextColour::plain;
};

/// Lines whose cells stand under each other, two spaces apart, each line ending in a line break. No line
/// ends in spaces.
QString alignedLines(const QList<QList<Cell>> &rows, const Palette &palette);

} // namespace kestrin::cli
