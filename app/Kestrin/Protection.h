#pragma once

#include "app/Kestrin/MacProtectionState.h"

namespace kestrin {

/// The runtime, the flag, and what is seen of both: what a window shows and whoever else steers. Nothing is
/// watched until it is started. Main thread.
struct Protection {
    /// `defaults` outlives this object.
    Protection(UserDefaults &defaults, MacProtectionSurroundings surroundings)
        : runtime(defaults, std::move(surroundings))
        , privacyMode(defaults, runtime)
        , state(runtime, privacyMode) {}

    MacProtectionRuntime runtime;
    PrivacyModeFlag privacyMode;
    MacProtectionState state;
};

} // namespace kestrin
