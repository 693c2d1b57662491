#pragma once

#include "design/DesktopPreferences.h"

#include <memory>

namespace kestrin::desktop {

/// The preferences of macOS: the application's effective appearance, which AppKit derives from the system's,
/// and the display options of accessibility, followed while this lives. Values are there from the beginning.
class AppKitPreferences final : public design::DesktopPreferences {
  public:
    AppKitPreferences();
    ~AppKitPreferences() override;

    /// Takes the values as they are now. What this observes calls it.
    void refresh();

  private:
    struct Observation;

    void read();

    std::unique_ptr<Observation> m_observation;
};

} // namespace kestrin::desktop
