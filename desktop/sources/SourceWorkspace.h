// The workspace of a desktop whose windows one source tells.
#pragma once

#include "desktop/applications/ApplicationRecords.h"
#include "desktop/applications/DesktopWorkspace.h"
#include "desktop/quitting/QuitPatience.h"
#include "desktop/sources/SourceLaunches.h"
#include "desktop/sources/WindowSource.h"

#include <memory>
#include <optional>

namespace kestrin::desktop {

/// Of a desktop that keeps us waiting it is not known what it would tell.
engine::Sight sightOfSilence();

/// An application is a process with at least one window that a task bar would show. Where the source cannot
/// be opened the next call tries again, and for whoever has subscribed it is tried once a minute; what runs
/// then is no launch. A desktop that does not answer costs each call two seconds. Main thread only.
class SourceWorkspace final : public DesktopWorkspace {
  public:
    explicit SourceWorkspace(std::unique_ptr<WindowSource> source);

    /// Whether the source can be asked. Opens it where it is closed.
    bool open(const foundation::Deadline &deadline);

    /// For whoever has to know when it is lost.
    const WindowSource &source() const { return *m_source; }

    QList<engine::WorkspaceApplication> list(const foundation::Deadline &deadline) override;
    [[nodiscard]] engine::Termination quit(qint32 process, const foundation::Deadline &deadline) override;
    [[nodiscard]] std::unique_ptr<engine::LaunchSubscription>
    listen(LaunchHandler handler, const foundation::Deadline &deadline) override;
    engine::Sight look(const foundation::Deadline &deadline) override;

    /// For whoever hears of the same applications elsewhere too.
    Launches &launches() { return m_launches; }

  private:
    /// No answer when there is none by the deadline.
    std::optional<QList<SourceWindow>> windows(const foundation::Deadline &deadline);

    std::unique_ptr<WindowSource> m_source;
    ApplicationRecords m_records;
    QuitPatience m_patience;
    bool m_isOpen = false;
    // They use the source, so they go first.
    SourceLaunches m_launches;
};

} // namespace kestrin::desktop
