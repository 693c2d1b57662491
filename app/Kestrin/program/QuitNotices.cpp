#include "app/Kestrin/program/QuitNotices.h"

namespace kestrin::app {

using namespace engine;

bool QuitNotices::isDue(const MacProtectionEvent &event, Time now) {
    // The switch to enforcing has the same kind and names no application.
    if (event.kind != MacProtectionEventKind::quitRequested || !event.appName)
        return false;
    m_shown.removeIf([now](const auto &shown) { return now - shown.value() >= interval; });
    const QString application = event.bundleIdentifier.value_or(*event.appName);
    if (m_shown.contains(application))
        return false;
    m_shown.insert(application, now);
    return true;
}

} // namespace kestrin::app
