#pragma once

#include <QByteArray>

namespace kestrin::desktop {

/// Where the system tells of devices, and of the processes that have them open. Tests have folders of their
/// own.
struct DevicePlaces {
    QByteArray devices = "/dev";
    QByteArray processes = "/proc";
    /// What the kernel and udev have noted about each camera when it came.
    QByteArray cameras = "/sys/class/video4linux";
    QByteArray udev = "/run/udev/data";
};

} // namespace kestrin::desktop
