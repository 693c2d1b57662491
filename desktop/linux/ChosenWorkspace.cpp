#include "desktop/linux/ChosenWorkspace.h"

#include "desktop/linux/SightOfWayland.h"
#include "desktop/wayland/WaylandConnection.h"
#include "desktop/x11/X11Launches.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <iterator>
#include <utility>

using namespace std::chrono_literals;

namespace kestrin::desktop {

using namespace foundation;
using namespace engine;

/// What somebody has subscribed to, wherever it is heard.
class ChosenWorkspace::Subscription final : public LaunchSubscription {
  public:
    Subscription(ChosenWorkspace &workspace, LaunchHandler handler, const Deadline &deadline)
        : m_workspace(workspace)
        , m_handler(std::move(handler)) {
        m_workspace.m_subscriptions.append(this);
        renew(deadline);
    }
    ~Subscription() override {
        m_workspace.m_subscriptions.removeOne(this);
        if (m_workspace.m_subscriptions.isEmpty())
            m_workspace.m_again.stop();
    }

    void renew(const Deadline &deadline) {
        endLater();
        if (const Candidate *const leader = m_workspace.m_leader)
            m_parts.push_back(leader->workspace->listen(m_handler, deadline));
        if (m_workspace.usesX11())
            m_parts.push_back(m_workspace.m_x11.listen(m_handler, deadline));
    }

  private:
    using Parts = std::vector<std::unique_ptr<LaunchSubscription>>;

    /// What they have noticed is told from the event loop, and nobody else will tell it.
    void endLater() {
        std::ranges::move(std::exchange(m_parts, {}), std::back_inserter(m_former));
        QMetaObject::invokeMethod(
            &m_context, [this] { m_former.clear(); }, Qt::QueuedConnection);
    }

    ChosenWorkspace &m_workspace;
    const LaunchHandler m_handler;
    Parts m_parts;
    Parts m_former;
    QObject m_context;
};

ChosenWorkspace::ChosenWorkspace(std::vector<Candidate> candidates) : m_candidates(std::move(candidates)) {
    QObject::connect(&m_again, &QTimer::timeout, &m_again, [this] { choose(Deadline(desktopPatience)); });
    for (const Candidate &candidate : m_candidates) {
        QObject::connect(&candidate.workspace->source(), &WindowSource::lost, &m_again, [this, &candidate] {
            // Whoever asks something chooses anew anyway.
            if (&candidate == m_leader && !m_subscriptions.isEmpty())
                QMetaObject::invokeMethod(
                    &m_again, [this] { choose(Deadline(desktopPatience)); }, Qt::QueuedConnection);
        });
        // Who has windows of both kinds is launched when the first of them is noticed.
        candidate.workspace->launches().leaveOut(
            [this](qint32 process) { return m_x11.launches().knows(process); });
    }
    m_x11.launches().leaveOut([this](qint32 process) {
        return std::ranges::any_of(m_candidates, [process](const Candidate &candidate) {
            return candidate.workspace->launches().knows(process);
        });
    });
}

ChosenWorkspace::~ChosenWorkspace() = default;

void ChosenWorkspace::lookAgainLater() {
    if (!m_subscriptions.isEmpty() && !m_again.isActive())
        m_again.start(desktopRetry);
}

const ChosenWorkspace::Candidate *ChosenWorkspace::choose(const Deadline &deadline) {
    // They are not the only ones who are asked in this time.
    const Deadline share(deadline.remaining() * 3 / 4);
    const auto answers = [&share](const Candidate &candidate) { return candidate.workspace->open(share); };
    // Opening is quick where it is open already.
    if (!mayFindBetter() && answers(*m_leader)) {
        m_again.stop();
        return m_leader;
    }
    // Whoever has just kept us waiting would do it again.
    if (m_isSilent && std::chrono::steady_clock::now() - m_lookedAt < 1s)
        return nullptr;
    const auto found = std::ranges::find_if(m_candidates, answers);
    const bool isSilent = share.remaining() == 0ms;
    m_lookedAt = std::chrono::steady_clock::now();
    follow(found == m_candidates.end() || isSilent ? nullptr : &*found, isSilent, deadline);
    if (mayFindBetter())
        lookAgainLater();
    else
        m_again.stop();
    return m_leader;
}

void ChosenWorkspace::follow(const Candidate *leader, bool isSilent, const Deadline &deadline) {
    if (m_leader == leader && m_isSilent == isSilent)
        return;
    m_leader = leader;
    m_isSilent = isSilent;
    for (Subscription *const subscription : std::as_const(m_subscriptions))
        subscription->renew(deadline);
}

QList<WorkspaceApplication> ChosenWorkspace::list(const Deadline &deadline) {
    const Candidate *const leader = choose(deadline);
    QList<WorkspaceApplication> applications;
    if (leader)
        applications = leader->workspace->list(deadline);
    if (!usesX11())
        return applications;
    const QList<WorkspaceApplication> others = m_x11.list(deadline);
    applications.removeIf([&others](const WorkspaceApplication &application) {
        return std::ranges::any_of(others, [&application](const WorkspaceApplication &other) {
            return other.processIdentifier == application.processIdentifier;
        });
    });
    return applications + others;
}

Termination ChosenWorkspace::quit(qint32 process, const Deadline &deadline) {
    const Candidate *const leader = choose(deadline);
    const auto asked = usesX11() ? m_x11.quit(process, deadline) : Termination::gone;
    if (asked == Termination::gone && m_isSilent)
        return ApplicationRecords::unanswered(process);
    if (!leader || asked == Termination::delivered)
        return asked;
    const auto askedByLeader = leader->workspace->quit(process, deadline);
    return askedByLeader == Termination::gone ? asked : askedByLeader;
}

std::unique_ptr<LaunchSubscription> ChosenWorkspace::listen(LaunchHandler handler, const Deadline &deadline) {
    choose(deadline);
    auto subscription = std::make_unique<Subscription>(*this, std::move(handler), deadline);
    if (mayFindBetter())
        lookAgainLater();
    return subscription;
}

Sight ChosenWorkspace::look(const Deadline &deadline) {
    if (const Candidate *const leader = choose(deadline))
        return leader->workspace->look(deadline);
    const Sight x11 = m_x11.look(deadline);
    if (m_isSilent)
        return sightOfX11InSilence(x11);
    // What is left in the environment of a session that has ended makes this none of Wayland.
    return QFileInfo::exists(QFile::decodeName(waylandSocketPath())) ? sightOfX11InWayland(x11) : x11;
}

} // namespace kestrin::desktop
