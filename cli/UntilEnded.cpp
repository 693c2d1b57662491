#include "cli/UntilEnded.h"

#include <QCoreApplication>

#include <sys/stat.h>

namespace kestrin::cli {

namespace {

/// Only a pipe or a socket has a reader that can go away.
bool hasReader(int descriptor) {
    struct stat status {};
    return ::fstat(descriptor, &status) == 0 && (S_ISFIFO(status.st_mode) || S_ISSOCK(status.st_mode));
}

} // namespace

UntilEnded::UntilEnded(Output &out) : m_out(out), m_readerLeft(out.descriptor(), QSocketNotifier::Exception) {
    QObject::connect(&m_signals, &TerminationSignals::received, [this] { end(); });
    m_readerLeft.setEnabled(hasReader(out.descriptor()));
    QObject::connect(&m_readerLeft, &QSocketNotifier::activated, [this] { end(); });
}

void UntilEnded::end() {
    m_isEnded = true;
    QCoreApplication::quit();
}

void UntilEnded::run() {
    // quit() before exec() would be forgotten.
    if (!m_isEnded && m_out.flush())
        QCoreApplication::exec();
}

} // namespace kestrin::cli
