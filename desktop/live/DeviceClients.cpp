#include "desktop/live/DeviceClients.h"

#include "desktop/live/ServerProcess.h"
#include "foundation/FileReading.h"
#include "foundation/VisibleText.h"

#include <QList>

#include <unistd.h>

namespace kestrin::desktop {

using namespace foundation;

namespace {

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
    return isServerProcess(ProcessIdentity::of(process));
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
