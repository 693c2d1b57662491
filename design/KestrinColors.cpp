#include "design/KestrinColors.h"

#include "design/KestrinAppearance.h"

#include <QGuiApplication>
#include <QJSEngine>

#include <array>

namespace kestrin::design {

namespace {

constexpr float softOpacity = 0.12F;

constexpr std::array allTones{KestrinTone::Protected, KestrinTone::Attention, KestrinTone::Risk,
                              KestrinTone::Link, KestrinTone::Neutral};

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

// The name is historical: in light appearance it is the navy of the primary action.
QColor KestrinColors::deepGreen() const {
    return adaptive({0.004, 0.102, 0.286}, {0.82, 0.88, 0.98});
}

QColor KestrinColors::freshGreen() const {
    return adaptive({0.082, 0.54, 0.345}, {0.5, 0.82, 0.62});
}

QColor KestrinColors::warmIvory() const {
    return adaptive({0.957, 0.965, 0.98}, {0.045, 0.06, 0.09});
}

QColor KestrinColors::softIvory() const {
    return adaptive({0.99, 0.994, 1.0}, {0.07, 0.09, 0.13});
}

QColor KestrinColors::textPrimary() const {
    return adaptive({0.055, 0.063, 0.086}, {0.925, 0.94, 0.97});
}

QColor KestrinColors::textSecondary() const {
    return adaptive({0.43, 0.455, 0.5}, {0.68, 0.71, 0.76});
}

QColor KestrinColors::textMuted() const {
    return adaptive({0.61, 0.635, 0.685}, {0.56, 0.595, 0.65});
}

QColor KestrinColors::border() const {
    return adaptive({0.875, 0.89, 0.925}, {0.17, 0.2, 0.26});
}

QColor KestrinColors::divider() const {
    return adaptive({0.9, 0.91, 0.935}, {0.165, 0.19, 0.245});
}

QColor KestrinColors::surface() const {
    return adaptive({1.0, 1.0, 1.0}, {0.07, 0.09, 0.13});
}

QColor KestrinColors::surfaceMuted() const {
    return adaptive({0.945, 0.955, 0.975}, {0.095, 0.12, 0.17});
}

QColor KestrinColors::primaryAction() const {
    return adaptive({0.004, 0.102, 0.286}, {0.59, 0.71, 1.0});
}

QColor KestrinColors::primaryActionText() const {
    return adaptive({1.0, 1.0, 1.0}, {0.04, 0.09, 0.06});
}

QColor KestrinColors::protected_() const {
    return adaptive({0.12, 0.62, 0.35}, {0.55, 0.82, 0.64});
}

QColor KestrinColors::attention() const {
    return adaptive({0.788, 0.522, 0.141}, {0.96, 0.71, 0.32});
}

QColor KestrinColors::attentionSoft() const {
    return adaptive({0.973, 0.922, 0.847}, {0.26, 0.18, 0.09});
}

QColor KestrinColors::offGray() const {
    return adaptive({0.463, 0.49, 0.471}, {0.62, 0.66, 0.63});
}

QColor KestrinColors::offGraySoft() const {
    return adaptive({0.925, 0.93, 0.94}, {0.15, 0.17, 0.21});
}

QColor KestrinColors::risk() const {
    return adaptive({0.851, 0.29, 0.29}, {1.0, 0.45, 0.37});
}

QColor KestrinColors::riskSoft() const {
    return adaptive({0.992, 0.925, 0.925}, {0.28, 0.11, 0.11});
}

QColor KestrinColors::link() const {
    return adaptive({0.082, 0.356, 0.82}, {0.48, 0.72, 1.0});
}

QColor KestrinColors::linkSoft() const {
    return adaptive({0.915, 0.94, 0.995}, {0.08, 0.145, 0.275});
}

QColor KestrinColors::softGreen() const {
    return adaptive({0.895, 0.96, 0.92}, {0.075, 0.18, 0.12});
}

QColor KestrinColors::color(KestrinTone tone) const {
    switch (tone) {
    case KestrinTone::Protected:
        return protected_();
    case KestrinTone::Attention:
        return attention();
    case KestrinTone::Risk:
        return risk();
    case KestrinTone::Link:
        return link();
    case KestrinTone::Neutral:
        break;
    }
    return textSecondary();
}

QColor KestrinColors::softBackground(KestrinTone tone) const {
    QColor soft = color(tone);
    soft.setAlphaF(softOpacity);
    return soft;
}

QList<QColor> KestrinColors::toneColors() const {
    QList<QColor> colors;
    for (const KestrinTone tone : allTones)
        colors.append(color(tone));
    return colors;
}

QList<QColor> KestrinColors::toneSoftBackgrounds() const {
    QList<QColor> colors;
    for (const KestrinTone tone : allTones)
        colors.append(softBackground(tone));
    return colors;
}

} // namespace kestrin::design
