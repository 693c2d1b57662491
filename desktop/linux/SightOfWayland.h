// What is told of a session in which only X11 can be asked.
#pragma once

#include "engine/workspace/Sight.h"

namespace kestrin::desktop {

engine::Sight sightOfX11InWayland(const engine::Sight &x11);
/// Whatever else there is does not answer.
engine::Sight sightOfX11InSilence(const engine::Sight &x11);

} // namespace kestrin::desktop
