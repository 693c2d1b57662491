#include "desktop/quitting/GtkQuit.h"

namespace kestrin::desktop {

namespace {

constexpr const char actions[] = "org.gtk.Actions";

/// Where a GTK application with this identifier has its actions.
QByteArray objectPathOf(const QByteArray &applicationId) {
    QByteArray path = '/' + applicationId;
    path.replace('.', '/');
    path.replace('-', '_');
    return path;
}

} // namespace

void GtkQuit::search(const QuitTarget &target, const OwnBusNames &names) {
    for (const QuitTarget::GtkApplication &claimed : target.gtkApplications) {
        if (const QByteArray owner = names.ownerIfOwn(claimed.busName); !owner.isNull())
            searchActions({owner, claimed.objectPath});
    }
    const QHash<QByteArray, QByteArray> owners = names.wellKnownNames();
    for (auto name = owners.cbegin(); name != owners.cend(); ++name)
        searchActions({name.value(), objectPathOf(name.key())});
}

void GtkQuit::searchActions(const QuitTarget::GtkApplication &application) {
    if (m_asked.contains(application))
        return;
    m_asked.append(application);
    const QByteArray owner = application.busName;
    const QByteArray path = application.objectPath;
    const auto answered = [this, owner, path](sd_bus_message *reply) {
        int isEnabled = 0;
        const char *parameterType = nullptr;
        if (sd_bus_message_enter_container(reply, 'r', "bgav") > 0 &&
            sd_bus_message_read(reply, "bg", &isEnabled, &parameterType) > 0 && isEnabled != 0 &&
            parameterType[0] == '\0')
            offer({owner, path, actions, "Activate"}, "sava{sv}", "quit", 0U, 0U);
    };
    ask({owner, path, actions, "Describe"}, answered, "s", "quit");
}

} // namespace kestrin::desktop
