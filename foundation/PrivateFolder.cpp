#include "foundation/PrivateFolder.h"

#include "foundation/Uninterrupted.h"

#include <QFile>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <memory>

namespace kestrin::foundation {

namespace {

constexpr mode_t forOthers = S_IRWXG | S_IRWXO;

struct CloseFolder {
    void operator()(DIR *folder) const { ::closedir(folder); }
};

bool makeOne(const QByteArray &path) {
    if (::mkdir(path.constData(), S_IRWXU) == 0) {
        const int parent = ::open(folderOf(path).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        // Without this the files in it could be lost with it. The folder itself is there in any case.
        if (parent >= 0) {
            syncFolder(parent);
            ::close(parent);
        }
        return true;
    }
    struct stat status {};
    if (errno != EEXIST || ::stat(path.constData(), &status) != 0)
        return false;
    errno = ENOTDIR;
    return S_ISDIR(status.st_mode);
}

} // namespace

QByteArray folderOf(const QByteArray &path) {
    const qsizetype slash = path.lastIndexOf('/');
    if (slash < 0)
        return ".";
    return slash == 0 ? QByteArray("/") : path.first(slash);
}

bool syncFolder(int descriptor) {
    return uninterrupted([&] { return ::fsync(descriptor); }) == 0 || errno == EINVAL || errno == ENOTSUP;
}

bool makePrivateFolder(const QByteArray &path) {
    if (makeOne(path))
        return true;
    if (errno != ENOENT)
        return false;
    for (qsizetype slash = path.indexOf('/', 1); slash > 0; slash = path.indexOf('/', slash + 1)) {
        if (!makeOne(path.first(slash)))
            return false;
    }
    return makeOne(path);
}

void closeToOthers(const QString &folder) {
    const std::unique_ptr<DIR, CloseFolder> opened(::opendir(QFile::encodeName(folder).constData()));
    if (!opened)
        return;
    const int descriptor = ::dirfd(opened.get());
    struct stat status {};
    if (::fstat(descriptor, &status) != 0 || status.st_uid != ::geteuid())
        return;
    if ((status.st_mode & forOthers) != 0)
        ::fchmod(descriptor, status.st_mode & S_IRWXU);
    while (const dirent *const entry = ::readdir(opened.get())) {
        const bool isOpen = ::fstatat(descriptor, entry->d_name, &status, AT_SYMLINK_NOFOLLOW) == 0 &&
                            S_ISREG(status.st_mode) && (status.st_mode & forOthers) != 0;
        if (!isOpen || status.st_uid != ::geteuid())
            continue;
        // One that does not let itself be closed is closed when it is written next.
        [[maybe_unused]] const int ignored =
            ::fchmodat(descriptor, entry->d_name, status.st_mode & S_IRWXU, 0);
    }
}

} // namespace kestrin::foundation
