#pragma once

#include "desktop/applications/DesktopEntryIndex.h"
#include "runtime/InstalledApplications.h"

namespace kestrin::desktop {

/// The applications of the menus, called and identified as their windows are (ApplicationIdentity).
class MenuApplications final : public runtime::InstalledApplications {
  public:
    explicit MenuApplications(const QList<QByteArray> &folders = applicationFoldersOfEnvironment(),
                              const EntryLocales &locales = entryLocalesOfEnvironment())
        : m_entries(folders, locales) {}

    QList<runtime::InstalledApplication> list() override;

  private:
    DesktopEntryIndex m_entries;
};

} // namespace kestrin::desktop
