#include "foundation/PrivateFile.h"

#include "foundation/FileSentences.h"
#include "foundation/PrivateFolder.h"
#include "foundation/Uninterrupted.h"

#include <QDateTime>
#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <utility>

using namespace Qt::StringLiterals;

namespace kestrin::foundation {

namespace {

struct Free {
    void operator()(char *text) const { std::free(text); }
};

/// Where a file is or may be made: where a symbolic link leads to, unless it leads nowhere. Empty, with
/// errno, when that cannot be told or something that is no file is there.
QByteArray followedPath(const QByteArray &path) {
    struct stat status {};
    if (::lstat(path.constData(), &status) != 0)
        return errno == ENOENT ? path : QByteArray();
    QByteArray target = path;
    if (S_ISLNK(status.st_mode)) {
        const std::unique_ptr<char, Free> end(::realpath(path.constData(), nullptr));
        if (!end || ::lstat(end.get(), &status) != 0)
            return errno == ENOENT ? path : QByteArray();
        target = end.get();
    }
    errno = EEXIST;
    return S_ISREG(status.st_mode) ? target : QByteArray();
}

/// Opens a new file of this name. A file that a killed process left there makes way; nothing else does.
int openTemporary(const QByteArray &path) {
    const auto open = [&] {
        return uninterrupted([&] {
            return ::open(path.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW,
                          S_IRUSR | S_IWUSR);
        });
    };
    const int descriptor = open();
    struct stat status {};
    if (descriptor >= 0 || errno != EEXIST || ::lstat(path.constData(), &status) != 0)
        return descriptor;
    if (S_ISREG(status.st_mode))
        return ::unlink(path.constData()) == 0 ? open() : -1;
    errno = EEXIST;
    return -1;
}

/// A name beside the file that nobody has. The lock keeps others from taking it meanwhile.
QByteArray freeNameBeside(const QByteArray &path) {
    const QByteArray now = QDateTime::currentDateTime().toString(u"yyyy-MM-ddTHH-mm-ss"_s).toLatin1();
    const QByteArray name = path + ".damaged-" + now;
    struct stat status {};
    for (int number = 1; number < 100; ++number) {
        QByteArray candidate = number == 1 ? name : name + '-' + QByteArray::number(number);
        if (::lstat(candidate.constData(), &status) != 0)
            return errno == ENOENT ? candidate : QByteArray();
    }
    errno = EEXIST;
    return {};
}

} // namespace

bool writeAll(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written =
            uninterrupted([&] { return ::write(descriptor, bytes.data(), bytes.size()); });
        if (written <= 0)
            return false;
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

PrivateFileReplacement::PrivateFileReplacement(const QString &path,
                                               std::initializer_list<std::string_view> pieces,
                                               const QByteArray &suffix)
    : m_path(path)
    , m_target(followedPath(QFile::encodeName(path)))
    , m_temporary(m_target + suffix) {
    if (m_target.isEmpty()) {
        fail();
        return;
    }
    m_folder = uninterrupted(
        [&] { return ::open(folderOf(m_target).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); });
    if (m_folder < 0) {
        fail();
        return;
    }
    // One fixed name: the lock keeps others out, and what a killed process left behind is cleaned up by the
    // next write instead of piling up.
    m_descriptor = openTemporary(m_temporary);
    if (m_descriptor < 0) {
        fail();
        m_obstacle = describeObstacle(QFile::decodeName(m_temporary));
        return;
    }
    for (const std::string_view piece : pieces) {
        if (!writeAll(m_descriptor, piece)) {
            fail();
            return;
        }
    }
#ifdef SYNC_FILE_RANGE_WRITE
    // Only a beginning; whether the bytes have arrived is asked when they are committed.
    ::sync_file_range(m_descriptor, 0, 0, SYNC_FILE_RANGE_WRITE);
#endif
}

PrivateFileReplacement::~PrivateFileReplacement() {
    fail();
    if (m_folder >= 0)
        ::close(m_folder);
}

/// Takes back what is not in its place yet.
void PrivateFileReplacement::fail() {
    m_error = errno;
    if (m_descriptor < 0)
        return;
    ::close(std::exchange(m_descriptor, -1));
    ::unlink(m_temporary.constData());
}

bool PrivateFileReplacement::sync() {
    if (m_descriptor >= 0 && uninterrupted([this] { return ::fsync(m_descriptor); }) != 0)
        fail();
    return m_descriptor >= 0;
}

bool PrivateFileReplacement::moveIn() {
    if (::rename(m_temporary.constData(), m_target.constData()) != 0) {
        fail();
        return false;
    }
    // The bytes are on the disk, so closing can tell nothing new.
    ::close(std::exchange(m_descriptor, -1));
    if (syncFolder(m_folder))
        return true;
    m_error = errno;
    return false;
}

/// Gives the old one a second name, since it keeps its own until the new one takes it. Where that is not
/// possible (FAT has no second names, and nobody may give one to a file of somebody else) it moves.
bool PrivateFileReplacement::keepOldAside() {
    m_aside = freeNameBeside(m_target);
    if (!m_aside.isEmpty() && ::link(m_target.constData(), m_aside.constData()) == 0)
        return true;
    const bool mayMove = errno == EPERM || errno == EOPNOTSUPP || errno == ENOSYS;
    if (!m_aside.isEmpty() && mayMove && ::rename(m_target.constData(), m_aside.constData()) == 0)
        return true;
    fail();
    m_aside.clear();
    return false;
}

/// Unless the new one is in its place already.
void PrivateFileReplacement::takeBackAside() {
    const quint64 aside = FileStamp::of(m_aside).inode;
    const quint64 target = FileStamp::of(m_target).inode;
    const bool isBack = target == aside
                            ? ::unlink(m_aside.constData()) == 0
                            : target == 0 && ::rename(m_aside.constData(), m_target.constData()) == 0;
    if (isBack)
        m_aside.clear();
}

bool PrivateFileReplacement::commit() {
    return sync() && moveIn();
}

bool PrivateFileReplacement::commitBesideOld() {
    if (!sync() || !keepOldAside())
        return false;
    if (moveIn())
        return true;
    takeBackAside();
    return false;
}

QString PrivateFileReplacement::problem() const {
    return m_obstacle.isEmpty() ? describeFailure(m_path, u"written"_s, m_error) : m_obstacle;
}

QString PrivateFileReplacement::keptOld() const {
    return QFile::decodeName(m_aside);
}

bool replacePrivateFile(const QString &path, std::initializer_list<std::string_view> pieces) {
    return PrivateFileReplacement(path, pieces).commit();
}

} // namespace kestrin::foundation
