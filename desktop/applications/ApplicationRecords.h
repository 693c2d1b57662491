#pragma once

#include "desktop/applications/ApplicationClaims.h"
#include "desktop/applications/DesktopEntryIndex.h"
#include "engine/workspace/Workspace.h"

#include <optional>

namespace kestrin::desktop {

/// Says who an application is, whichever window system has found it. Main thread only.
class ApplicationRecords {
  public:
    /// Begins a new round of questions: what has changed on disk since the last one counts.
    void refresh() { m_entries.refresh(); }

    /// By its process, and by what the window that stands for it claims. None when the process only hands on
    /// the windows of another machine.
    std::optional<engine::WorkspaceApplication> recordOf(qint32 process, const ApplicationClaims &claims);

  private:
    DesktopEntryIndex m_entries;
};

} // namespace kestrin::desktop
