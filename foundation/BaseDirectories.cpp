#include "foundation/BaseDirectories.h"

#include <QByteArray>
#include <QList>

#include <pwd.h>
#include <unistd.h>

namespace kestrin::foundation {

namespace {

bool isAbsolute(const QByteArray &folder) {
    return folder.startsWith('/');
}

void findHome() {
    if (isAbsolute(qgetenv("HOME")))
        return;
    const passwd *const user = ::getpwuid(::geteuid());
    // Without one the home is the root, as Qt has it.
    qputenv("HOME", user && isAbsolute(user->pw_dir) ? user->pw_dir : "/");
}

} // namespace

void ignoreRelativeBaseDirectories() {
    findHome();
    for (const char *const name :
         {"XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_STATE_HOME", "XDG_RUNTIME_DIR"}) {
        if (const QByteArray value = qgetenv(name); !value.isEmpty() && !isAbsolute(value))
            qunsetenv(name);
    }
    for (const char *const name : {"XDG_DATA_DIRS", "XDG_CONFIG_DIRS"}) {
        QList<QByteArray> folders = qgetenv(name).split(':');
        if (folders.removeIf([](const QByteArray &folder) { return !isAbsolute(folder); }) == 0)
            continue;
        if (folders.isEmpty())
            qunsetenv(name);
        else
            qputenv(name, folders.join(':'));
    }
}

} // namespace kestrin::foundation
