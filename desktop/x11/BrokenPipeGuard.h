// Writing to a server that may have gone away.
#pragma once

#include <csignal>

namespace kestrin::desktop {

/// xcb writes to its socket in a way that raises SIGPIPE when the server has gone, which ends a process that
/// has made no arrangements. While an object of this class lives, the calling thread turns that into an
/// ordinary error, and the process's own arrangements stay as they are.
class BrokenPipeGuard {
  public:
    BrokenPipeGuard();
    BrokenPipeGuard(const BrokenPipeGuard &) = delete;
    BrokenPipeGuard &operator=(const BrokenPipeGuard &) = delete;
    ~BrokenPipeGuard();

  private:
    sigset_t m_brokenPipe;
    sigset_t m_before;
    bool m_wasPending = false;
};

} // namespace kestrin::desktop
