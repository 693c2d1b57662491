#pragma once

#include <chrono>

namespace kestrin::desktop {

/// How long a desktop may take to answer everything that one question leads to.
inline constexpr std::chrono::seconds desktopPatience{2};

/// How long one that could not be asked is left alone before it is tried again for those who listen.
inline constexpr std::chrono::minutes desktopRetry{1};

} // namespace kestrin::desktop
