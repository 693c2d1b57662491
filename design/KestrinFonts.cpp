#include "design/KestrinFonts.h"

#include <QDir>
#include <QFontDatabase>
#include <QFontInfo>
#include <QGuiApplication>
#include <QResource>
#include <QSet>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace kestrin::design::KestrinFonts {

namespace {

constexpr QLatin1StringView inter("Inter");

/// Makes the faces in the program (docs/decisions/0009-fonts.md) known; they are used where they lie. Empty
/// if there are none.
QString embeddedFamily() {
    QString family;
    const QStringList faces = QDir(u":/kestrin/fonts"_s).entryList();
    for (const QString &face : faces) {
        const QResource file(u":/kestrin/fonts/"_s + face);
        const auto data = QByteArray::fromRawData(reinterpret_cast<const char *>(file.data()), file.size());
        const int font = QFontDatabase::addApplicationFontFromData(data);
        family = QFontDatabase::applicationFontFamilies(font).value(0);
    }
    return family;
}

QStringList chooseFamilies() {
    const QString desktops = QGuiApplication::font().family();
    // The one behind a name like "Sans Serif".
    const QString real = QFontInfo(QFont(desktops)).family();
    if (hasAllWeights(real))
        return {real};
    const QString embedded = embeddedFamily();
    if (embedded.isEmpty())
        return {desktops};
    // Letters that a family does not have are taken from the next one.
    return {embedded, inter, desktops};
}

const QStringList &families() {
    static const QStringList chosen = chooseFamilies();
    return chosen;
}

// Inter is spaced for small sizes; large ones look loose without being pulled together.
double tracking(double size) {
    return families().contains(inter) ? -0.02 * std::clamp((size - 12) / 18, 0.0, 1.0) * size : 0;
}

} // namespace

QString family() {
    return families().first();
}

QFont font(double size, KestrinWeight weight) {
    QFont font(families());
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

} // namespace kestrin::design::KestrinFonts
