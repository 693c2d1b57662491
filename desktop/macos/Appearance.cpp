#include "desktop/appearance/Appearance.h"

#include "desktop/macos/AppKitPreferences.h"
#include "desktop/macos/AppKitSymbols.h"

namespace kestrin::desktop {

using namespace design;

std::unique_ptr<DesktopPreferences> makePreferences() {
    return std::make_unique<AppKitPreferences>();
}

NativeSymbol nativeSymbols() {
    return appKitSymbol;
}

} // namespace kestrin::desktop
