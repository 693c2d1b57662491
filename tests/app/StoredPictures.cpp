#include "tests/app/StoredPictures.h"

#include "design/KestrinFonts.h"

#include <QColor>
#include <QCryptographicHash>
#include <QFile>

#include <cmath>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace kestrin::samples {

namespace {

constexpr int scale = 4;
/// In points of the reduced picture.
constexpr int square = 8;
/// Letters without any hinting are 0.9 apart from those with it, a control that moved by one point 7 to 19, a
/// text of which one channel changed by 15 of 255 between 2 and 5.
constexpr double tolerance = 2;

const QString facesKey = u"Faces"_s;

QString facesOfTexts() {
    QCryptographicHash hash(QCryptographicHash::Sha256);
    // A desktop's own font is used where it has every weight.
    hash.addData(design::KestrinFonts::font(13, design::KestrinWeight::Regular).family().toUtf8());
    const QStringList names = QDir(u":/kestrin/fonts"_s).entryList(QDir::Files, QDir::Name);
    for (const QString &name : names) {
        QFile face(u":/kestrin/fonts/"_s + name);
        if (face.open(QIODevice::ReadOnly))
            hash.addData(face.readAll());
    }
    return QString::fromLatin1(hash.result().toHex().first(16));
}

QImage reduce(const QImage &picture) {
    return picture.scaled(picture.size() / scale, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
        .convertToFormat(QImage::Format_RGB32);
}

double distance(const QImage &one, const QImage &other, const QRect &place) {
    double sum = 0;
    for (int y = place.top(); y <= place.bottom(); ++y) {
        for (int x = place.left(); x <= place.right(); ++x) {
            const QColor here(one.pixel(x, y));
            const QColor there(other.pixel(x, y));
            sum += std::pow(here.red() - there.red(), 2) + std::pow(here.green() - there.green(), 2) +
                   std::pow(here.blue() - there.blue(), 2);
        }
    }
    return std::sqrt(sum / (3 * place.width() * place.height()));
}

/// How far two pictures are apart where they are most, as a person sees it: the root mean square of the
/// colours' distances over a square, 0 to 255, and the square's corner in the window.
struct Difference {
    double distance = 0;
    QPoint place;
};

Difference largestDifference(const QImage &reduced, const QImage &other) {
    Difference largest;
    for (int y = 0; y < reduced.height(); y += square) {
        for (int x = 0; x < reduced.width(); x += square) {
            const QRect place = QRect(x, y, square, square) & reduced.rect();
            const double here = distance(reduced, other, place);
            if (here > largest.distance)
                largest = {here, place.topLeft() * scale};
        }
    }
    return largest;
}

} // namespace

bool storePicture(const QDir &folder, const QString &name, const QImage &picture) {
    QImage reduced = reduce(picture);
    reduced.setText(facesKey, facesOfTexts());
    return reduced.save(folder.filePath(name + u".png"_s));
}

Verdict comparePicture(const QDir &folder, const QString &name, const QImage &picture) {
    const QImage stored(folder.filePath(name + u".png"_s));
    const QImage reduced = reduce(picture);
    if (stored.size() != reduced.size()) {
        std::fprintf(stderr, "%s is not stored, or in another size.\n", qPrintable(name));
        return Verdict::missing;
    }
    if (stored.text(facesKey) != facesOfTexts())
        return Verdict::otherFaces;
    const Difference difference = largestDifference(reduced, stored.convertToFormat(QImage::Format_RGB32));
    if (difference.distance <= tolerance)
        return Verdict::same;
    std::fprintf(stderr, "%s looks different around %d, %d: by %.1f of 255.\n", qPrintable(name),
                 difference.place.x(), difference.place.y(), difference.distance);
    return Verdict::different;
}

} // namespace kestrin::samples
