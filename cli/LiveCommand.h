#pragma once

#include "cli/CommandLine.h"
#include "cli/CommandSession.h"

namespace kestrin::cli {

/// Prints who uses microphone, camera or screen; where that is to be followed, one line for each, and then
/// one for each that starts or stops until somebody ends it.
ExitStatus runLive(CommandSurroundings &surroundings, const Invocation &call);

} // namespace kestrin::cli
