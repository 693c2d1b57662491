#include "foundation/PrivateFolder.h"

#include "foundation/Uninterrupted.h"

#include <QFile>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <string_view>

namespace kestrin::foundation {

namespace {

constexpr mode_t forOthers = S_IRWXG | S_IRWXO;

/// How the names begin of what Kestrin stores, of new files and of those that were set aside.
constexpr std::string_view namesOfOurs[] = {"activity-log.json", "privacy-mode-settings.json",
                                            "user-defaults.json", "monitor.lock", "store.lock"};

struct CloseFolder {
    void operator()(DIR *folder) const { ::closedir(folder); }
};

std::unique_ptr<DIR, CloseFolder> openFolder(const QByteArray &path) {
    const int descriptor = ::open(path.constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    std::unique_ptr<DIR, CloseFolder> folder(descriptor < 0 ? nullptr : ::fdopendir(descriptor));
    if (!folder && descriptor >= 0)
        ::close(descriptor);
    return folder;
}

bool isNameOfOurs(std::string_view name) {
    return std::ranges::any_of(namesOfOurs, [&](std::string_view ours) { return name.starts_with(ours); });
}

bool isOpenToOthers(const struct stat &status) {
    return status.st_uid == ::geteuid() && (status.st_mode & forOthers) != 0;
}

/// What else a mode tells stays.
mode_t closedMode(const struct stat &status) {
    return status.st_mode & ~(S_IFMT | forOthers);
}

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
    const auto opened = openFolder(QFile::encodeName(folder));
    if (!opened)
        return;
    const int descriptor = ::dirfd(opened.get());
    struct stat status {};
    if (descriptor < 0 || ::fstat(descriptor, &status) != 0 || status.st_uid != ::geteuid())
        return;
    if (isOpenToOthers(status))
        ::fchmod(descriptor, closedMode(status));
    while (const dirent *const entry = ::readdir(opened.get())) {
        if (!isNameOfOurs(entry->d_name) ||
            ::fstatat(descriptor, entry->d_name, &status, AT_SYMLINK_NOFOLLOW) != 0)
            continue;
        // One that does not let itself be closed is closed when it is written next.
        if (S_ISREG(status.st_mode) && isOpenToOthers(status)) [[maybe_unused]]
            const int ignored =
                ::fchmodat(descriptor, entry->d_name, closedMode(status), AT_SYMLINK_NOFOLLOW);
    }
}

} // namespace kestrin::foundation
