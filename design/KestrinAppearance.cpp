#include "design/KestrinAppearance.h"

#include "design/DesktopPreferences.h"

#include <QEvent>
#include <QGuiApplication>
#include <QJSEngine>
#include <QPalette>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace kestrin::design {

namespace {

// What desktops call large text. Sizes of buttons, pills and columns are given, and leave room for no more.
constexpr double largestText = 1.25;

} // namespace

KestrinAppearance &KestrinAppearance::shared() {
    static KestrinAppearance *const appearance = new KestrinAppearance(qApp);
    return *appearance;
}

KestrinAppearance *KestrinAppearance::create(QQmlEngine *, QJSEngine *) {
    QJSEngine::setObjectOwnership(&shared(), QJSEngine::CppOwnership);
    return &shared();
}

std::optional<KestrinAppearance::Preference> KestrinAppearance::preferenceFromText(QStringView text) {
    if (text == "system"_L1)
        return System;
    if (text == "light"_L1)
        return Light;
    if (text == "dark"_L1)
        return Dark;
    return std::nullopt;
}

KestrinAppearance::KestrinAppearance(QObject *parent) : QObject(parent) {
    // The palette has no signal of its own; the application is told of a change by an event.
    qApp->installEventFilter(this);
    refresh();
}

KestrinAppearance::~KestrinAppearance() = default;

void KestrinAppearance::follow(std::unique_ptr<DesktopPreferences> desktop) {
    m_desktop = std::move(desktop);
    if (m_desktop)
        connect(m_desktop.get(), &DesktopPreferences::changed, this, &KestrinAppearance::refresh);
    refresh();
}

void KestrinAppearance::setPreference(Preference preference) {
    m_preference = preference;
    refresh();
}

bool KestrinAppearance::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() == QEvent::ApplicationPaletteChange && watched == qApp)
        refresh();
    return QObject::eventFilter(watched, event);
}

void KestrinAppearance::refresh() {
    if (std::exchange(m_dark, resolveDark()) != m_dark)
        Q_EMIT darkChanged();
    const bool reducedMotion = m_desktop && m_desktop->reducedMotion() == true;
    if (std::exchange(m_reducedMotion, reducedMotion) != m_reducedMotion)
        Q_EMIT reducedMotionChanged();
    const bool highContrast = m_desktop && m_desktop->highContrast() == true;
    if (std::exchange(m_highContrast, highContrast) != m_highContrast)
        Q_EMIT highContrastChanged();
    const double textScale = m_desktop ? std::clamp(m_desktop->textScale().value_or(1), 1.0, largestText) : 1;
    if (std::exchange(m_textScale, textScale) != m_textScale)
        Q_EMIT textScaleChanged();
}

bool KestrinAppearance::resolveDark() const {
    if (m_preference != System)
        return m_preference == Dark;
    if (m_desktop && m_desktop->prefersDark())
        return *m_desktop->prefersDark();
    const QPalette palette = QGuiApplication::palette();
    return palette.color(QPalette::Window).lightnessF() < palette.color(QPalette::WindowText).lightnessF();
}

} // namespace kestrin::design
