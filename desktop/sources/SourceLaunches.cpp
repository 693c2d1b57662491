#include "desktop/sources/SourceLaunches.h"

#include "desktop/applications/WindowedApplication.h"

#include <QSet>

#include <utility>

namespace kestrin::desktop {

using namespace foundation;

/// A process that has become an application since the last look is launched, once however many windows it
/// shows. It is remembered for as long as the desktop lists one of them, shown or not.
class SourceLaunches::Finder final : public LaunchFinder {
  public:
    explicit Finder(WindowSource &source) : m_source(source) { Finder::update(); }

    QList<LaunchedApplication> update() override {
        const auto windows = m_source.windows(Deadline(sourcePatience));
        if (!windows)
            return {};
        QList<LaunchedApplication> launches;
        QSet<qint32> now;
        for (const auto &application : applicationsOf(*windows)) {
            now.insert(application.process);
            if (!m_known.contains(application.process))
                launches.append({application.process, application.claims()});
        }
        m_known = std::move(now);
        return launches;
    }

    void forget(qint32 process) override { m_known.remove(process); }

  private:
    WindowSource &m_source;
    QSet<qint32> m_known;
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
