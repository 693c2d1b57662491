#include "runtime/StandardUserDefaults.h"

// Only this file and LoginItem.cpp know which platform this is.
#ifdef __APPLE__
#include "desktop/macos/NSUserDefaultsStore.h"
#else
#include "desktop/defaults/JSONUserDefaults.h"
#endif

namespace kestrin {

std::unique_ptr<UserDefaults> standardUserDefaults() {
#ifdef __APPLE__
    return std::make_unique<NSUserDefaultsStore>();
#else
    return std::make_unique<JSONUserDefaults>(JSONUserDefaults::standardPath());
#endif
}

QString standardUserDefaultsLocation() {
#ifdef __APPLE__
    return QStringLiteral("the application's user defaults");
#else
    return JSONUserDefaults::standardPath();
#endif
}

} // namespace kestrin
