#include "app/Kestrin/program/QuitNotices.h"

namespace kestrin::app {

using namespace engine;

bool QuitNotices::isDue(const MacProtectionEvent &event, Time now) {
    // The switch to enforcing has the same kind and names no application.
    if (event.kind != MacProtectionEventKind::quitRequested || !event.appName)
        return false;
    return m_applications.admits(event.bundleIdentifier.value_or(*event.appName), now);
}

} // namespace kestrin::app
