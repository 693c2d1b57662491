#pragma once

namespace kestrin::foundation {

/// Forgets the folders of the environment (XDG_DATA_HOME, XDG_CONFIG_HOME and their like) that are relative:
/// they would be other folders for every place that a program is started from, and are to be ignored. A HOME
/// that is relative or missing becomes the one that the system knows of this user. Everybody who asks later,
/// libraries included, finds the defaults instead. To be called first in main().
void ignoreRelativeBaseDirectories();

} // namespace kestrin::foundation
