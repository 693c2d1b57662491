#include "desktop/Platform.h"

#include "desktop/linux/SightOfScreen.h"
#include "desktop/live/DesktopDeviceUses.h"
#include "desktop/live/DeviceFileUses.h"
#include "desktop/live/PipeWireUses.h"
#include "desktop/live/PulseUses.h"

namespace kestrin::desktop {

using namespace engine;

std::unique_ptr<DeviceUses> makeDeviceUses(Workspace &workspace) {
    std::vector<std::unique_ptr<UseSource>> sources;
    sources.push_back(std::make_unique<PipeWireUses>());
    sources.push_back(std::make_unique<PulseUses>());
    sources.push_back(std::make_unique<DeviceFileUses>());
    return std::make_unique<DesktopDeviceUses>(std::move(sources), workspace, unseenReadersOfScreen());
}

} // namespace kestrin::desktop
