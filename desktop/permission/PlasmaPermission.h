#pragma once

#include "desktop/permission/OwnPrograms.h"
#include "runtime/DesktopPermission.h"

namespace kestrin::desktop {

/// KWin shows its windows to a program whose desktop entry says that it wants to see them, and names it by
/// its absolute path. Those of the package do.
class PlasmaPermission final : public runtime::DesktopPermission {
  public:
    /// `folder` is the one of the user's own desktop entries.
    PlasmaPermission(const OwnPrograms &programs, const QString &folder)
        : m_programs(programs)
        , m_folder(folder) {}

    Answer enable() override;
    Answer disable() override;

  private:
    QString entryOf(const QString &program) const;

    const OwnPrograms m_programs;
    const QString m_folder;
};

} // namespace kestrin::desktop
