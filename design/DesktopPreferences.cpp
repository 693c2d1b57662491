#include "design/DesktopPreferences.h"

#ifdef __APPLE__
#include "desktop/macos/AppKitPreferences.h"
#elif KESTRIN_HAS_DBUS
#include "desktop/appearance/SettingsPortal.h"
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
