#pragma once

#include "cli/CommandLine.h"
#include "cli/CommandSession.h"

namespace kestrin::cli {

/// Prints the events that are asked for, newest first; where they are to be followed, oldest first, and then
/// each as it comes until somebody ends it.
ExitStatus runLog(CommandSurroundings &surroundings, const Invocation &call);

} // namespace kestrin::cli
