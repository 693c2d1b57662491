// Who has a device file open.
#pragma once

#include <QByteArray>
#include <QList>
#include <QSet>

#include <optional>

namespace kestrin::foundation {
class Deadline;
}

namespace kestrin::desktop {

struct DeviceHolder {
    qint32 process = 0;
    /// The path of the device.
    QByteArray device;
    bool canRead = false;
    bool canWrite = false;

    bool operator==(const DeviceHolder &) const = default;
};

/// All processes of this user that have one of these files open, a process and device once. Processes that
/// may not be looked at are left out. None when there are too many to look at by the deadline.
std::optional<QList<DeviceHolder>> holdersOfDevices(const QSet<QByteArray> &devices,
                                                    const QByteArray &procFolder,
                                                    const foundation::Deadline &deadline);

/// Whether a process has the contents of this file in its memory, as those have who take pictures.
bool hasMapped(qint32 process, const QByteArray &device, const QByteArray &procFolder);

} // namespace kestrin::desktop
