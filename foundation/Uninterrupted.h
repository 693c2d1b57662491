#pragma once

#include <cerrno>

namespace kestrin::foundation {

/// Makes a call of the system again as long as only a signal came in between.
template <typename Call>
auto uninterrupted(const Call &call) {
    auto result = call();
    while (result < 0 && errno == EINTR)
        result = call();
    return result;
}

} // namespace kestrin::foundation
