#include "desktop/sources/SourceLaunches.h"

#include "desktop/applications/WindowedApplication.h"

#include <QHash>
#include <QSet>

#include <utility>

namespace kestrin::desktop {

using namespace foundation;

/// A process that has become an application since the last look is launched, once however many windows it
/// shows. It is remembered for as long as the desktop lists one of them; who has nothing but new ones was
/// gone in between.
class SourceLaunches::Finder final : public LaunchFinder {
  public:
    explicit Finder(WindowSource &source) : m_source(source) { Finder::update(); }

    QList<LaunchedApplication> update() override {
        const auto windows = m_source.windows(Deadline(sourcePatience));
        if (!windows)
            return {};
        QList<LaunchedApplication> launches;
        QHash<qint32, QSet<quint64>> now;
        for (const auto &application : applicationsOf(*windows)) {
            QSet<quint64> &shown = now[application.process];
            for (const SourceWindow &window : application.windows)
                shown.insert(window.id);
            if (!shown.intersects(m_known.value(application.process)))
                launches.append({application.process, application.claims()});
        }
        m_known = std::move(now);
        return launches;
    }

    void forget(qint32 process) override { m_known.remove(process); }

  private:
    WindowSource &m_source;
    /// The windows of each application.
    QHash<qint32, QSet<quint64>> m_known;
};

SourceLaunches::SourceLaunches(ApplicationRecords &records, WindowSource &source)
    : Launches(records)
    , m_source(source) {
    connect(&source, &WindowSource::changed, this, [this] {
        if (!isWatching())
            return;
        findLaunches();
        tellLaunches();
    });
}

SourceLaunches::~SourceLaunches() {
    stop();
}

std::unique_ptr<LaunchFinder> SourceLaunches::startFinding() {
    return std::make_unique<Finder>(m_source);
}

} // namespace kestrin::desktop
