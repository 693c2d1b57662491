#include "engine/workspace/Workspace.h"

// The only place that knows which platform this is.
#ifdef __APPLE__
#include "desktop/macos/AppKitWorkspace.h"
#else
#include "desktop/x11/X11Workspace.h"
#endif

namespace kestrin {

Workspace &Workspace::shared() {
#ifdef __APPLE__
    static AppKitWorkspace workspace;
#else
    static X11Workspace workspace;
#endif
    return workspace;
}

void Workspace::prepareEventLoop() {
#ifdef __APPLE__
    // Launches arrive in the main queue, which Qt's own event loop of a program without windows does not
    // serve.
    qputenv("QT_EVENT_DISPATCHER_CORE_FOUNDATION", "1");
#endif
}

} // namespace kestrin
