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
    std::optional<bool> animations() const { return m_animations; }
    std::optional<bool> highContrast() const { return m_highContrast; }

  Q_SIGNALS:
    void changed();

  protected:
    std::optional<bool> m_prefersDark;
    std::optional<bool> m_animations;
    std::optional<bool> m_highContrast;
};

/// A desktop that says what its owner lets it say.
class InMemoryDesktopPreferences final : public DesktopPreferences {
    Q_OBJECT

  public:
    using DesktopPreferences::DesktopPreferences;

    void say(std::optional<bool> prefersDark, std::optional<bool> animations = {},
             std::optional<bool> highContrast = {}) {
        m_prefersDark = prefersDark;
        m_animations = animations;
        m_highContrast = highContrast;
        Q_EMIT changed();
    }
};

} // namespace kestrin::design
