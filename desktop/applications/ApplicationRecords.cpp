#include "desktop/applications/ApplicationRecords.h"

#include "desktop/applications/ApplicationIdentity.h"
#include "desktop/applications/ProcessIdentity.h"

namespace kestrin::desktop {

using namespace engine;

void ApplicationRecords::refreshForAll() {
    refresh();
    m_starts.clear();
}

bool ApplicationRecords::isGone(qint32 process) const {
    const auto start = m_starts.constFind(process);
    return start != m_starts.cend() && *start != startOfProcess(process);
}

std::optional<WorkspaceApplication> ApplicationRecords::recordOf(qint32 processIdentifier,
                                                                 const ApplicationClaims &claims) {
    const auto process = ProcessIdentity::of(processIdentifier);
    if (process.forwardsWindows())
        return std::nullopt;
    m_starts.insert(processIdentifier, startOfProcess(processIdentifier));
    const auto identity = ApplicationIdentity::of(claims, process, m_entries);
    WorkspaceApplication record;
    if (!identity.name.isEmpty())
        record.localizedName = identity.name;
    record.processIdentifier = processIdentifier;
    record.bundleIdentifier = identity.identifier;
    record.executablePath = process.executablePath;
    return record;
}

} // namespace kestrin::desktop
