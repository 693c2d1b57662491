#pragma once

#include "cli/CommandSession.h"

namespace kestrin::cli {

/// Starts the runtime and prints every new event, a line each, until SIGINT, SIGTERM, SIGHUP or a reader that
/// goes away. Needs the application object; runs its event loop.
ExitStatus runWatch(CommandSurroundings &surroundings, bool json);

} // namespace kestrin::cli
