#pragma once

#include "app/Kestrin/pages/MacProtectionState.h"

namespace kestrin::app {

/// The runtime, the flag, and what is seen of both: what a window shows and whoever else steers. Nothing is
/// watched until it is started. Main thread.
struct Protection {
    /// `defaults` and `installed` outlive this object.
    Protection(runtime::UserDefaults &defaults, runtime::MacProtectionSurroundings surroundings,
               runtime::InstalledApplications &installed)
        : runtime(defaults, std::move(surroundings))
        , privacyMode(defaults, runtime)
        , state(runtime, privacyMode, installed) {}

    runtime::MacProtectionRuntime runtime;
    runtime::PrivacyModeFlag privacyMode;
    MacProtectionState state;
};

} // namespace kestrin::app
