#include "design/Drawing.h"

#include <QDataStream>
#include <QPainter>
#include <QResource>

using namespace Qt::StringLiterals;

namespace kestrin::design {

namespace {

void prepare(QDataStream &stream) {
    stream.setVersion(QDataStream::Qt_6_4);
    // Half the size, and exact to a thousandth of a pixel at any size in use.
    stream.setFloatingPointPrecision(QDataStream::SinglePrecision);
}

} // namespace

Drawing Drawing::embedded(const QString &name) {
    Drawing drawing;
    const QResource file(u":/kestrin/"_s + name + u".drawing"_s);
    QDataStream stream(QByteArray::fromRawData(reinterpret_cast<const char *>(file.data()), file.size()));
    prepare(stream);
    quint32 count = 0;
    stream >> drawing.size >> count;
    drawing.shapes.resize(count);
    for (Shape &shape : drawing.shapes)
        stream >> shape.path >> shape.fill >> shape.stroke;
    return drawing;
}

void Drawing::paint(QPainter &painter) const {
    painter.setRenderHint(QPainter::Antialiasing);
    for (const Shape &shape : shapes) {
        painter.setBrush(shape.fill);
        painter.setPen(shape.stroke);
        painter.drawPath(shape.path);
    }
}

void writeDrawing(QDataStream &stream, const Drawing &drawing) {
    prepare(stream);
    stream << drawing.size << static_cast<quint32>(drawing.shapes.size());
    for (const Drawing::Shape &shape : drawing.shapes)
        stream << shape.path << shape.fill << shape.stroke;
}

} // namespace kestrin::design
