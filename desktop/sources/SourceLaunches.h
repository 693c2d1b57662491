#pragma once

#include "desktop/applications/Launches.h"
#include "desktop/sources/WindowSource.h"

namespace kestrin::desktop {

/// The launches that a source of windows shows. Main thread only.
class SourceLaunches final : public Launches {
    Q_OBJECT

  public:
    /// Both outlive this object.
    SourceLaunches(ApplicationRecords &records, WindowSource &source);
    ~SourceLaunches() override;

  private:
    class Finder;

    std::unique_ptr<LaunchFinder> startFinding(const foundation::Deadline &deadline) override;

    WindowSource &m_source;
};

} // namespace kestrin::desktop
