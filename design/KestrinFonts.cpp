#include "design/KestrinFonts.h"

#include "design/platform/DesktopFonts.h"

#include <QFontDatabase>
#include <QGuiApplication>
#include <QSet>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace kestrin::KestrinFonts {

namespace {

constexpr QLatin1StringView inter("Inter");

QString chooseFamily() {
    const QString desktops = realFamily(QGuiApplication::font().family());
    if (hasAllWeights(desktops) || !QFontDatabase::hasFamily(inter))
        return desktops;
    return inter;
}

// Inter is spaced for small sizes; large ones look loose without being pulled together.
double tracking(double size) {
    return family() == inter ? -0.02 * std::clamp((size - 12) / 18, 0.0, 1.0) * size : 0;
}

} // namespace

QString family() {
    static const QString chosen = chooseFamily();
    return chosen;
}

QFont font(double size, KestrinWeight weight) {
    QFont font(family());
    font.setPixelSize(qRound(size));
    // Letters are fitted to pixels in height only: widths in proportion to the size, so that texts can be
    // fitted, and evenly spaced.
    font.setHintingPreference(QFont::PreferVerticalHinting);
    font.setWeight(static_cast<QFont::Weight>(weight));
    font.setLetterSpacing(QFont::AbsoluteSpacing, tracking(size));
    return font;
}

bool hasAllWeights(const QString &family) {
    QSet<int> faces;
    const QStringList styles = QFontDatabase::styles(family);
    for (const QString &style : styles) {
        if (!QFontDatabase::italic(family, style))
            faces.insert(QFontDatabase::weight(family, style));
    }
    const auto weights = {KestrinWeight::Regular, KestrinWeight::Medium, KestrinWeight::Semibold,
                          KestrinWeight::Bold, KestrinWeight::Heavy};
    return std::ranges::all_of(
        weights, [&faces](KestrinWeight weight) { return faces.contains(static_cast<int>(weight)); });
}

} // namespace kestrin::KestrinFonts
