// Which application it is that uses a device.
#pragma once

#include "desktop/applications/DesktopEntryIndex.h"
#include "desktop/live/UseSource.h"
#include "engine/workspace/Workspace.h"

#include <QHash>

#include <chrono>

namespace kestrin::desktop {

/// As engine::DeviceUse has it.
struct DeviceUser {
    qint32 process = 0;
    QString name;
    std::optional<QString> identifier;
};

/// Names processes, and knows those again that it has named. Who has windows is called as everywhere else,
/// and others by what the menus know of their program. Main thread only.
class DeviceUsers {
  public:
    /// The workspace outlives this object. It is asked once a second at most, and only about processes that
    /// are new or, five seconds later, still without a window.
    explicit DeviceUsers(engine::Workspace &workspace) : m_workspace(workspace) {}

    /// A helper process is the process whose helper it is: an application does not know its own helpers, and
    /// quits as a whole.
    DeviceUser of(const SourceUse &use);

  private:
    using Clock = std::chrono::steady_clock;

    struct Known {
        quint64 start = 0;
        std::optional<QString> executable;
        DeviceUser user;
        Clock::time_point since;
        bool isForGood = false;
    };

    DeviceUser find(const SourceUse &use);
    static bool isStillCalledSo(const Known &known, const SourceUse &use);
    const engine::WorkspaceApplication *withWindows(qint32 process) const;
    void lookAtWindows();

    engine::Workspace &m_workspace;
    QList<engine::WorkspaceApplication> m_withWindows;
    std::optional<Clock::time_point> m_looked;
    DesktopEntryIndex m_entries;
    QHash<qint32, Known> m_known;
};

} // namespace kestrin::desktop
