// Pictures of pages that are kept with the source. They are a quarter as wide and high as the window, so that
// they are small, and so that how edges are smoothed, which no two versions of a library do alike, is not
// seen in them.
#pragma once

#include <QDir>
#include <QImage>
#include <QString>

namespace kestrin::samples {

enum class Verdict { same, different, otherFaces };

/// Different when it cannot be written.
Verdict storePicture(const QDir &folder, const QString &name, const QImage &picture);
/// Says on standard error what is wrong, also when nothing is stored. Texts that are drawn by other faces
/// than the stored ones cannot be compared.
Verdict comparePicture(const QDir &folder, const QString &name, const QImage &picture);

} // namespace kestrin::samples
