#include "desktop/appearance/Appearance.h"

#include "desktop/appearance/SettingsPortal.h"

namespace kestrin::desktop {

using namespace design;

std::unique_ptr<DesktopPreferences> makePreferences() {
    return SettingsPortal::connectToSession();
}

NativeSymbol nativeSymbols() {
    return nullptr;
}

} // namespace kestrin::desktop
