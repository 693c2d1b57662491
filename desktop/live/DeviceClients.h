// Who may be the user of a device, and what clients claim of themselves.
#pragma once

#include <QString>

namespace kestrin::desktop {

/// Whether it is one of the servers that hand devices on (ServerProcess.h).
bool isDeviceServer(qint32 process);
/// Whether it is there, a process of this user, and no server of devices.
bool mayUseDevices(qint32 process);

/// The number in a text that a client wrote, which may be absent; 0 when it is none.
qint32 claimedProcess(const char *text);
/// A client's text, which may be absent, made harmless and short.
QString claimedName(const char *text);

} // namespace kestrin::desktop
