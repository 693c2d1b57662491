#include "foundation/FileLock.h"

#include "foundation/FileReading.h"
#include "foundation/PrivateFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <thread>
#include <utility>

namespace kestrin::foundation {

namespace {

bool lockNow(int descriptor) {
    while (::flock(descriptor, LOCK_EX | LOCK_NB) != 0) {
        if (errno != EINTR)
            return false;
    }
    return true;
}

} // namespace

std::optional<FileLock> FileLock::lockFolder(const QString &folder, std::chrono::milliseconds patience) {
    const int descriptor = ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return std::nullopt;
    FileLock lock(descriptor);

    // The holder is another process in the middle of one read and one write: short naps beat a blocking wait,
    // which would hang with a holder that was stopped.
    const auto deadline = std::chrono::steady_clock::now() + patience;
    auto nap = std::chrono::microseconds(50);
    while (!lockNow(descriptor)) {
        // File systems without locks have no second process that could wait either.
        if (errno != EWOULDBLOCK)
            return lock;
        if (std::chrono::steady_clock::now() >= deadline)
            return std::nullopt;
        std::this_thread::sleep_for(nap);
        nap = std::min(nap * 2, std::chrono::microseconds(2000));
    }
    return lock;
}

std::optional<FileLock> FileLock::lockFolderOf(const QString &path) {
    using namespace std::chrono_literals;
    const QString folder = QFileInfo(path).absolutePath();
    return QDir().mkpath(folder) ? lockFolder(folder, 10s) : std::nullopt;
}

std::optional<FileLock> FileLock::tryLockFile(const QString &path, const QByteArray &note) {
    const int descriptor = ::open(QFile::encodeName(path).constData(),
                                  O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, S_IRUSR | S_IWUSR);
    if (descriptor < 0)
        return std::nullopt;
    FileLock lock(descriptor);
    if (!lockNow(descriptor))
        return std::nullopt;
    // The note is a courtesy; the lock holds without it.
    if (::ftruncate(descriptor, 0) == 0)
        writeAll(descriptor, viewOf(note));
    return lock;
}

std::optional<QByteArray> FileLock::holderOf(const QString &path) {
    const int descriptor = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0)
        return std::nullopt;
    const FileLock own(descriptor);
    // A shared lock is enough to find out, and two askers do not see each other.
    if (::flock(descriptor, LOCK_SH | LOCK_NB) == 0 || errno != EWOULDBLOCK)
        return std::nullopt;
    return readWholeFile(path).value_or(QByteArray());
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

} // namespace kestrin::foundation
