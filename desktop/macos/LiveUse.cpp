#include "desktop/Platform.h"

#include "engine/live/InMemoryDeviceUses.h"

namespace kestrin::desktop {

using namespace engine;

std::unique_ptr<DeviceUses> makeDeviceUses(Workspace &) {
    auto nothing = std::make_unique<InMemoryDeviceUses>();
    nothing->setSight(
        {Sight::Extent::none,
         QStringLiteral("Kestrin cannot tell on a Mac who uses microphone, camera or screen; the "
                        "menu bar shows it."),
         {},
         {}});
    return nothing;
}

} // namespace kestrin::desktop
