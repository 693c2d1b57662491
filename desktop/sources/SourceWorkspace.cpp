#include "desktop/sources/SourceWorkspace.h"

#include "desktop/applications/WindowedApplication.h"

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace kestrin::desktop {

using namespace foundation;
using namespace engine;

Sight sightOfSilence() {
    return {Sight::Extent::none,
            u"The desktop does not answer, so no running applications can be seen."_s,
            {},
            {}};
}

SourceWorkspace::SourceWorkspace(std::unique_ptr<WindowSource> source)
    : m_source(std::move(source))
    , m_launches(m_records, *m_source) {
    QObject::connect(m_source.get(), &WindowSource::lost, &m_launches, [this] {
        m_isOpen = false;
        m_launches.disconnected();
    });
    QObject::connect(&m_launches, &Launches::wanted, &m_launches,
                     [this] { open(Deadline(desktopPatience)); });
}

bool SourceWorkspace::open(const Deadline &deadline) {
    // Perhaps without having been told yet. Windows of another conversation cannot be compared with these.
    if (m_isOpen && !m_source->isOpen()) {
        m_isOpen = false;
        m_launches.disconnected();
    }
    const bool wasOpen = std::exchange(m_isOpen, m_source->open(deadline));
    if (m_isOpen && !wasOpen)
        m_launches.connected(deadline);
    else if (wasOpen && !m_isOpen)
        m_launches.disconnected();
    return m_isOpen;
}

std::optional<QList<SourceWindow>> SourceWorkspace::windows(const Deadline &deadline) {
    if (!open(deadline))
        return std::nullopt;
    m_launches.catchUp(deadline);
    return m_source->windows(deadline);
}

QList<WorkspaceApplication> SourceWorkspace::list(const Deadline &deadline) {
    const auto all = windows(deadline);
    if (!all)
        return {};
    m_records.refreshForAll();
    QList<WorkspaceApplication> records;
    for (const auto &application : applicationsOf(*all)) {
        if (auto record = m_records.recordOf(application.process, application.claims()))
            records.append(*std::move(record));
    }
    return records;
}

Termination SourceWorkspace::quit(qint32 process, const Deadline &deadline) {
    if (m_records.isGone(process))
        return Termination::gone;
    const auto all = windows(deadline);
    if (!all)
        return ApplicationRecords::unanswered(process);
    const auto applications = applicationsOf(*all);
    const auto application =
        std::find_if(applications.cbegin(), applications.cend(),
                     [&](const auto &candidate) { return candidate.process == process; });
    if (application == applications.cend())
        return Termination::gone;
    m_records.refresh();
    const auto record = m_records.recordOf(process, application->claims());
    if (!record)
        return Termination::gone;
    const bool isAsked = m_patience.acceptsQuitCommand(QuitTarget::of(*record)) ||
                         m_source->close(application->windows, deadline);
    return isAsked ? Termination::delivered : Termination::refused;
}

std::unique_ptr<LaunchSubscription> SourceWorkspace::listen(LaunchHandler handler, const Deadline &deadline) {
    open(deadline);
    return m_launches.subscribe(std::move(handler), deadline);
}

Sight SourceWorkspace::look(const Deadline &deadline) {
    const auto all = windows(deadline);
    if (!all)
        return sightOfSilence();
    const auto unknown = std::count_if(all->cbegin(), all->cend(), [](const SourceWindow &window) {
        return window.isRegular && window.process == 0;
    });
    const Sight sight = m_source->sight();
    if (unknown == 0 || !sight.isFull())
        return sight;
    const QString reason =
        unknown == 1
            ? u"For one open window it cannot be told which application it belongs to."_s
            : u"For %1 open windows it cannot be told which applications they belong to."_s.arg(unknown);
    return {Sight::Extent::partial, reason, u"Close such applications yourself where they matter."_s, {}};
}

} // namespace kestrin::desktop
