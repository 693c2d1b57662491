#pragma once

#include "app/Kestrin/pages/MacProtectionState.h"
#include "runtime/LiveUse.h"

namespace kestrin::app {

/// The runtime, the flag, and what is seen of both: what a window shows and whoever else steers. Nothing is
/// watched until it is started. Main thread.
struct Protection {
    /// `defaults`, `deviceUses` and `installed` outlive this object.
    Protection(runtime::UserDefaults &defaults, engine::DeviceUses &deviceUses,
               runtime::MacProtectionSurroundings surroundings, runtime::InstalledApplications &installed)
        : runtime(defaults, std::move(surroundings))
        , privacyMode(defaults, runtime)
        , liveUse(defaults, deviceUses, runtime)
        , state(runtime, privacyMode, liveUse, installed) {}

    runtime::MacProtectionRuntime runtime;
    runtime::PrivacyModeFlag privacyMode;
    runtime::LiveUse liveUse;
    MacProtectionState state;
};

} // namespace kestrin::app
