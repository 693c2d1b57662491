#include "desktop/live/DeviceKind.h"

#include "foundation/FileReading.h"

#include <QList>

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace kestrin::desktop {

using namespace foundation;

namespace {

bool areDigits(QByteArrayView text) {
    return !text.isEmpty() &&
           std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

/// "pcmC1D0c"; those of playback end in p.
bool isRecorder(QByteArrayView name) {
    if (!name.startsWith("pcmC") || !name.endsWith('c'))
        return false;
    const QByteArrayView numbers = name.sliced(4).chopped(1);
    const qsizetype separator = numbers.indexOf('D');
    return separator > 0 && areDigits(numbers.first(separator)) && areDigits(numbers.sliced(separator + 1));
}

/// No device of a bus has made it, but a driver out of nothing.
bool isVirtual(const QByteArray &camera) {
    std::error_code error;
    const std::string target = std::filesystem::read_symlink(camera.toStdString(), error).native();
    return target.find("/devices/virtual/") != std::string::npos;
}

/// Such as ":capture:", of what udev asked the device when it came; empty when it has not.
QByteArray capabilities(const QByteArray &camera, const QByteArray &udev) {
    static const QByteArray key = "E:ID_V4L_CAPABILITIES=";
    const QByteArray number = fileHead(camera + "/dev").trimmed();
    const QList<QByteArray> lines = fileHead(udev + "/c" + number, 65536).split('\n');
    const auto line = std::find_if(lines.cbegin(), lines.cend(),
                                   [](const QByteArray &text) { return text.startsWith(key); });
    return line == lines.cend() ? QByteArray() : line->sliced(key.size()).trimmed();
}

} // namespace

DeviceKind kindByName(QByteArrayView name) {
    if (name.startsWith("video") && areDigits(name.sliced(5)))
        return DeviceKind::camera;
    return name.startsWith("snd/") && isRecorder(name.sliced(4)) ? DeviceKind::microphone : DeviceKind::other;
}

DeviceKind kindOfDevice(const QByteArray &name, const DevicePlaces &places) {
    const DeviceKind kind = kindByName(name);
    if (kind != DeviceKind::camera)
        return kind;
    const QByteArray camera = places.cameras + '/' + name;
    // It may have been an output when it came, and becomes a camera when somebody writes.
    if (isVirtual(camera))
        return DeviceKind::virtualCamera;
    const QByteArray can = capabilities(camera, places.udev);
    // Metadata is no picture, and what takes pictures and gives them back is a codec.
    const bool isCamera = can.isEmpty() || (can.contains(":capture:") && !can.contains(":video_output:"));
    return isCamera ? DeviceKind::camera : DeviceKind::other;
}

} // namespace kestrin::desktop
