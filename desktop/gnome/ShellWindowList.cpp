#include "desktop/gnome/ShellWindowList.h"

#include <array>

namespace kestrin::desktop {

namespace {

QString textOf(const char *text) {
    return QString::fromUtf8(text, static_cast<qsizetype>(qstrnlen(text, mostShellText)));
}

/// With the reader inside the window. False when it is something else.
bool readWindow(sd_bus_message *answer, SourceWindow &window) {
    quint32 id = 0;
    std::array<const char *, 4> texts{};
    auto &[desktopFile, className, instanceName, sandboxId] = texts;
    int canClose = 0;
    int isRegular = 0;
    if (sd_bus_message_read(answer, "uissssbb", &id, &window.process, &desktopFile, &className, &instanceName,
                            &sandboxId, &canClose, &isRegular) <= 0)
        return false;
    window.id = id;
    window.claims.kdeDesktopFile = textOf(desktopFile);
    window.claims.className = textOf(className);
    window.claims.instanceName = textOf(instanceName);
    window.claims.sandboxId = textOf(sandboxId);
    window.isRegular = isRegular != 0;
    return true;
}

} // namespace

std::optional<QList<SourceWindow>> windowsOfShell(sd_bus_message *answer) {
    if (sd_bus_message_enter_container(answer, 'a', "(uissssbb)") < 0)
        return std::nullopt;
    QList<SourceWindow> windows;
    while (windows.size() < mostShellWindows && sd_bus_message_enter_container(answer, 'r', "uissssbb") > 0) {
        SourceWindow window;
        if (!readWindow(answer, window) || sd_bus_message_exit_container(answer) < 0)
            break;
        windows.append(window);
    }
    return windows;
}

} // namespace kestrin::desktop
