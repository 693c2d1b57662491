#include "desktop/x11/BrokenPipeGuard.h"

#include <pthread.h>

#include <ctime>

namespace kestrin::desktop {

namespace {

bool isPending() {
    sigset_t pending;
    return ::sigpending(&pending) == 0 && sigismember(&pending, SIGPIPE) == 1;
}

} // namespace

BrokenPipeGuard::BrokenPipeGuard() {
    sigemptyset(&m_brokenPipe);
    sigaddset(&m_brokenPipe, SIGPIPE);
    m_wasPending = isPending();
    ::pthread_sigmask(SIG_BLOCK, &m_brokenPipe, &m_before);
}

BrokenPipeGuard::~BrokenPipeGuard() {
    // The signal of one's own write is always pending for the writing thread; it must not come later.
    if (!m_wasPending && isPending()) {
        const timespec now{};
        ::sigtimedwait(&m_brokenPipe, nullptr, &now);
    }
    ::pthread_sigmask(SIG_SETMASK, &m_before, nullptr);
}

} // namespace kestrin::desktop
