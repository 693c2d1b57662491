#include "desktop/applications/ApplicationRecords.h"

#include "desktop/applications/ApplicationIdentity.h"
#include "desktop/applications/ProcessIdentity.h"

namespace kestrin::desktop {

using namespace engine;

void ApplicationRecords::refreshForAll() {
    refresh();
    m_seen.clear();
}

bool ApplicationRecords::isGone(qint32 process) const {
    // Asking a process for its start takes longer than all the rest of its record, so only the one is asked
    // that matters. What began after it was seen is another one.
    const auto seen = m_seen.constFind(process);
    if (seen == m_seen.cend())
        return false;
    const quint64 start = startOfProcess(process);
    return start == 0 || start > *seen;
}

Termination ApplicationRecords::unanswered(qint32 process) {
    return startOfProcess(process) == 0 ? Termination::gone : Termination::refused;
}

std::optional<WorkspaceApplication> ApplicationRecords::recordOf(qint32 processIdentifier,
                                                                 const ApplicationClaims &claims) {
    const auto process = ProcessIdentity::of(processIdentifier);
    if (process.forwardsWindows())
        return std::nullopt;
    m_seen.insert(processIdentifier, ticksNow());
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
