#pragma once

#include <chrono>

namespace kestrin::desktop {

/// How long a desktop may take to answer everything that one question leads to.
inline constexpr std::chrono::seconds desktopPatience{2};

/// Who has been waited for so long in vain is not waited for again before he has answered. It is less than a
/// whole call's time, for others may have used up the rest of it.
inline constexpr std::chrono::milliseconds desktopSilence{400};

/// How long one that could not be asked is left alone before it is tried again for those who listen.
inline constexpr std::chrono::minutes desktopRetry{1};

} // namespace kestrin::desktop
