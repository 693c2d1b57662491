#include "desktop/live/DeviceClients.h"

#include "desktop/applications/ProcessIdentity.h"
#include "foundation/FileReading.h"
#include "foundation/VisibleText.h"

#include <QFile>

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace kestrin::desktop {

using namespace foundation;

namespace {

constexpr std::array serverNames{"pipewire"_L1, "pipewire-pulse"_L1, "pipewire-media-session"_L1,
                                 "wireplumber"_L1, "pulseaudio"_L1};

bool isOwnersOwn(const QString &path) {
    struct stat status {};
    return ::getuid() != 0 && ::stat(QFile::encodeName(path).constData(), &status) == 0 &&
           status.st_uid == ::getuid();
}

bool isOfThisUser(qint32 process) {
    const QByteArray status = fileHead("/proc/" + QByteArray::number(process) + "/status");
    const qsizetype line = status.indexOf("\nUid:\t");
    if (line < 0)
        return false;
    const QByteArray real = status.sliced(line + 6).split('\t').constFirst();
    return real == QByteArray::number(::getuid());
}

} // namespace

bool isDeviceServer(qint32 process) {
    const ProcessIdentity identity = ProcessIdentity::of(process);
    const QString name = identity.executableName();
    const bool isNamedSo = std::find(serverNames.begin(), serverNames.end(), name) != serverNames.end() ||
                           name.startsWith("xdg-desktop-portal"_L1);
    return isNamedSo && !isOwnersOwn(identity.executablePath.value_or(QString()));
}

bool mayUseDevices(qint32 process) {
    return process > 0 && isOfThisUser(process) && !isDeviceServer(process);
}

qint32 claimedProcess(const char *text) {
    bool isNumber = false;
    const int process = QByteArrayView(text).toInt(&isNumber);
    return isNumber && process > 0 ? process : 0;
}

QString claimedName(const char *text) {
    constexpr qsizetype longest = 100;
    const QByteArrayView bytes(text, static_cast<qsizetype>(qstrnlen(text, 4 * longest)));
    return visibleText(QString::fromUtf8(bytes).left(longest)).trimmed();
}

} // namespace kestrin::desktop
