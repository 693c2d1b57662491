#include "desktop/appearance/Appearance.h"

#include "desktop/appearance/SettingsPortal.h"

namespace kestrin {

std::unique_ptr<DesktopPreferences> makePreferences() {
    return SettingsPortal::connectToSession();
}

NativeSymbol nativeSymbols() {
    return nullptr;
}

} // namespace kestrin
