#pragma once

#include <chrono>

namespace kestrin::desktop {

/// How long a desktop may take to answer everything that one question leads to.
inline constexpr std::chrono::seconds desktopPatience{2};

} // namespace kestrin::desktop
