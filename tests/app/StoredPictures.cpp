#include "tests/app/StoredPictures.h"

#include "design/KestrinFonts.h"

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

double squaredDistance(QRgb here, QRgb there) {
    return std::pow(qRed(here) - qRed(there), 2) + std::pow(qGreen(here) - qGreen(there), 2) +
           std::pow(qBlue(here) - qBlue(there), 2);
}

/// How far two pictures are apart where they are most, as a person sees it: the root mean square of the
/// colours' distances over a square, 0 to 255, and the square's corner in the window.
std::pair<double, QPoint> largestDifference(const QImage &reduced, const QImage &other) {
    std::pair<double, QPoint> largest;
    for (int top = 0; top < reduced.height(); top += square) {
        for (int left = 0; left < reduced.width(); left += square) {
            const QRect place = QRect(left, top, square, square) & reduced.rect();
            double sum = 0;
            for (int y = place.top(); y <= place.bottom(); ++y) {
                for (int x = place.left(); x <= place.right(); ++x)
                    sum += squaredDistance(reduced.pixel(x, y), other.pixel(x, y));
            }
            const double distance = std::sqrt(sum / (3 * place.width() * place.height()));
            if (distance > largest.first)
                largest = {distance, place.topLeft() * scale};
        }
    }
    return largest;
}

} // namespace

Verdict storePicture(const QDir &folder, const QString &name, const QImage &picture) {
    QImage reduced = reduce(picture);
    reduced.setText(facesKey, facesOfTexts());
    const bool isStored = folder.mkpath(u"."_s) && reduced.save(folder.filePath(name + u".png"_s));
    return isStored ? Verdict::same : Verdict::different;
}

Verdict comparePicture(const QDir &folder, const QString &name, const QImage &picture) {
    const QImage stored(folder.filePath(name + u".png"_s));
    const QImage reduced = reduce(picture);
    if (stored.size() != reduced.size()) {
        std::fprintf(stderr, "%s is not stored, or in another size.\n", qPrintable(name));
        return Verdict::different;
    }
    if (stored.text(facesKey) != facesOfTexts())
        return Verdict::otherFaces;
    const auto [distance, place] = largestDifference(reduced, stored.convertToFormat(QImage::Format_RGB32));
    if (distance <= tolerance)
        return Verdict::same;
    std::fprintf(stderr, "%s looks different around %d, %d: by %.1f of 255.\n", qPrintable(name), place.x(),
                 place.y(), distance);
    return Verdict::different;
}

} // namespace kestrin::samples
