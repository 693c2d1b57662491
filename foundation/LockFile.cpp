#include "foundation/LockFile.h"

#include "foundation/FileSentences.h"
#include "foundation/Uninterrupted.h"

#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

using namespace Qt::StringLiterals;

namespace kestrin::foundation {

namespace {

QString belongsToAnother(const QString &path) {
    return path + u" belongs to another user; remove it."_s;
}

} // namespace

QString describeLockFile(const QString &path, int error) {
    if (const QString obstacle = describeObstacle(path); !obstacle.isEmpty())
        return obstacle;
    struct stat status {};
    const bool isOurs =
        ::lstat(QFile::encodeName(path).constData(), &status) != 0 || status.st_uid == ::geteuid();
    return error == EACCES && !isOurs ? belongsToAnother(path) : describeFailure(path, u"opened"_s, error);
}

int openLockFile(const QString &path, QString &problem) {
    const int descriptor = uninterrupted([name = QFile::encodeName(path)] {
        return ::open(name.constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY,
                      S_IRUSR | S_IWUSR);
    });
    struct stat status {};
    if (descriptor < 0 || ::fstat(descriptor, &status) != 0)
        problem = describeLockFile(path, errno);
    else if (!S_ISREG(status.st_mode))
        problem = describeLockFile(path, EEXIST);
    else if (status.st_uid != ::geteuid())
        problem = belongsToAnother(path);
    else if ((status.st_mode & (S_IRWXG | S_IRWXO)) != 0 && ::fchmod(descriptor, S_IRUSR | S_IWUSR) != 0)
        problem = describeLockFile(path, errno);
    if (!problem.isEmpty() && descriptor >= 0) {
        ::close(descriptor);
        return -1;
    }
    return descriptor;
}

bool isStillAt(const QString &path, int descriptor) {
    struct stat opened {};
    struct stat named {};
    return ::fstat(descriptor, &opened) == 0 && ::stat(QFile::encodeName(path).constData(), &named) == 0 &&
           opened.st_dev == named.st_dev && opened.st_ino == named.st_ino;
}

} // namespace kestrin::foundation
