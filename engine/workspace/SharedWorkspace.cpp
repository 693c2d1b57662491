#include "engine/workspace/Workspace.h"

// The only place that knows which platform this is.
#ifdef __APPLE__
#include "engine/workspace/macos/MacWorkspace.h"
#else
#include "engine/workspace/x11/X11Workspace.h"
#endif

namespace kestrin {

Workspace &Workspace::shared() {
#ifdef __APPLE__
    static MacWorkspace workspace;
#else
    static X11Workspace workspace;
#endif
    return workspace;
}

} // namespace kestrin
