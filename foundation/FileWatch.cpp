#include "foundation/FileWatch.h"

#include "foundation/PrivateFolder.h"

#include <QFile>
#include <QFileInfo>

#include <utility>

namespace kestrin::foundation {

namespace {

/// Those that everybody may write into, as /tmp, change all day, and the kernel takes milliseconds to watch
/// one through which many files have gone. Nobody keeps what is watched right in them for long.
bool canBeMovedFrom(const QFileInfo &folder) {
    return folder.isWritable() && !folder.permission(QFile::WriteOther);
}

} // namespace

FileWatch::FileWatch(const QString &path, QObject *parent) : QObject(parent), m_path(path) {
    // Files are replaced, not written in place, so it is the folder whose entries change. The file itself is
    // watched too, for editors that do write in place.
    adopt();
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, &FileWatch::compare);
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, this, &FileWatch::compare);
}

/// Once or again: the watcher forgets what was removed, and stays with what was moved away and with the old
/// target of a link that leads elsewhere now.
void FileWatch::watch(const QString &path) {
    const quint64 inode = FileStamp::of(QFile::encodeName(path)).inode;
    if (std::exchange(m_inodes[path], inode) != inode)
        m_watcher.removePath(path);
    // It complains about what it cannot watch, but not about what it watches already.
    if (QFileInfo(path).isReadable())
        m_watcher.addPath(path);
}

void FileWatch::watchFolders() {
    QString folder = QFileInfo(m_path).absolutePath();
    if (makePrivateFolder(QFile::encodeName(folder)))
        watch(folder);
    for (;;) {
        const QFileInfo above(QFileInfo(folder).path());
        if (above.filePath() == folder || !canBeMovedFrom(above))
            break;
        folder = above.filePath();
        watch(folder);
    }
}

/// Takes the file's present state for the known one. Returns whether it is another one.
bool FileWatch::adopt() {
    watchFolders();
    watch(m_path);
    const FileStamp now = FileStamp::of(QFile::encodeName(m_path));
    return std::exchange(m_known, now) != now;
}

void FileWatch::compare() {
    if (adopt())
        Q_EMIT changed();
}

} // namespace kestrin::foundation
