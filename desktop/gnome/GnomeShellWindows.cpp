#include "desktop/gnome/GnomeShellWindows.h"

#include "desktop/gnome/ShellExtension.h"
#include "desktop/gnome/ShellWindowList.h"

namespace kestrin::desktop {

using namespace foundation;

namespace {

constexpr const char windowsInterface[] = KESTRIN_WINDOWS_NAME "1";

ShellMethod method(const char *member) {
    return {KESTRIN_WINDOWS_PATH, windowsInterface, member};
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
                [&windows](sd_bus_message *reply) { windows = windowsOfShell(reply); });
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
