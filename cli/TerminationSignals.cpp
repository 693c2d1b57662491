#include "cli/TerminationSignals.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

namespace kestrin::cli {

namespace {

constexpr std::array caught{SIGINT, SIGTERM, SIGHUP};

int readableDescriptor = -1;
volatile std::sig_atomic_t wakeUpDescriptor = -1;

void noteSignal(int) {
    const int before = errno;
    const char byte = 0;
    // A full pipe wakes the loop as well as one more byte would.
    [[maybe_unused]] const ssize_t ignored = ::write(wakeUpDescriptor, &byte, 1);
    errno = before;
}

volatile std::sig_atomic_t heldBack = 0;

void holdBack(int number) {
    heldBack = number;
}

bool isIgnored(int number) {
    struct sigaction now {};
    return ::sigaction(number, nullptr, &now) == 0 && now.sa_handler == SIG_IGN;
}

void handle(int number, void (*handler)(int)) {
    struct sigaction action {};
    action.sa_handler = handler;
    ::sigemptyset(&action.sa_mask);
    ::sigaction(number, &action, nullptr);
}

} // namespace

TerminationSignals::TerminationSignals() : m_notifier(QSocketNotifier::Read) {
    if (::pipe(m_pipe) != 0)
        qFatal("No pipe for signals could be made.");
    for (const int end : m_pipe) {
        ::fcntl(end, F_SETFD, FD_CLOEXEC);
        ::fcntl(end, F_SETFL, O_NONBLOCK);
    }
    wakeUpDescriptor = m_pipe[1];
    readableDescriptor = m_pipe[0];
    m_notifier.setSocket(m_pipe[0]);
    connect(&m_notifier, &QSocketNotifier::activated, this, [this] {
        m_notifier.setEnabled(false);
        Q_EMIT received();
    });
    m_notifier.setEnabled(true);
    for (const int number : caught) {
        if (number != SIGHUP || !isIgnored(SIGHUP))
            handle(number, noteSignal);
    }
}

TerminationSignals::~TerminationSignals() {
    for (const int number : caught) {
        if (!isIgnored(number))
            handle(number, SIG_DFL);
    }
    m_notifier.setEnabled(false);
    wakeUpDescriptor = readableDescriptor = -1;
    ::close(m_pipe[0]);
    ::close(m_pipe[1]);
}

HeldBackSignals::HeldBackSignals() {
    heldBack = 0;
    for (std::size_t i = 0; i < caught.size(); ++i) {
        ::sigaction(caught.at(i), nullptr, &m_before.at(i));
        if (m_before.at(i).sa_handler == SIG_DFL)
            handle(caught.at(i), holdBack);
    }
}

HeldBackSignals::~HeldBackSignals() {
    for (std::size_t i = 0; i < caught.size(); ++i)
        ::sigaction(caught.at(i), &m_before.at(i), nullptr);
    if (heldBack != 0)
        ::raise(heldBack);
}

int TerminationSignals::descriptor() {
    return readableDescriptor;
}

} // namespace kestrin::cli
