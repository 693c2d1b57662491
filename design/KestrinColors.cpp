#include "design/KestrinColors.h"

#include "design/KestrinAppearance.h"

#include <QGuiApplication>
#include <QJSEngine>

namespace kestrin::design {

namespace {

constexpr float softOpacity = 0.12F;

} // namespace

KestrinColors &KestrinColors::shared() {
    static KestrinColors *const colors = new KestrinColors(KestrinAppearance::shared(), qApp);
    return *colors;
}

KestrinColors *KestrinColors::create(QQmlEngine *, QJSEngine *) {
    QJSEngine::setObjectOwnership(&shared(), QJSEngine::CppOwnership);
    return &shared();
}

KestrinColors::KestrinColors(const KestrinAppearance &appearance, QObject *parent)
    : QObject(parent)
    , m_appearance(appearance) {
    connect(&appearance, &KestrinAppearance::darkChanged, this, &KestrinColors::changed);
}

QColor KestrinColors::adaptive(const KestrinRGB &light, const KestrinRGB &dark) const {
    const KestrinRGB &rgb = m_appearance.isDark() ? dark : light;
    return QColor::fromRgbF(static_cast<float>(rgb.red), static_cast<float>(rgb.green),
                            static_cast<float>(rgb.blue));
}

QList<QColor> KestrinColors::toneColors() const {
    return {protected_(), attention(), risk(), link(), textSecondary()};
}

QList<QColor> KestrinColors::toneSoftBackgrounds() const {
    QList<QColor> colors = toneColors();
    for (QColor &color : colors)
        color.setAlphaF(softOpacity);
    return colors;
}

} // namespace kestrin::design
