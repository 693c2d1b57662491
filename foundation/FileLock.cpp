#include "foundation/FileLock.h"

#include "foundation/FileSentences.h"
#include "foundation/LockFile.h"
#include "foundation/PrivateFile.h"

#include <QFile>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

using namespace Qt::StringLiterals;

namespace kestrin::foundation {

namespace {

bool lockNow(int descriptor, int kind) {
    while (::flock(descriptor, kind | LOCK_NB) != 0) {
        if (errno != EINTR)
            return false;
    }
    return true;
}

} // namespace

std::optional<FileLock> FileLock::tryLockFile(const QString &path, const QByteArray &note, QString &problem) {
    const int descriptor = openLockFile(path, problem);
    if (descriptor < 0)
        return std::nullopt;
    FileLock lock(descriptor);
    if (!lockNow(descriptor, LOCK_EX)) {
        if (errno != EWOULDBLOCK)
            problem = describeFailure(path, u"locked"_s, errno);
        return std::nullopt;
    }
    // The note is a courtesy; the lock holds without it.
    if (::ftruncate(descriptor, 0) == 0)
        writeAll(descriptor, viewOf(note));
    return lock;
}

std::optional<QByteArray> FileLock::holderOf(const QString &path, QString &problem) {
    problem = describeObstacle(path);
    if (!problem.isEmpty())
        return std::nullopt;
    const int descriptor = ::open(QFile::encodeName(path).constData(),
                                  O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY);
    if (descriptor < 0) {
        if (errno != ENOENT && errno != ENOTDIR)
            problem = describeLockFile(path, errno);
        return std::nullopt;
    }
    const FileLock own(descriptor);
    // A shared lock is enough to find out, and two askers do not see each other.
    if (lockNow(descriptor, LOCK_SH) || errno != EWOULDBLOCK)
        return std::nullopt;
    QByteArray note(256, '\0');
    const ssize_t got = ::pread(descriptor, note.data(), static_cast<std::size_t>(note.size()), 0);
    note.truncate(std::max<ssize_t>(got, 0));
    return note;
}

FileLock::FileLock(FileLock &&other) noexcept : m_descriptor(std::exchange(other.m_descriptor, -1)) {}

FileLock &FileLock::operator=(FileLock &&other) noexcept {
    std::swap(m_descriptor, other.m_descriptor);
    return *this;
}

FileLock::~FileLock() {
    if (m_descriptor >= 0)
        ::close(m_descriptor);
}

bool FileLock::isAt(const QString &path) const {
    return isStillAt(path, m_descriptor);
}

} // namespace kestrin::foundation
