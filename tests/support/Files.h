// Files as tests make them and look at them.
#pragma once

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>

namespace kestrin::samples {

/// Writes in place, and makes the folder when it is missing.
inline void write(const QString &path, const QByteArray &text) {
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
        qFatal("%s cannot be written.", qUtf8Printable(path));
}

inline QByteArray contents(const QString &path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no file)");
}

/// 0 where nothing is.
inline unsigned modeOf(const QString &path) {
    struct stat status {};
    return ::stat(QFile::encodeName(path).constData(), &status) == 0 ? status.st_mode & 07777U : 0;
}

inline bool isOwnersAlone(const QString &path) {
    return modeOf(path) == 0600U;
}

} // namespace kestrin::samples
