#pragma once

#include "cli/CommandSession.h"

namespace kestrin::cli {

/// Carries out one call. `arguments` are the words behind the program's name. Answers go to standard output
/// when all of the work is done, sentences about what went wrong to standard error.
ExitStatus runCommandLine(const QStringList &arguments, CommandSurroundings &surroundings);

} // namespace kestrin::cli
