// The workspace of a Linux desktop, by whichever of its window systems answers best.
#pragma once

#include "desktop/sources/SourceWorkspace.h"
#include "desktop/x11/X11Workspace.h"

#include <QList>
#include <QTimer>

#include <chrono>
#include <memory>
#include <vector>

namespace kestrin::desktop {

/// The first of its sources that answers leads; a better one takes over where the leading one does not see
/// everything, at the next call or within a minute. Where none answers, X11 does what it can. Sources that
/// keep everybody waiting leave X11 a quarter of a call's time, and are not asked again for one second more.
/// Who has subscribed stays subscribed when the lead changes; what runs at that moment is no launch. Main
/// thread only.
class ChosenWorkspace final : public DesktopWorkspace {
  public:
    struct Candidate {
        std::unique_ptr<SourceWorkspace> workspace;
        /// It knows nothing of the windows of X11.
        bool needsX11 = false;
    };

    /// The best first.
    explicit ChosenWorkspace(std::vector<Candidate> candidates);
    ~ChosenWorkspace() override;

    QList<engine::WorkspaceApplication> list(const foundation::Deadline &deadline) override;
    [[nodiscard]] engine::Termination quit(qint32 process, const foundation::Deadline &deadline) override;
    [[nodiscard]] std::unique_ptr<engine::LaunchSubscription>
    listen(LaunchHandler handler, const foundation::Deadline &deadline) override;
    engine::Sight look(const foundation::Deadline &deadline) override;

  private:
    class Subscription;

    /// Null where X11 leads, or nobody.
    const Candidate *choose(const foundation::Deadline &deadline);
    void follow(const Candidate *leader, bool isSilent, const foundation::Deadline &deadline);
    bool usesX11() const { return !m_leader || m_leader->needsX11; }
    bool mayFindBetter() const { return usesX11(); }
    void lookAgainLater();

    const std::vector<Candidate> m_candidates;
    X11Workspace m_x11;
    const Candidate *m_leader = nullptr;
    /// The sources did not answer when they were last asked, and X11 leads.
    bool m_isSilent = false;
    std::chrono::steady_clock::time_point m_lookedAt;
    QList<Subscription *> m_subscriptions;
    QTimer m_again;
};

} // namespace kestrin::desktop
