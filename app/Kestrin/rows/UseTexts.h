// What people read of who uses microphone, camera and screen. Whatever an application is called and however
// many there are, it is no longer than somebody reads.
#pragma once

#include "engine/live/DeviceUse.h"

#include <QStringList>

namespace kestrin::app {

/// The same use as it is shown: its application's name visible and not too long.
engine::DeviceUse shownUse(const engine::DeviceUse &use);

/// "Zoom: microphone, camera": a line for each application, however many of its processes use something, in
/// the order in which they began. The last one may say how many more there are.
QStringList useLines(const QList<engine::DeviceUse> &uses);

/// "Zoom uses the microphone and the camera. Firefox uses the microphone."
QString useSentences(const QList<engine::DeviceUse> &uses);

/// The symbol of what tells most of these: the camera, then the microphone.
QString useSymbol(const QList<engine::DeviceUse> &uses);

} // namespace kestrin::app
