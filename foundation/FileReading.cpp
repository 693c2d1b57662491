#include "foundation/FileReading.h"

#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace kestrin::foundation {

namespace {

int openRegularFile(const QByteArray &path, struct stat &status) {
    const int descriptor = ::open(path.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (descriptor >= 0 && (::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode))) {
        ::close(descriptor);
        return -1;
    }
    return descriptor;
}

/// Reads until the room is full or the file ends, and returns how much that was; -1 when it cannot be read.
qsizetype readInto(int descriptor, char *room, qsizetype size) {
    qsizetype used = 0;
    while (used < size) {
        const ssize_t got = ::read(descriptor, room + used, static_cast<std::size_t>(size - used));
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            return -1;
        if (got == 0)
            break;
        used += got;
    }
    return used;
}

} // namespace

int openForReading(const QString &path, qint64 &size) {
    struct stat status {};
    const int descriptor = openRegularFile(QFile::encodeName(path), status);
    size = status.st_size;
    return descriptor;
}

std::optional<QByteArray> readWholeFile(const QString &path, qsizetype spare) {
    qint64 size = 0;
    const int descriptor = openForReading(path, size);
    if (descriptor < 0)
        return std::nullopt;
    QByteArray bytes;
    qsizetype used = 0;
    qsizetype got = 0;
    // One byte more than the size tells, so that the first round finds the end.
    for (qsizetype room = size + 1;; room = 4096) {
        bytes.resize(used + room + spare);
        got = readInto(descriptor, bytes.data() + used, room);
        used += got;
        if (got < room)
            break;
    }
    ::close(descriptor);
    if (got < 0)
        return std::nullopt;
    bytes.truncate(used);
    return bytes;
}

std::optional<FileStamp> readFileHead(const QByteArray &path, qsizetype limit, QByteArray &head) {
    head.resize(0);
    struct stat status {};
    const int descriptor = openRegularFile(path, status);
    if (descriptor < 0)
        return std::nullopt;
    head.resize(limit);
    const qsizetype used = readInto(descriptor, head.data(), limit);
    ::close(descriptor);
    head.truncate(std::max<qsizetype>(used, 0));
    return used < 0 ? std::nullopt : std::optional(FileStamp::of(status));
}

} // namespace kestrin::foundation
