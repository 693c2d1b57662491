#include "desktop/gnome/ShellExtension.h"

#include "desktop/bus/BusValues.h"

#include <QStandardPaths>

#include <optional>

using namespace Qt::StringLiterals;

namespace kestrin::desktop {

using namespace foundation;

namespace {

ShellMethod extensions(const char *member) {
    return {"/org/gnome/Shell", "org.gnome.Shell.Extensions", member};
}

bool writeUuid(sd_bus_message *message) {
    return sd_bus_message_append(message, "s", KESTRIN_GNOME_EXTENSION) >= 0;
}

/// The number under "state" of a{sv}; none in the answer about an extension that the shell does not know.
std::optional<int> readState(sd_bus_message *reply) {
    if (sd_bus_message_enter_container(reply, 'a', "{sv}") <= 0)
        return std::nullopt;
    while (sd_bus_message_enter_container(reply, 'e', "sv") > 0) {
        double state = 0;
        if (readText(reply) != "state")
            sd_bus_message_skip(reply, "v");
        else if (sd_bus_message_read(reply, "v", "d", &state) > 0)
            return static_cast<int>(state);
        if (sd_bus_message_exit_container(reply) < 0)
            break;
    }
    return std::nullopt;
}

} // namespace

ExtensionState ShellExtension::state(const Deadline &deadline) {
    std::optional<int> number;
    const auto read = [&number](sd_bus_message *reply) { number = readState(reply); };
    if (!m_shell.ask(extensions("GetExtensionInfo"), deadline, read, writeUuid) || !number)
        return ExtensionState::unknown;
    switch (*number) {
    case 1:
        return ExtensionState::running;
    case 3:
        return ExtensionState::broken;
    case 4:
        return ExtensionState::incompatible;
    default:
        break;
    }
    int areAllowed = 1;
    m_shell.ask(
        {"/org/gnome/Shell", "org.freedesktop.DBus.Properties", "Get"}, deadline,
        [&areAllowed](sd_bus_message *reply) { sd_bus_message_read(reply, "v", "b", &areAllowed); },
        [](sd_bus_message *message) {
            return sd_bus_message_append(message, "ss", "org.gnome.Shell.Extensions",
                                         "UserExtensionsEnabled") >= 0;
        });
    return areAllowed != 0 ? ExtensionState::switchedOff : ExtensionState::withAllOff;
}

bool ShellExtension::setEnabled(bool enabled, const Deadline &deadline) {
    int isDone = 0;
    const auto read = [&isDone](sd_bus_message *reply) { sd_bus_message_read(reply, "b", &isDone); };
    return m_shell.ask(extensions(enabled ? "EnableExtension" : "DisableExtension"), deadline, read,
                       writeUuid) &&
           isDone != 0;
}

bool ShellExtension::isInstalled() {
    return !QStandardPaths::locate(QStandardPaths::GenericDataLocation,
                                   u"gnome-shell/extensions/" KESTRIN_GNOME_EXTENSION "/metadata.json"_s)
                .isEmpty();
}

} // namespace kestrin::desktop
