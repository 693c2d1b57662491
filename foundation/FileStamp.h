#pragma once

#include <QByteArray>

struct stat;

namespace kestrin::foundation {

/// What tells two states of a file or a folder apart; all zero when there is none.
struct FileStamp {
    quint64 device = 0;
    quint64 inode = 0;
    qint64 size = 0;
    /// When it was last modified, since 1970.
    qint64 seconds = 0;
    qint64 nanoseconds = 0;

    /// Of what a symbolic link leads to.
    static FileStamp of(const QByteArray &path);
    static FileStamp of(const struct stat &status);

    bool operator==(const FileStamp &) const = default;
};

} // namespace kestrin::foundation
