// What is told of a Wayland session in which only X11 can be asked.
#pragma once

#include "engine/workspace/Sight.h"

namespace kestrin::desktop {

/// `isSilent`: the desktop did not answer in time, so that it is not known what it would tell.
engine::Sight sightOfX11InWayland(const engine::Sight &x11, bool isSilent);

} // namespace kestrin::desktop
