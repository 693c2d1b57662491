#include "foundation/BaseDirectories.h"

#include <QByteArray>
#include <QList>

namespace kestrin::foundation {

void ignoreRelativeBaseDirectories() {
    for (const char *const name :
         {"XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_STATE_HOME", "XDG_RUNTIME_DIR"}) {
        if (const QByteArray value = qgetenv(name); !value.isEmpty() && !value.startsWith('/'))
            qunsetenv(name);
    }
    for (const char *const name : {"XDG_DATA_DIRS", "XDG_CONFIG_DIRS"}) {
        QList<QByteArray> folders = qgetenv(name).split(':');
        if (folders.removeIf([](const QByteArray &folder) { return !folder.startsWith('/'); }) == 0)
            continue;
        if (folders.isEmpty())
            qunsetenv(name);
        else
            qputenv(name, folders.join(':'));
    }
}

} // namespace kestrin::foundation
