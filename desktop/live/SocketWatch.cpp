#include "desktop/live/SocketWatch.h"

#include <QFile>
#include <QFileInfo>

#include <utility>

using namespace std::chrono_literals;

namespace kestrin::desktop {

using namespace foundation;

SocketWatch::SocketWatch(const QByteArray &path) : m_path(path), m_known(FileStamp::of(path)) {
    // A server makes its socket a moment before it listens there.
    m_ready.setSingleShot(true);
    m_ready.setInterval(100ms);
    connect(&m_ready, &QTimer::timeout, this, &SocketWatch::appeared);
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, &SocketWatch::look);
    look();
}

void SocketWatch::look() {
    const QString folder = QFileInfo(QFile::decodeName(m_path)).path();
    for (const QString &watched : {folder, QFileInfo(folder).path()}) {
        if (!QFileInfo(watched).isReadable())
            continue;
        m_watcher.addPath(watched);
        break;
    }
    const FileStamp now = FileStamp::of(m_path);
    if (std::exchange(m_known, now) != now && now != FileStamp())
        m_ready.start();
}

} // namespace kestrin::desktop
