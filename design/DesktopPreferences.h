#pragma once

#include <QObject>

#include <memory>
#include <optional>

namespace kestrin {

/// What the desktop says about how it wants to be drawn. A value is absent while the desktop has not said it.
/// Main thread.
class DesktopPreferences : public QObject {
    Q_OBJECT

  public:
    /// Those of the desktop that this process runs on; null where the toolkit's palette is all there is. Asks
    /// without waiting: the values arrive later, with `changed`, or never.
    static std::unique_ptr<DesktopPreferences> create();

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

} // namespace kestrin
