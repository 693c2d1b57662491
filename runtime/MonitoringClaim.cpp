#include "runtime/MonitoringClaim.h"

#include <QCoreApplication>
#include <QDir>

#include <thread>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace kestrin::runtime {

using namespace foundation;

namespace {

QString lockPath(const QString &supportFolder) {
    return supportFolder + u"/monitor.lock"_s;
}

} // namespace

MonitoringClaim MonitoringClaim::make(const QString &supportFolder, const QString &program) {
    QDir().mkpath(supportFolder);
    const QString note = program + u", process "_s + QString::number(QCoreApplication::applicationPid());
    MonitoringClaim claim;
    // Who only asks for the holder is in the way for an instant, and is gone when one looks who it was.
    for (int attempt = 0; attempt < 5 && !claim.lock && !claim.holder; ++attempt) {
        if (attempt > 0)
            std::this_thread::sleep_for(10ms);
        claim.lock = FileLock::tryLockFile(lockPath(supportFolder), note.toUtf8());
        if (!claim.lock)
            claim.holder = currentHolder(supportFolder);
    }
    return claim;
}

std::optional<QString> MonitoringClaim::currentHolder(const QString &supportFolder) {
    const std::optional<QByteArray> note = FileLock::holderOf(lockPath(supportFolder));
    if (!note)
        return std::nullopt;
    return note->isEmpty() ? u"another program"_s : QString::fromUtf8(*note).trimmed();
}

} // namespace kestrin::runtime
