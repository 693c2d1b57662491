#include "design/platform/DesktopPreferences.h"

#ifdef __APPLE__
#include "design/platform/macos/AppKitPreferences.h"
#elif KESTRIN_HAS_DBUS
#include "design/platform/SettingsPortal.h"
#endif

namespace kestrin {

std::unique_ptr<DesktopPreferences> DesktopPreferences::create() {
#ifdef __APPLE__
    return std::make_unique<AppKitPreferences>();
#elif KESTRIN_HAS_DBUS
    return SettingsPortal::connectToSession();
#else
    return nullptr;
#endif
}

} // namespace kestrin
