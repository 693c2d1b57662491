#include "foundation/FileWatch.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>

namespace kestrin::foundation {

FileWatch::FileWatch(const QString &path, QObject *parent) : QObject(parent), m_path(path) {
    // Files are replaced, not written in place, so it is the folder whose entries change. The file itself is
    // watched too, for editors that do write in place.
    const QString folder = QFileInfo(path).absolutePath();
    QDir().mkpath(folder);
    m_watcher.addPath(folder);
    m_watcher.addPath(path);
    m_known = currentStamp();
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, &FileWatch::compare);
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, this, &FileWatch::compare);
}

FileWatch::Stamp FileWatch::currentStamp() const {
    struct stat status {};
    if (::stat(QFile::encodeName(m_path).constData(), &status) != 0)
        return {};
#ifdef __APPLE__
    const timespec &modified = status.st_mtimespec;
#else
    const timespec &modified = status.st_mtim;
#endif
    return {status.st_ino, status.st_size, modified.tv_sec, modified.tv_nsec};
}

void FileWatch::compare() {
    const Stamp now = currentStamp();
    // The watcher does not see another inode: it has lost a replaced file, and stays with the old target of a
    // link that leads elsewhere now.
    if (now.inode != m_known.inode)
        m_watcher.removePath(m_path);
    if (!m_watcher.files().contains(m_path))
        m_watcher.addPath(m_path);
    if (now == m_known)
        return;
    m_known = now;
    Q_EMIT changed();
}

} // namespace kestrin::foundation
