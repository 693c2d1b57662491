// Makes the icon of the macOS bundle: kestrin_icon DRAWING.svg ICON.icns

#include <QBuffer>
#include <QDataStream>
#include <QFile>
#include <QPainter>
#include <QSvgRenderer>

#include <array>
#include <cstdio>

namespace {

struct Picture {
    const char *type;
    int pixels;
};

// 16 to 512 points with two pixels a point, 128 to 512 with one; the system scales these for all others.
constexpr std::array pictures{Picture{"ic11", 32},  Picture{"ic12", 64},  Picture{"ic07", 128},
                              Picture{"ic13", 256}, Picture{"ic08", 256}, Picture{"ic14", 512},
                              Picture{"ic09", 512}, Picture{"ic10", 1024}};

// Icons of macOS leave a margin around their tile: 100 of 1024 on each side.
constexpr double margin = 100.0 / 1024;

QByteArray png(QSvgRenderer &drawing, int pixels) {
    QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    const double space = pixels * margin;
    drawing.render(&painter, QRectF(space, space, pixels - 2 * space, pixels - 2 * space));
    painter.end();
    QBuffer data;
    image.save(&data, "PNG");
    return data.data();
}

/// Every element, and the file as a whole, is a type, its length with these eight bytes, and its content.
void write(QDataStream &stream, const char *type, const QByteArray &content) {
    stream.writeRawData(type, 4);
    stream << static_cast<quint32>(content.size() + 8);
    stream.writeRawData(content.constData(), static_cast<int>(content.size()));
}

} // namespace

int main(int argc, char **argv) {
    if (argc != 3) {
        std::fputs("usage: kestrin_icon DRAWING.svg ICON.icns\n", stderr);
        return 2;
    }
    QSvgRenderer drawing(QFile::decodeName(argv[1]));
    QFile file(QFile::decodeName(argv[2]));
    if (!drawing.isValid() || !file.open(QIODevice::WriteOnly)) {
        std::fprintf(stderr, "cannot make %s of %s\n", argv[2], argv[1]);
        return 1;
    }
    QByteArray elements;
    QDataStream inside(&elements, QIODevice::WriteOnly);
    for (const Picture &picture : pictures)
        write(inside, picture.type, png(drawing, picture.pixels));
    QDataStream stream(&file);
    write(stream, "icns", elements);
    return file.flush() && stream.status() == QDataStream::Ok ? 0 : 1;
}
