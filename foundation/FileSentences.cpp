#include "foundation/FileSentences.h"

#include <QFile>

#include <sys/stat.h>

#include <cerrno>
#include <cstring>

using namespace Qt::StringLiterals;

namespace kestrin::foundation {

namespace {

QString remedyFor(int error) {
    switch (error) {
    case EACCES:
    case EPERM:
        return u"make sure that it and its folder are yours to read and change"_s;
    case EROFS:
        return u"make its file system writable"_s;
    case ENOSPC:
    case EDQUOT:
        return u"make room on the disk"_s;
    case EMFILE:
    case ENFILE:
    case ENOMEM:
        return u"close some programs and try again"_s;
    case ENOENT: // a link that leads nowhere
    case ENOTDIR:
    case ELOOP:
        return u"move away what stands in a folder's place"_s;
    default:
        return u"try again, and look at the disk if it stays so"_s;
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
    return path + u" is "_s + kind + u" and not a file; move it away."_s;
}

QString sizeText(qint64 bytes) {
    constexpr qint64 mebibyte = 1024 * 1024;
    return QString::number(bytes / mebibyte) + u" MiB"_s;
}

} // namespace

QString describeFailure(const QString &path, const QString &done, int error) {
    return path + u" cannot be "_s + done + u": "_s + QString::fromLocal8Bit(std::strerror(error)) + u"; "_s +
           remedyFor(error) + u'.';
}

QString describeUnreadable(const QString &path, FileState state, int error, qint64 limit) {
    switch (state) {
    case FileState::readable:
    case FileState::missing:
        break;
    case FileState::notAFile:
        return isNoFile(path, kindBehind(path));
    case FileState::tooLarge:
        return path + u" is larger than the "_s + sizeText(limit) +
               u" that Kestrin reads; move it away, and a new one is begun."_s;
    case FileState::denied:
    case FileState::failed:
        return describeFailure(path, u"read"_s, error);
    }
    return {};
}

QString describeObstacle(const QString &path) {
    struct stat status {};
    const bool isInTheWay =
        ::lstat(QFile::encodeName(path).constData(), &status) == 0 && !S_ISREG(status.st_mode);
    return isInTheWay ? isNoFile(path, kindOf(status.st_mode)) : QString();
}

} // namespace kestrin::foundation
