#pragma once

#include <QBrush>
#include <QPainterPath>
#include <QPen>
#include <QSizeF>

#include <vector>

class QDataStream;
class QPainter;

namespace kestrin::design {

/// A picture of filled and stroked shapes, the first one below all others. They are read from SVG when
/// Kestrin is built (drawings/CompileDrawing.cpp), so that the program that shows them carries no reader of
/// SVG.
struct Drawing {
    struct Shape {
        QPainterPath path;
        QBrush fill;
        QPen stroke;
    };

    QSizeF size; ///< in the units of the shapes
    std::vector<Shape> shapes;

    /// One of those embedded in the program, by its name without a suffix; without shapes if there is none.
    static Drawing embedded(const QString &name);

    /// At the painter's origin, in its units.
    void paint(QPainter &painter) const;
};

/// The stream is made ready for it first.
void writeDrawing(QDataStream &stream, const Drawing &drawing);

} // namespace kestrin::design
