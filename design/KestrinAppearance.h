#pragma once

#include <QtQml/qqmlregistration.h>

#include <QObject>

#include <memory>
#include <optional>

class QJSEngine;
class QQmlEngine;

namespace kestrin::design {

class DesktopPreferences;

/// Which appearance the windows are drawn in, and what else the desktop says about how it wants to be drawn.
/// One a process, on the main thread.
class KestrinAppearance : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool dark READ isDark NOTIFY darkChanged)
    Q_PROPERTY(bool reducedMotion READ reducedMotion NOTIFY reducedMotionChanged)
    Q_PROPERTY(bool highContrast READ highContrast NOTIFY highContrastChanged)
    Q_PROPERTY(double textScale READ textScale NOTIFY textScaleChanged)

  public:
    enum Preference {
        System, ///< as the desktop says: its settings portal, else the platform's palette
        Light,
        Dark,
    };

    /// The one that everything is drawn by. Needs a QGuiApplication at its first call.
    static KestrinAppearance &shared();
    static KestrinAppearance *create(QQmlEngine *engine, QJSEngine *scriptEngine);
    /// "light", "dark" or "system", as the command line says it.
    static std::optional<Preference> preferenceFromText(QStringView text);

    /// Follows the toolkit's palette. Without a default, or QML would make one of its own instead of calling
    /// create().
    explicit KestrinAppearance(QObject *parent);
    ~KestrinAppearance() override;

    /// From now on also what the desktop says, which comes before the palette. May be null.
    void follow(std::unique_ptr<DesktopPreferences> desktop);

    void setPreference(Preference preference);

    bool isDark() const { return m_dark; }
    /// The desktop's user does not want things to move.
    bool reducedMotion() const { return m_reducedMotion; }
    bool highContrast() const { return m_highContrast; }
    /// How much larger than usual texts are: as the desktop says, within what the pages have room for.
    double textScale() const { return m_textScale; }

    bool eventFilter(QObject *watched, QEvent *event) override;

  Q_SIGNALS:
    void darkChanged();
    void reducedMotionChanged();
    void highContrastChanged();
    void textScaleChanged();

  private:
    void refresh();
    bool resolveDark() const;

    std::unique_ptr<DesktopPreferences> m_desktop;
    Preference m_preference = System;
    bool m_dark = false;
    bool m_reducedMotion = false;
    bool m_highContrast = false;
    double m_textScale = 1;
};

} // namespace kestrin::design
