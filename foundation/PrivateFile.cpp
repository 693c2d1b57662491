#include "foundation/PrivateFile.h"

#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <utility>

namespace kestrin::foundation {

bool writeAll(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return false;
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

QString followedPath(const QString &path) {
    const QFileInfo info(path);
    return info.isSymLink() && info.isFile() ? info.canonicalFilePath() : path;
}

PrivateFileReplacement::PrivateFileReplacement(const QString &path,
                                               std::initializer_list<std::string_view> pieces)
    : m_target(QFile::encodeName(followedPath(path)))
    , m_temporary(m_target + ".new") {
    // One fixed name: the lock keeps others out, and what a killed process left behind is cleaned up by the
    // next write instead of piling up.
    ::unlink(m_temporary.constData());
    m_descriptor = ::open(m_temporary.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW,
                          S_IRUSR | S_IWUSR);
    if (m_descriptor < 0)
        return;
    for (const std::string_view piece : pieces) {
        if (writeAll(m_descriptor, piece))
            continue;
        ::close(std::exchange(m_descriptor, -1));
        ::unlink(m_temporary.constData());
        return;
    }
#ifdef SYNC_FILE_RANGE_WRITE
    // Only a beginning; whether the bytes have arrived is asked when they are committed.
    ::sync_file_range(m_descriptor, 0, 0, SYNC_FILE_RANGE_WRITE);
#endif
}

PrivateFileReplacement::~PrivateFileReplacement() {
    if (m_descriptor < 0)
        return;
    ::close(m_descriptor);
    ::unlink(m_temporary.constData());
}

bool PrivateFileReplacement::commit() {
    if (m_descriptor < 0 || ::fsync(m_descriptor) != 0)
        return false;
    const bool isClosed = ::close(std::exchange(m_descriptor, -1)) == 0;
    if (isClosed && ::rename(m_temporary.constData(), m_target.constData()) == 0)
        return true;
    ::unlink(m_temporary.constData());
    return false;
}

bool replacePrivateFile(const QString &path, std::initializer_list<std::string_view> pieces) {
    return PrivateFileReplacement(path, pieces).commit();
}

} // namespace kestrin::foundation
