#pragma once

#include <cstdlib>

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace kestrin::foundation {

/// Gives memory that was freed back to the system, where it would otherwise be kept for later. For whoever
/// has just thrown much away.
inline void giveBackFreedMemory() {
#ifdef __GLIBC__
    ::malloc_trim(0);
#endif
}

} // namespace kestrin::foundation
