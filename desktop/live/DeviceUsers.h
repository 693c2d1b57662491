// Which application it is that uses a device.
#pragma once

#include "desktop/applications/DesktopEntryIndex.h"
#include "desktop/live/UseSource.h"

#include <QHash>

namespace kestrin::desktop {

/// As engine::DeviceUse has it.
struct DeviceUser {
    qint32 process = 0;
    QString name;
    std::optional<QString> identifier;
};

/// Names processes, and knows those again that it has named. Main thread only.
class DeviceUsers {
  public:
    /// A helper process is the process whose helper it is: an application does not know its own helpers, and
    /// quits as a whole.
    DeviceUser of(const SourceUse &use);

  private:
    struct Known {
        quint64 start = 0;
        std::optional<QString> executable;
        DeviceUser user;
    };

    DeviceUser find(const SourceUse &use);

    DesktopEntryIndex m_entries;
    QHash<qint32, Known> m_known;
};

} // namespace kestrin::desktop
