// What sway tells of its windows, in JSON.
#pragma once

#include "desktop/sources/WindowSource.h"

#include <QByteArray>

#include <optional>

namespace kestrin::desktop {

/// The windows of a tree as `get_tree` answers it (sway-ipc(7)), in its order and at most `mostSwayWindows`.
/// None when it is no JSON. Titles are passed over.
std::optional<QList<SourceWindow>> windowsOfSwayTree(QByteArray json);
inline constexpr qsizetype mostSwayWindows = 10'000;

/// Whether an event of the kind "window" may be about a launch.
bool mayBeSwayLaunch(QByteArray json);

/// Whether the answer to a command says of at least one of its parts that it was done.
bool isSwayCommandDone(QByteArray json);

} // namespace kestrin::desktop
