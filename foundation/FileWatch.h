// Hearing that a file became another one.
#pragma once

#include "foundation/FileStamp.h"

#include <QFileSystemWatcher>
#include <QHash>
#include <QObject>

namespace kestrin::foundation {

/// Tells when the file at a path is created, replaced, changed or removed, by whichever process, this one
/// included, without polling; of a link, when it leads to another file. The file's folder is watched, and
/// made when it is missing, also later. So are the folders above it that this user can move, because it goes
/// with them, up to one that is open to everybody. Several changes may be told as one. Main thread only.
class FileWatch : public QObject {
    Q_OBJECT

  public:
    explicit FileWatch(const QString &path, QObject *parent = nullptr);

    /// What has changed by now is not told any more. For an owner who is about to read the file.
    void acknowledge() { adopt(); }

  Q_SIGNALS:
    void changed();

  private:
    void watch(const QString &path);
    void watchFolders();
    bool adopt();
    void compare();

    QString m_path;
    QFileSystemWatcher m_watcher;
    /// What was at the watched paths.
    QHash<QString, quint64> m_inodes;
    FileStamp m_known;
};

} // namespace kestrin::foundation
