#include "foundation/FileReading.h"

#include "foundation/Uninterrupted.h"

#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

using namespace Qt::StringLiterals;

namespace kestrin::foundation {

namespace {

FileState stateFor(int error) {
    switch (error) {
    case ENOENT:
    case ENOTDIR:
        return FileState::missing;
    case EACCES:
    case EPERM:
        return FileState::denied;
    case ENXIO: // a socket
    case ENODEV:
    case ELOOP: // links that lead to each other
        return FileState::notAFile;
    default:
        return FileState::failed;
    }
}

QString kindOf(mode_t mode) {
    if (S_ISLNK(mode))
        return u"a link"_s;
    if (S_ISDIR(mode))
        return u"a folder"_s;
    if (S_ISFIFO(mode))
        return u"a pipe"_s;
    return S_ISSOCK(mode) ? u"a socket"_s : u"a device"_s;
}

QString kindBehind(const QString &path) {
    struct stat status {};
    return ::stat(QFile::encodeName(path).constData(), &status) == 0 ? kindOf(status.st_mode)
                                                                     : u"a link that leads to itself"_s;
}

QString isNoFile(const QString &path, const QString &kind) {
    return path + u" is "_s + kind + u" and not a file."_s;
}

QString sizeText(qint64 bytes) {
    constexpr qint64 mebibyte = 1024 * 1024;
    return QString::number(bytes / mebibyte) + u" MiB"_s;
}

} // namespace

ReadableFile::ReadableFile(const QByteArray &path, qint64 limit) {
    m_descriptor =
        uninterrupted([&] { return ::open(path.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY); });
    struct stat status {};
    if (m_descriptor < 0 || ::fstat(m_descriptor, &status) != 0) {
        fail(errno);
        return;
    }
    m_stamp = FileStamp::of(status);
    m_isPrivate = (status.st_mode & (S_IRWXU | S_IRWXG | S_IRWXO)) == (S_IRUSR | S_IWUSR);
    if (!S_ISREG(status.st_mode))
        m_state = FileState::notAFile;
    else if (status.st_size > limit)
        m_state = FileState::tooLarge;
}

ReadableFile::~ReadableFile() {
    if (m_descriptor >= 0)
        ::close(m_descriptor);
}

void ReadableFile::fail(int error) {
    m_error = error;
    // What is open already is there, whatever the error.
    m_state = m_descriptor < 0 ? stateFor(error) : FileState::failed;
}

qsizetype ReadableFile::read(char *room, qsizetype size) {
    qsizetype used = 0;
    while (used < size) {
        const ssize_t got = uninterrupted(
            [&] { return ::read(m_descriptor, room + used, static_cast<std::size_t>(size - used)); });
        if (got < 0) {
            fail(errno);
            return -1;
        }
        if (got == 0)
            break;
        used += got;
    }
    return used;
}

FileText readFile(const QString &path, qint64 limit, qsizetype spare) {
    ReadableFile file(QFile::encodeName(path), limit);
    FileText text{file.state(), {}, file.error(), file.isPrivate()};
    qsizetype used = 0;
    // One byte more than the size tells, so that the first round finds the end.
    for (qsizetype room = file.stamp().size + 1; text.state == FileState::readable; room = 4096) {
        text.bytes.resize(used + room + spare);
        const qsizetype got = file.read(text.bytes.data() + used, room);
        used += std::max<qsizetype>(got, 0);
        text.state = used > limit ? FileState::tooLarge : file.state();
        text.error = file.error();
        if (got < room)
            break;
    }
    text.bytes.truncate(text.state == FileState::readable ? used : 0);
    return text;
}

QString describe(const QString &path, FileState state, int error, qint64 limit) {
    switch (state) {
    case FileState::readable:
    case FileState::missing:
        break;
    case FileState::notAFile:
        return isNoFile(path, kindBehind(path));
    case FileState::tooLarge:
        return path + u" is larger than the "_s + sizeText(limit) + u" that Kestrin reads."_s;
    case FileState::denied:
    case FileState::failed:
        return path + u" cannot be read: "_s + QString::fromLocal8Bit(std::strerror(error)) + u'.';
    }
    return {};
}

QString describeObstacle(const QString &path) {
    struct stat status {};
    const bool isInTheWay =
        ::lstat(QFile::encodeName(path).constData(), &status) == 0 && !S_ISREG(status.st_mode);
    return isInTheWay ? isNoFile(path, kindOf(status.st_mode)) : QString();
}

std::optional<QByteArray> readWholeFile(const QString &path, qint64 limit) {
    const FileText text = readFile(path, limit);
    return text.state == FileState::readable ? std::optional(text.bytes) : std::nullopt;
}

std::optional<FileStamp> readFileHead(const QByteArray &path, qsizetype limit, QByteArray &head) {
    head.resize(0);
    ReadableFile file(path);
    if (file.state() != FileState::readable)
        return std::nullopt;
    head.resize(limit);
    head.truncate(std::max<qsizetype>(file.read(head.data(), limit), 0));
    return file.state() == FileState::readable ? std::optional(file.stamp()) : std::nullopt;
}

} // namespace kestrin::foundation
