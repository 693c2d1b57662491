#include "desktop/applications/ProcessIdentity.h"

#include "foundation/FileReading.h"

#include <QFile>
#include <QRegularExpression>

#include <unistd.h>

#include <ctime>
#include <filesystem>
#include <system_error>

using namespace Qt::StringLiterals;

namespace kestrin::desktop {

using namespace foundation;

namespace {

QByteArray linkTarget(const QByteArray &path) {
    std::error_code error;
    return QByteArray::fromStdString(std::filesystem::read_symlink(path.constData(), error).native());
}

QString sandboxIdOf(const QByteArray &process, const QByteArray &ownProcess, const QByteArray &executable) {
    // Looking further costs more than all the rest, and both kinds of sandbox have their own view of the file
    // system; only those Snaps that ask for none have not.
    const bool isApart = linkTarget(process + "/ns/mnt") != linkTarget(ownProcess + "/ns/mnt");
    if (!isApart && !executable.startsWith("/snap/"))
        return {};
    if (const QByteArray info = fileHead(process + "/root/.flatpak-info"); !info.isEmpty())
        return flatpakIdOfInfo(info);
    const QString id = snapIdOfSecurityLabel(fileHead(process + "/attr/current"));
    return id.isEmpty() ? snapIdOfControlGroup(fileHead(process + "/cgroup")) : id;
}

/// Counted from 1, as in proc(5); behind the second.
QByteArray statusField(qint32 process, qsizetype number, const QByteArray &procFolder = "/proc") {
    const QByteArray status = fileHead(procFolder + '/' + QByteArray::number(process) + "/stat");
    // The second field is the program's name in brackets, which may hold any of both.
    return status.sliced(status.lastIndexOf(')') + 1).split(' ').value(number - 2);
}

/// "snap.NAME.APP" as "NAME_APP".
QString snapId(QByteArrayView tag) {
    const QList<QByteArray> parts = tag.toByteArray().split('.');
    if (parts.size() != 3 || parts[0] != "snap" || parts[1].isEmpty() || parts[2].isEmpty())
        return {};
    return QString::fromUtf8(parts[1] + '_' + parts[2]);
}

} // namespace

ProcessIdentity ProcessIdentity::of(qint32 processIdentifier, const QByteArray &procFolder) {
    const QByteArray process = procFolder + '/' + QByteArray::number(processIdentifier);
    QByteArray executable = linkTarget(process + "/exe");
    // An update replaced the file while the program was running.
    if (executable.endsWith(" (deleted)"))
        executable.chop(10);
    ProcessIdentity identity;
    if (executable.startsWith('/'))
        identity.executablePath = QFile::decodeName(executable);
    identity.sandboxId = sandboxIdOf(process, procFolder + "/self", executable);
    return identity;
}

QString ProcessIdentity::executableName() const {
    return executablePath ? executablePath->sliced(executablePath->lastIndexOf(u'/') + 1) : QString();
}

bool ProcessIdentity::forwardsWindows() const {
    const QString name = executableName();
    return name == "ssh"_L1 || name == "dbclient"_L1 || name == "plink"_L1;
}

quint64 startOfProcess(qint32 processIdentifier) {
    return statusField(processIdentifier, 22).toULongLong();
}

qint32 parentOfProcess(qint32 processIdentifier, const QByteArray &procFolder) {
    return statusField(processIdentifier, 4, procFolder).toInt();
}

quint64 ticksNow() {
    static const auto ticksASecond = static_cast<quint64>(::sysconf(_SC_CLK_TCK));
    timespec now{};
    ::clock_gettime(CLOCK_BOOTTIME, &now);
    return static_cast<quint64>(now.tv_sec) * ticksASecond +
           static_cast<quint64>(now.tv_nsec) * ticksASecond / 1'000'000'000;
}

QString flatpakIdOfInfo(const QByteArray &info) {
    bool inside = false;
    const QList<QByteArray> lines = info.split('\n');
    for (const QByteArray &line : lines) {
        if (line.startsWith('['))
            inside = line.trimmed() == "[Application]";
        else if (inside && line.startsWith("name="))
            return QString::fromUtf8(line.sliced(5).trimmed());
    }
    return {};
}

QString snapIdOfSecurityLabel(QByteArrayView label) {
    const qsizetype end = label.indexOf(' ');
    return snapId((end < 0 ? label : label.first(end)).trimmed());
}

QString snapIdOfControlGroup(QByteArrayView text) {
    // ".../snap.NAME.APP-UUID.scope"; older versions put a dot before the UUID.
    static const QRegularExpression pattern(
        u"/(snap\\.[^./\\n]+\\.[^./\\n]+?)[-.][0-9a-f]{8}(?:-[0-9a-f]{4}){3}-[0-9a-f]{12}\\.scope(?:\\n|$)"_s);
    const QRegularExpressionMatch match = pattern.match(QString::fromUtf8(text));
    return match.hasMatch() ? snapId(match.captured(1).toUtf8()) : QString();
}

} // namespace kestrin::desktop
