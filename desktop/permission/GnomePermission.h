#pragma once

#include "desktop/permission/OwnPrograms.h"
#include "runtime/DesktopPermission.h"

namespace kestrin::desktop {

class ShellExtension;

/// The GNOME shell tells by an extension of ours, which answers the programs of the package and those that
/// the user has allowed.
class GnomePermission final : public runtime::DesktopPermission {
  public:
    explicit GnomePermission(const OwnPrograms &programs) : m_programs(programs) {}

    Answer enable() override;
    Answer disable() override;

    /// What `enable` left where GNOME does not have to be asked, also in another session than its own. Empty
    /// when that is gone, else what is in the way, as a sentence.
    QString takeBack() const;

  private:
    /// As far as the package has not done that for all users.
    static bool install();
    Answer whatBecameOf(ShellExtension &extension) const;

    const OwnPrograms m_programs;
};

} // namespace kestrin::desktop
