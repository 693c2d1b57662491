#include "cli/StandardStreams.h"

#include <QByteArray>
#include <QtGlobal>

#include <fcntl.h>
#include <langinfo.h>
#include <unistd.h>

#include <cerrno>
#include <clocale>
#include <csignal>

namespace kestrin::cli {

void prepareStandardStreams() {
    std::signal(SIGPIPE, SIG_IGN);
    for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor) {
        // The lowest free number is taken, which is this one.
        if (::fcntl(descriptor, F_GETFD) < 0 && errno == EBADF)
            ::open("/dev/null", O_RDWR);
    }
}

bool wantsColour(int descriptor) {
    // Set but empty is the same as not set.
    return ::isatty(descriptor) != 0 && qgetenv("NO_COLOR").isEmpty() && qgetenv("TERM") != "dumb";
}

void preferUtf8() {
    std::setlocale(LC_ALL, "");
    if (QByteArray(::nl_langinfo(CODESET)) == "UTF-8")
        return;
    // LC_ALL would overrule LC_CTYPE.
    qputenv(qgetenv("LC_ALL").isEmpty() ? "LC_CTYPE" : "LC_ALL", "C.UTF-8");
}

} // namespace kestrin::cli
