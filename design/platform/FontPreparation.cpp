#include "design/platform/FontPreparation.h"

#ifdef KESTRIN_HAS_FONTCONFIG
#include <fontconfig/fontconfig.h>
#endif

namespace kestrin {

std::jthread prepareFonts() {
#ifdef KESTRIN_HAS_FONTCONFIG
    return std::jthread([] { FcInit(); });
#else
    return {};
#endif
}

} // namespace kestrin
