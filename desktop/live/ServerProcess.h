#pragma once

#include "desktop/applications/ProcessIdentity.h"

namespace kestrin::desktop {

/// Whether it is one of the servers that hand microphone, camera and screen on to others. They have devices
/// open and use none themselves. Only what the system has installed is one, wherever it is called the same.
bool isServerProcess(const ProcessIdentity &process);

} // namespace kestrin::desktop
