#include "foundation/FileStamp.h"

#include <sys/stat.h>

namespace kestrin::foundation {

FileStamp FileStamp::of(const QByteArray &path) {
    struct stat status {};
    return ::stat(path.constData(), &status) == 0 ? of(status) : FileStamp();
}

FileStamp FileStamp::of(const struct stat &status) {
#ifdef __APPLE__
    const timespec &modified = status.st_mtimespec;
#else
    const timespec &modified = status.st_mtim;
#endif
    return {static_cast<quint64>(status.st_dev), status.st_ino, status.st_size, modified.tv_sec,
            modified.tv_nsec};
}

} // namespace kestrin::foundation
