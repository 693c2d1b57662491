#pragma once

#include <QObject>

#include <optional>

namespace kestrin::design {

/// What the desktop says about how it wants to be drawn. A value is absent while the desktop has not said it.
/// Main thread.
class DesktopPreferences : public QObject {
    Q_OBJECT

  public:
    using QObject::QObject;

    /// Absent also where the user prefers neither.
    std::optional<bool> prefersDark() const { return m_prefersDark; }
    std::optional<bool> reducedMotion() const { return m_reducedMotion; }
    std::optional<bool> highContrast() const { return m_highContrast; }
    /// How much larger than usual texts are to be; absent also where everything is drawn that much larger
    /// anyway.
    std::optional<double> textScale() const { return m_textScale; }

  Q_SIGNALS:
    void changed();

  protected:
    std::optional<bool> m_prefersDark;
    std::optional<bool> m_reducedMotion;
    std::optional<bool> m_highContrast;
    std::optional<double> m_textScale;
};

/// A desktop that says what its owner lets it say.
class InMemoryDesktopPreferences final : public DesktopPreferences {
    Q_OBJECT

  public:
    using DesktopPreferences::DesktopPreferences;

    void say(std::optional<bool> prefersDark, std::optional<bool> reducedMotion = {},
             std::optional<bool> highContrast = {}, std::optional<double> textScale = {}) {
        m_prefersDark = prefersDark;
        m_reducedMotion = reducedMotion;
        m_highContrast = highContrast;
        m_textScale = textScale;
        Q_EMIT changed();
    }
};

} // namespace kestrin::design
