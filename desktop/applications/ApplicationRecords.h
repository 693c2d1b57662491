#pragma once

#include "desktop/applications/ApplicationClaims.h"
#include "desktop/applications/DesktopEntryIndex.h"
#include "engine/workspace/Workspace.h"

#include <QHash>

#include <optional>

namespace kestrin::desktop {

/// Says who an application is, whichever window system has found it. Main thread only.
class ApplicationRecords {
  public:
    /// Begins a new round of questions: what has changed on disk since the last one counts.
    void refresh() { m_entries.refresh(); }
    /// The same for all applications anew.
    void refreshForAll();

    /// Whether the process of the last record with this number has ended since. Another one may have its
    /// number now.
    bool isGone(qint32 process) const;

    /// What became of a request to whom the desktop knows, if it does, when it does not say whom it knows.
    static engine::Termination unanswered(qint32 process);

    /// By its process, and by what the window that stands for it claims. None when the process only hands on
    /// the windows of another machine.
    std::optional<engine::WorkspaceApplication> recordOf(qint32 process, const ApplicationClaims &claims);

  private:
    DesktopEntryIndex m_entries;
    /// When the records of the processes were made, in ticks as startOfProcess counts them.
    QHash<qint32, quint64> m_seen;
};

} // namespace kestrin::desktop
