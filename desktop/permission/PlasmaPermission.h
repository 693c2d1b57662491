#pragma once

#include "desktop/permission/OwnPrograms.h"
#include "desktop/sources/WindowSource.h"
#include "runtime/DesktopPermission.h"

#include <memory>

namespace kestrin::desktop {

/// KWin shows its windows to a program whose desktop entry says that it wants to see them, and names it by
/// its absolute path. Those of the package do.
class PlasmaPermission final : public runtime::DesktopPermission {
  public:
    /// `folder` is the one of the user's own desktop entries; `windows` are those that are to be seen.
    PlasmaPermission(const OwnPrograms &programs, const QString &folder,
                     std::unique_ptr<WindowSource> windows)
        : m_programs(programs)
        , m_folder(folder)
        , m_windows(std::move(windows)) {}

    Answer enable() override;
    Answer disable() override;

  private:
    QString entryOf(const QString &program) const;

    const OwnPrograms m_programs;
    const QString m_folder;
    const std::unique_ptr<WindowSource> m_windows;
};

} // namespace kestrin::desktop
