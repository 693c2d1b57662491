// What the system tells about the process behind a window.
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace kestrin::desktop {

/// Absent is what cannot be read, as is usual for processes of other users.
struct ProcessIdentity {
    std::optional<QString> executablePath;
    /// The desktop-file id under which Flatpak or Snap has installed the application; empty for others.
    QString sandboxId;

    static ProcessIdentity of(qint32 processIdentifier, const QByteArray &procFolder = "/proc");

    /// The last part of the executable's path; empty when that is absent.
    QString executableName() const;
    /// Whether the process only hands windows of other machines on, so that its windows are not its own.
    bool forwardsWindows() const;
};

/// When the process began, in the system's own ticks since it was started; 0 when there is none. Tells it
/// apart from a later one with the same number.
quint64 startOfProcess(qint32 processIdentifier);
/// 0 when there is none.
qint32 parentOfProcess(qint32 processIdentifier, const QByteArray &procFolder = "/proc");
/// The present in the same ticks.
quint64 ticksNow();

/// The desktop-file id of a Flatpak application from the file that describes each sandbox, in the sandbox and
/// outside; empty when it is none.
QString flatpakIdOfInfo(const QByteArray &info);
/// The desktop-file id of a Snap application from its security label, such as "snap.NAME.APP (enforce)";
/// empty when it is none.
QString snapIdOfSecurityLabel(QByteArrayView label);
/// The same from the text of /proc/PID/cgroup.
QString snapIdOfControlGroup(QByteArrayView text);

} // namespace kestrin::desktop
