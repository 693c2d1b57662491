// What is told of a Wayland session in which only X11 can be asked.
#pragma once

#include "engine/workspace/Sight.h"

namespace kestrin::desktop {

engine::Sight sightOfX11InWayland(const engine::Sight &x11);

} // namespace kestrin::desktop
