#pragma once

#include <QLibrary>

namespace kestrin::desktop {

/// Finds a function of a library, which is loaded with the first; false when there is none of that name.
template <typename Function>
bool resolve(QLibrary &library, const char *name, Function &function) {
    function = reinterpret_cast<Function>(library.resolve(name));
    return function != nullptr;
}

} // namespace kestrin::desktop
