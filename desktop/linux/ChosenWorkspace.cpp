#include "desktop/linux/ChosenWorkspace.h"

#include "desktop/linux/SightOfWayland.h"
#include "desktop/wayland/WaylandConnection.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <utility>

using namespace std::chrono_literals;

namespace kestrin::desktop {

using namespace foundation;
using namespace engine;

/// What somebody has subscribed to, wherever it is heard.
class ChosenWorkspace::Subscription final : public LaunchSubscription {
  public:
    Subscription(ChosenWorkspace &workspace, LaunchHandler handler)
        : m_workspace(workspace)
        , m_handler(std::move(handler)) {
        m_workspace.m_subscriptions.append(this);
        renew();
    }
    ~Subscription() override {
        m_workspace.m_subscriptions.removeOne(this);
        if (m_workspace.m_subscriptions.isEmpty())
            m_workspace.m_again.stop();
    }

    void renew() {
        m_parts.clear();
        if (const Candidate *const leader = m_workspace.m_leader) {
            m_parts.push_back(
                leader->workspace->subscribeToLaunches(leader->needsX11 ? exceptThoseOfX11() : m_handler));
        }
        if (m_workspace.usesX11())
            m_parts.push_back(m_workspace.m_x11.subscribeToLaunches(m_handler));
    }

  private:
    /// Who speaks both is heard once.
    LaunchHandler exceptThoseOfX11() const {
        return [&x11 = m_workspace.m_x11, handler = m_handler](const WorkspaceApplication &application) {
            const auto isIt = [&](const WorkspaceApplication &other) {
                return other.processIdentifier == application.processIdentifier;
            };
            if (std::ranges::none_of(x11.runningApplications(), isIt))
                handler(application);
        };
    }

    ChosenWorkspace &m_workspace;
    const LaunchHandler m_handler;
    std::vector<std::unique_ptr<LaunchSubscription>> m_parts;
};

ChosenWorkspace::ChosenWorkspace(std::vector<Candidate> candidates) : m_candidates(std::move(candidates)) {
    QObject::connect(&m_again, &QTimer::timeout, &m_again, [this] { choose(); });
    for (const Candidate &candidate : m_candidates) {
        QObject::connect(&candidate.workspace->source(), &WindowSource::lost, &m_again, [this, &candidate] {
            // Whoever asks something chooses anew anyway.
            if (&candidate == m_leader && !m_subscriptions.isEmpty())
                QMetaObject::invokeMethod(
                    &m_again, [this] { choose(); }, Qt::QueuedConnection);
        });
    }
}

ChosenWorkspace::~ChosenWorkspace() = default;

void ChosenWorkspace::lookAgainLater() {
    if (!m_subscriptions.isEmpty() && !m_again.isActive())
        m_again.start(1min);
}

const ChosenWorkspace::Candidate *ChosenWorkspace::choose() {
    const Deadline deadline(desktopPatience);
    const auto answers = [&deadline](const Candidate &candidate) {
        return candidate.workspace->open(deadline);
    };
    // Opening is quick where it is open already.
    if (!mayFindBetter() && answers(*m_leader)) {
        m_again.stop();
        return m_leader;
    }
    const auto found = std::ranges::find_if(m_candidates, answers);
    const bool isSilent = deadline.remaining() == 0ms;
    follow(found == m_candidates.end() || isSilent ? nullptr : &*found, isSilent);
    if (mayFindBetter())
        lookAgainLater();
    else
        m_again.stop();
    return m_leader;
}

void ChosenWorkspace::follow(const Candidate *leader, bool isSilent) {
    if (m_leader == leader && m_isSilent == isSilent)
        return;
    m_leader = leader;
    m_isSilent = isSilent;
    for (Subscription *const subscription : std::as_const(m_subscriptions))
        subscription->renew();
}

QList<WorkspaceApplication> ChosenWorkspace::runningApplications() {
    const Candidate *const leader = choose();
    QList<WorkspaceApplication> applications;
    if (leader)
        applications = leader->workspace->runningApplications();
    if (!usesX11())
        return applications;
    const QList<WorkspaceApplication> others = m_x11.runningApplications();
    applications.removeIf([&others](const WorkspaceApplication &application) {
        return std::ranges::any_of(others, [&application](const WorkspaceApplication &other) {
            return other.processIdentifier == application.processIdentifier;
        });
    });
    return applications + others;
}

Termination ChosenWorkspace::terminate(qint32 processIdentifier) {
    const Candidate *const leader = choose();
    const auto asked = usesX11() ? m_x11.terminate(processIdentifier) : Termination::gone;
    return asked == Termination::gone && leader ? leader->workspace->terminate(processIdentifier) : asked;
}

std::unique_ptr<LaunchSubscription> ChosenWorkspace::subscribeToLaunches(LaunchHandler handler) {
    choose();
    auto subscription = std::make_unique<Subscription>(*this, std::move(handler));
    if (mayFindBetter())
        lookAgainLater();
    return subscription;
}

Sight ChosenWorkspace::sight() {
    if (const Candidate *const leader = choose())
        return leader->workspace->sight();
    if (m_isSilent)
        return sightOfSilence();
    const Sight x11 = m_x11.sight();
    // What is left in the environment of a session that has ended makes this none of Wayland.
    return QFileInfo::exists(QFile::decodeName(waylandSocketPath())) ? sightOfX11InWayland(x11) : x11;
}

} // namespace kestrin::desktop
