#include "desktop/gnome/GnomeShellWindows.h"

#include "desktop/gnome/ShellExtension.h"

#include <array>

namespace kestrin::desktop {

using namespace foundation;

namespace {

constexpr const char windowsInterface[] = KESTRIN_WINDOWS_NAME "1";
/// Far beyond what anybody has open.
constexpr qsizetype maximumWindows = 5000;
constexpr std::size_t maximumText = 1000;

ShellMethod method(const char *member) {
    return {KESTRIN_WINDOWS_PATH, windowsInterface, member};
}

QString textOf(const char *text) {
    return QString::fromUtf8(text, static_cast<qsizetype>(qstrnlen(text, maximumText)));
}

/// With the reader inside the window. False when it is something else.
bool readWindow(sd_bus_message *reply, SourceWindow &window) {
    quint32 id = 0;
    std::array<const char *, 4> texts{};
    auto &[desktopFile, className, instanceName, sandboxId] = texts;
    int canClose = 0;
    int isRegular = 0;
    if (sd_bus_message_read(reply, "uissssbb", &id, &window.process, &desktopFile, &className, &instanceName,
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

std::optional<QList<SourceWindow>> readWindows(sd_bus_message *reply) {
    if (sd_bus_message_enter_container(reply, 'a', "(uissssbb)") < 0)
        return std::nullopt;
    QList<SourceWindow> windows;
    while (windows.size() < maximumWindows && sd_bus_message_enter_container(reply, 'r', "uissssbb") > 0) {
        SourceWindow window;
        if (!readWindow(reply, window) || sd_bus_message_exit_container(reply) < 0)
            break;
        windows.append(window);
    }
    return windows;
}

} // namespace

GnomeShellWindows::GnomeShellWindows() {
    connect(&m_shell, &ShellConversation::told, this, &GnomeShellWindows::changed);
    connect(&m_shell, &ShellConversation::left, this, &GnomeShellWindows::lost);
}

bool GnomeShellWindows::open(const Deadline &deadline) {
    if (m_shell.isOpen())
        return true;
    if (!m_shell.open({shellName, extensionName}, deadline))
        return false;
    m_shell.hear(windowsInterface);
    // It does not answer everybody.
    const auto ignore = [](sd_bus_message * /*reply*/) {};
    if (m_shell.ask(method("List"), deadline, ignore))
        return true;
    m_shell.close();
    return false;
}

std::optional<QList<SourceWindow>> GnomeShellWindows::windows(const Deadline &deadline) {
    std::optional<QList<SourceWindow>> windows;
    m_shell.follow();
    m_shell.ask(method("List"), deadline,
                [&windows](sd_bus_message *reply) { windows = readWindows(reply); });
    if (!windows)
        m_shell.giveUp();
    return windows;
}

bool GnomeShellWindows::close(const QList<SourceWindow> &windows, const Deadline &deadline) {
    const auto write = [&windows](sd_bus_message *message) {
        QList<quint32> ids;
        for (const SourceWindow &window : windows)
            ids.append(static_cast<quint32>(window.id));
        return sd_bus_message_append_array(message, 'u', ids.constData(),
                                           static_cast<std::size_t>(ids.size()) * sizeof(quint32)) >= 0;
    };
    quint32 asked = 0;
    const auto read = [&asked](sd_bus_message *reply) { sd_bus_message_read(reply, "u", &asked); };
    return m_shell.ask(method("Quit"), deadline, read, write) && asked > 0;
}

} // namespace kestrin::desktop
