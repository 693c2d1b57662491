#include "desktop/wayland/FlatpakInstances.h"

#include "desktop/applications/ProcessIdentity.h"
#include "foundation/FileReading.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace kestrin::desktop {

using namespace foundation;

namespace {

constexpr qsizetype maximumInstances = 200;

QByteArray contentOf(const QString &path) {
    return fileHead(QFile::encodeName(path), 64 * 1024);
}

} // namespace

QList<FlatpakInstance> runningFlatpaks(const QByteArray &runtimeFolder, const QByteArray &procFolder) {
    QList<FlatpakInstance> instances;
    if (!runtimeFolder.startsWith('/'))
        return instances;
    const QDir folder(QFile::decodeName(runtimeFolder) + u"/.flatpak"_s);
    const QStringList names = folder.entryList(QDir::Dirs | QDir::NoDotAndDotDot).mid(0, maximumInstances);
    for (const QString &name : names) {
        const QString id = flatpakIdOfInfo(contentOf(folder.filePath(name + u"/info"_s)));
        const QJsonObject sandbox =
            QJsonDocument::fromJson(contentOf(folder.filePath(name + u"/bwrapinfo.json"_s))).object();
        const qint32 process = sandbox.value("child-pid"_L1).toInt();
        // What is noted may be left over, and the number another process's by now.
        if (!id.isEmpty() && process > 0 && ProcessIdentity::of(process, procFolder).sandboxId == id)
            instances.append({id, process});
    }
    return instances;
}

} // namespace kestrin::desktop
