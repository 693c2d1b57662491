#include "foundation/FileReading.h"

#include "foundation/Uninterrupted.h"

#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

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

QByteArray fileHead(const QByteArray &path, qsizetype limit) {
    QByteArray head;
    readFileHead(path, limit, head);
    return head;
}

} // namespace kestrin::foundation
