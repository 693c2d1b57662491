// Which application a process is that shows no window of its own, by what the system knows of it.
#pragma once

#include "desktop/applications/DesktopEntryIndex.h"

#include <QStringList>

#include <functional>

namespace kestrin::desktop {

/// An application of the menus, for which the evidence is, strongest first: its sandbox, the scope in which
/// the desktop has started it, a name on the session bus that is its id, its executable, and the script that
/// its interpreter runs. `busNames` is asked for at most once, and only if it comes to that.
std::optional<DesktopEntryIndex::Found> applicationOfProcess(qint32 process, DesktopEntryIndex &entries,
                                                             const std::function<QStringList()> &busNames);

} // namespace kestrin::desktop
