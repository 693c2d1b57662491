#include "foundation/FileWatch.h"

#include "foundation/PrivateFolder.h"

#include <QFile>
#include <QFileInfo>

#include <utility>

namespace kestrin::foundation {

FileWatch::FileWatch(const QString &path, QObject *parent) : QObject(parent), m_path(path) {
    // Files are replaced, not written in place, so it is the folder whose entries change. The file itself is
    // watched too, for editors that do write in place.
    watchFolder();
    m_watcher.addPath(path);
    m_known = FileStamp::of(QFile::encodeName(path));
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, &FileWatch::compare);
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, this, &FileWatch::compare);
}

void FileWatch::watchFolder() {
    const QString folder = QFileInfo(m_path).absolutePath();
    // The watcher forgets one that was removed.
    if (!m_watcher.directories().contains(folder) && makePrivateFolder(QFile::encodeName(folder)))
        m_watcher.addPath(folder);
}

/// Takes the file's present state for the known one. Returns whether it is another one.
bool FileWatch::adopt() {
    watchFolder();
    const FileStamp now = FileStamp::of(QFile::encodeName(m_path));
    // The watcher does not see another inode: it has lost a replaced file, and stays with the old target of a
    // link that leads elsewhere now.
    if (now.inode != m_known.inode)
        m_watcher.removePath(m_path);
    if (!m_watcher.files().contains(m_path))
        m_watcher.addPath(m_path);
    return std::exchange(m_known, now) != now;
}

void FileWatch::compare() {
    if (adopt())
        Q_EMIT changed();
}

} // namespace kestrin::foundation
