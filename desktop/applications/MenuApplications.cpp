#include "desktop/applications/MenuApplications.h"

#include "desktop/applications/KnownPackagings.h"

#include <QCollator>

#include <algorithm>

namespace kestrin::desktop {

QList<runtime::InstalledApplication> MenuApplications::list() {
    QList<runtime::InstalledApplication> result;
    m_entries.refresh();
    for (const DesktopEntryIndex::Found &found : m_entries.ofMenus()) {
        if (found.entry.name.isEmpty())
            continue;
        result.append(
            {found.entry.name, knownBundleIdentifierOfId(found.id).value_or(found.id), found.entry.icon});
    }
    const QCollator byName;
    std::sort(result.begin(), result.end(),
              [&](const auto &left, const auto &right) { return byName.compare(left.name, right.name) < 0; });
    return result;
}

} // namespace kestrin::desktop
