// Pictures of pages that are kept with the source. They are a quarter as wide and high as the window, so that
// they are small, and so that how edges are smoothed, which no two versions of a library do alike, is not
// seen in them.
#pragma once

#include <QDir>
#include <QImage>
#include <QString>

namespace kestrin::samples {

class StoredPictures {
  public:
    enum class Verdict { same, different, otherFaces, missing };

    explicit StoredPictures(const QDir &folder) : m_folder(folder) {}

    /// False when it cannot be written.
    bool store(const QString &name, const QImage &picture) const;
    /// Says on standard error what is wrong. Texts that are drawn by other faces than the stored ones cannot
    /// be compared.
    Verdict compare(const QString &name, const QImage &picture) const;

  private:
    QDir m_folder;
};

} // namespace kestrin::samples
