#pragma once

#include "runtime/DesktopPermission.h"

#include <memory>

namespace kestrin::desktop {

/// That of the desktop which answers when it is asked for.
class LinuxPermission final : public runtime::DesktopPermission {
  public:
    Answer enable() override;
    /// What was allowed on another desktop too.
    Answer disable() override;

  private:
    /// Null where nobody has to be asked.
    static std::unique_ptr<DesktopPermission> ofThisDesktop();
};

} // namespace kestrin::desktop
