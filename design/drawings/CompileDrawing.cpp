// Turns SVG into what the program draws: kestrin_drawing FOLDER DRAWING.svg... [--picture DRAWING.svg...]
//
// Writes FOLDER/DRAWING.drawing for each, and FOLDER/DRAWING.png for those after --picture, which are shown
// by others who know neither. Fails for what a drawing cannot hold, such as pictures and texts.

#include "design/Drawing.h"

#include <QDataStream>
#include <QFileInfo>
#include <QImage>
#include <QPaintDevice>
#include <QPaintEngine>
#include <QPainter>
#include <QSaveFile>
#include <QSvgRenderer>

#include <cmath>
#include <cstdio>
#include <cstring>

using namespace Qt::StringLiterals;
using namespace kestrin;
using namespace kestrin::design;

namespace {

constexpr int picturePixels = 128;

/// Notes what is painted instead of painting it. Qt makes paths or polygons of all shapes, and pixmaps of
/// images.
class Recorder : public QPaintDevice, private QPaintEngine {
  public:
    explicit Recorder(const QSize &size) : QPaintEngine(AllFeatures), m_size(size) { m_drawing.size = size; }

    const Drawing &drawing() const { return m_drawing; }
    bool isComplete() const { return m_isComplete; }

    QPaintEngine *paintEngine() const override { return const_cast<Recorder *>(this); }

  protected:
    int metric(PaintDeviceMetric metric) const override {
        switch (metric) {
        case PdmWidth:
            return m_size.width();
        case PdmHeight:
            return m_size.height();
        case PdmDevicePixelRatioScaled:
            return static_cast<int>(devicePixelRatioFScale());
        case PdmDepth:
            return 32;
        case PdmDevicePixelRatio:
            return 1;
        default:
            return 96; // dots per inch, in all directions
        }
    }

  private:
    bool begin(QPaintDevice *) override { return true; }
    bool end() override { return true; }
    Type type() const override { return User; }
    void updateState(const QPaintEngineState &) override {}

    void drawPath(const QPainterPath &path) override {
        const QTransform transform = painter()->combinedTransform();
        Drawing::Shape shape{transform.map(path), painter()->brush(), painter()->pen()};
        // How newer versions of QtSvg say that nothing is stroked.
        if (shape.stroke.brush().style() == Qt::NoBrush)
            shape.stroke = Qt::NoPen;
        shape.stroke.setWidthF(shape.stroke.widthF() * std::sqrt(std::abs(transform.determinant())));
        m_isComplete &= painter()->opacity() == 1;
        m_drawing.shapes.push_back(shape);
    }
    void drawPolygon(const QPointF *points, int count, PolygonDrawMode mode) override {
        QPainterPath path;
        path.addPolygon(QPolygonF(QList<QPointF>(points, points + count)));
        path.setFillRule(mode == WindingMode ? Qt::WindingFill : Qt::OddEvenFill);
        if (mode != PolylineMode)
            path.closeSubpath();
        drawPath(path);
    }
    void drawPixmap(const QRectF &, const QPixmap &, const QRectF &) override { m_isComplete = false; }
    void drawTextItem(const QPointF &, const QTextItem &) override { m_isComplete = false; }

    QSize m_size;
    Drawing m_drawing;
    bool m_isComplete = true;
};

bool compile(QSvgRenderer &source, const QString &target) {
    Recorder recorder(source.viewBox().size());
    QPainter painter(&recorder);
    source.render(&painter, QRectF({}, QSizeF(source.viewBox().size())));
    painter.end();
    QSaveFile file(target);
    if (!recorder.isComplete() || recorder.drawing().shapes.empty() || !file.open(QIODevice::WriteOnly))
        return false;
    QDataStream stream(&file);
    writeDrawing(stream, recorder.drawing());
    return stream.status() == QDataStream::Ok && file.commit();
}

bool paint(QSvgRenderer &source, const QString &target) {
    QImage image(picturePixels, picturePixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    source.render(&painter);
    painter.end();
    return image.save(target);
}

} // namespace

int main(int argc, char **argv) {
    if (argc < 3) {
        std::fputs("usage: kestrin_drawing FOLDER DRAWING.svg... [--picture DRAWING.svg...]\n", stderr);
        return 2;
    }
    bool asPicture = false;
    for (int i = 2; i < argc; ++i) {
        if (std::strcmp(argv[i], "--picture") == 0) {
            asPicture = true;
            continue;
        }
        const QString name = QFile::decodeName(argv[i]);
        const QString target = QFile::decodeName(argv[1]) + u'/' + QFileInfo(name).completeBaseName();
        QSvgRenderer source(name);
        const bool isMade = source.isValid() && (asPicture ? paint(source, target + u".png"_s)
                                                           : compile(source, target + u".drawing"_s));
        if (!isMade) {
            std::fprintf(stderr, "cannot make a drawing of %s; draw it with plain shapes only\n", argv[i]);
            return 1;
        }
    }
    return 0;
}
