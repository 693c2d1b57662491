#include "design/platform/DesktopPreferences.h"

#if KESTRIN_HAS_DBUS
#include "design/platform/SettingsPortal.h"
#endif

namespace kestrin {

std::unique_ptr<DesktopPreferences> DesktopPreferences::create() {
#if KESTRIN_HAS_DBUS
    return SettingsPortal::connectToSession();
#else
    return nullptr;
#endif
}

} // namespace kestrin
