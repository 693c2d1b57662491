#include "design/DesktopFonts.h"

#ifdef KESTRIN_HAS_FONTCONFIG
#include <fontconfig/fontconfig.h>

#include <memory>
#else
#include <QFontInfo>
#endif

namespace kestrin::design {

#ifdef KESTRIN_HAS_FONTCONFIG

namespace {

bool isPostponed = false;

bool use(FcConfig *configuration) {
    const bool isUsed = configuration && FcConfigSetCurrent(configuration) == FcTrue;
    if (configuration)
        FcConfigDestroy(configuration);
    return isUsed;
}

} // namespace

void postponeDesktopFonts() {
    isPostponed = use(FcConfigCreate());
}

bool areDesktopFontsPostponed() {
    return isPostponed;
}

void fetchDesktopFonts() {
    use(FcInitLoadConfigAndFonts());
    isPostponed = false;
}

QString realFamily(const QString &family) {
    struct Free {
        void operator()(FcPattern *pattern) const { FcPatternDestroy(pattern); }
    };
    using Pattern = std::unique_ptr<FcPattern, Free>;
    const QByteArray name = family.toUtf8();
    const Pattern wanted(FcPatternCreate());
    FcPatternAddString(wanted.get(), FC_FAMILY, reinterpret_cast<const FcChar8 *>(name.constData()));
    FcConfigSubstitute(nullptr, wanted.get(), FcMatchPattern);
    FcDefaultSubstitute(wanted.get());
    FcResult result = FcResultNoMatch;
    const Pattern found(FcFontMatch(nullptr, wanted.get(), &result));
    FcChar8 *real = nullptr;
    if (!found || FcPatternGetString(found.get(), FC_FAMILY, 0, &real) != FcResultMatch)
        return family;
    return QString::fromUtf8(reinterpret_cast<const char *>(real));
}

#else

void postponeDesktopFonts() {}

bool areDesktopFontsPostponed() {
    return false;
}

void fetchDesktopFonts() {}

QString realFamily(const QString &family) {
    return QFontInfo(QFont(family)).family();
}

#endif

} // namespace kestrin::design
