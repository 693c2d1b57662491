// Hearing that a server that was away is there again.
#pragma once

#include "foundation/FileStamp.h"

#include <QByteArray>
#include <QFileSystemWatcher>
#include <QObject>
#include <QTimer>

namespace kestrin::desktop {

/// Tells when another socket is at a path than was when it began to watch, without polling. What has to be
/// watched are the folder and, as long as that is missing, the one above it. Main thread only.
class SocketWatch : public QObject {
    Q_OBJECT

  public:
    explicit SocketWatch(const QByteArray &path);

  Q_SIGNALS:
    void appeared();

  private:
    void look();

    QByteArray m_path;
    foundation::FileStamp m_known;
    QFileSystemWatcher m_watcher;
    QTimer m_ready;
};

} // namespace kestrin::desktop
