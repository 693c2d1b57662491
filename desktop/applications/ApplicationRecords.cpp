#include "desktop/applications/ApplicationRecords.h"

#include "desktop/applications/ApplicationIdentity.h"
#include "desktop/applications/ProcessIdentity.h"

namespace kestrin::desktop {

using namespace engine;

std::optional<WorkspaceApplication> ApplicationRecords::recordOf(qint32 processIdentifier,
                                                                 const ApplicationClaims &claims) {
    const auto process = ProcessIdentity::of(processIdentifier);
    if (process.forwardsWindows())
        return std::nullopt;
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
