#pragma once

#include "runtime/DesktopPermission.h"

#include <memory>

namespace kestrin::desktop {

/// That of the desktop which answers when it is asked for.
class LinuxPermission final : public runtime::DesktopPermission {
  public:
    Answer enable() override { return ofThisDesktop()->enable(); }
    Answer disable() override { return ofThisDesktop()->disable(); }

  private:
    static std::unique_ptr<DesktopPermission> ofThisDesktop();
};

} // namespace kestrin::desktop
