#pragma once

#include "cli/CommandTable.h"

namespace kestrin::cli {

/// What `kestrinctl --help` prints.
QString programHelp();

/// What `kestrinctl COMMAND --help` prints.
QString commandHelp(const CommandDescription &command);

/// What `kestrinctl --version` prints.
QString versionText();

} // namespace kestrin::cli
