// Which device files record.
#pragma once

#include "desktop/live/DevicePlaces.h"

#include <QByteArrayView>

namespace kestrin::desktop {

enum class DeviceKind {
    other,
    camera,
    virtualCamera, ///< shows what another program writes into it
    microphone,
};

/// By the name within the device folder alone ("video0", "snd/pcmC0D0c"), what it may be; never a virtual
/// camera.
DeviceKind kindByName(QByteArrayView name);

/// What it is, without opening it: some cameras light their lamp, and some take a second, when they are
/// opened. What nobody has noted anything about is what its name says.
DeviceKind kindOfDevice(const QByteArray &name, const DevicePlaces &places);

} // namespace kestrin::desktop
