#include "desktop/sources/SourceLaunches.h"

#include "desktop/applications/WindowedApplication.h"

#include <QHash>
#include <QSet>

#include <optional>
#include <utility>

namespace kestrin::desktop {

using namespace foundation;

/// A process that has become an application since the last look is launched, once however many windows it
/// shows. It is remembered for as long as the desktop lists one of them; who has nothing but new ones was
/// gone in between. What the first answer tells of is no launch, also where it comes late.
class SourceLaunches::Finder final : public LaunchFinder {
  public:
    Finder(WindowSource &source, const Deadline &deadline) : m_source(source) { Finder::update(deadline); }

    QList<LaunchedApplication> update(const Deadline &deadline) override {
        const auto windows = m_source.windows(deadline);
        m_isBehind = !windows;
        if (!windows)
            return {};
        QList<LaunchedApplication> launches;
        Known now;
        for (const auto &application : applicationsOf(*windows)) {
            QSet<quint64> &shown = now[application.process];
            for (const SourceWindow &window : application.windows)
                shown.insert(window.id);
            if (m_known && !shown.intersects(m_known->value(application.process)))
                launches.append({application.process, application.claims()});
        }
        m_known = std::move(now);
        return launches;
    }

    bool isBehind() const override { return m_isBehind; }

    bool knows(qint32 process) const override { return m_known && m_known->contains(process); }

    void forget(qint32 process) override {
        if (m_known)
            m_known->remove(process);
    }

  private:
    /// The windows of each application.
    using Known = QHash<qint32, QSet<quint64>>;

    WindowSource &m_source;
    std::optional<Known> m_known;
    bool m_isBehind = false;
};

SourceLaunches::SourceLaunches(ApplicationRecords &records, WindowSource &source)
    : Launches(records)
    , m_source(source) {
    connect(&source, &WindowSource::changed, this, [this] {
        if (!isWatching())
            return;
        findLaunches(Deadline(desktopPatience));
        tellLaunches();
    });
}

SourceLaunches::~SourceLaunches() {
    stop();
}

std::unique_ptr<LaunchFinder> SourceLaunches::startFinding(const Deadline &deadline) {
    return std::make_unique<Finder>(m_source, deadline);
}

} // namespace kestrin::desktop
