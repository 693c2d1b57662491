#include "desktop/gnome/GnomeClients.h"

#include "desktop/applications/ProcessApplication.h"
#include "desktop/applications/ProcessIdentity.h"
#include "desktop/bus/BusNames.h"
#include "desktop/wayland/SocketOwners.h"
#include "desktop/wayland/SocketPeers.h"
#include "desktop/wayland/WaylandConnection.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace kestrin::desktop {

using namespace foundation;
using namespace engine;

namespace {

const QByteArray introspect = "org.gnome.Shell.Introspect";

struct Remedy {
    QString sentence;
    Sight::Help help;
};

Remedy remedyFor(ExtensionState state) {
    using Help = Sight::Help;
    switch (state) {
    case ExtensionState::switchedOff:
        return {u"Allow Kestrin to see them, here or by \"kestrinctl desktop enable\"."_s, Help::allow};
    case ExtensionState::running:
        return {
            u"GNOME tells the installed Kestrin alone; allow this one too, here or by \"kestrinctl desktop "
            "enable\"."_s,
            Help::allow};
    case ExtensionState::withAllOff:
        return {u"You have switched off all extensions of GNOME, and so Kestrin's. Switch them on in the "
                u"application "
                "Extensions."_s,
                Help::read};
    case ExtensionState::incompatible:
    case ExtensionState::broken:
        return {u"Kestrin's extension of GNOME does not work with this version of it."_s, Help::read};
    case ExtensionState::unknown:
        break;
    }
    if (ShellExtension::isInstalled())
        return {
            u"Allow Kestrin to see them, here or by \"kestrinctl desktop enable\", and then log out and in "
            "once."_s,
            Help::allow};
    return {u"Kestrin's package brings an extension by which GNOME tells them."_s, Help::read};
}

} // namespace

GnomeClients::GnomeClients(Clients clients) : m_clients(std::move(clients)) {
    connect(&m_shell, &ShellConversation::told, this, &GnomeClients::changed);
    connect(&m_shell, &ShellConversation::left, this, &GnomeClients::lost);
}

GnomeClients::Clients GnomeClients::clientsOfThisSession() {
    return [owners = SocketOwners()]() mutable {
        const QByteArray socket = waylandSocketPath();
        return owners.of(peersOfSockets({socket}).value(socket));
    };
}

bool GnomeClients::open(const Deadline &deadline) {
    if (m_shell.isOpen())
        return true;
    if (!m_shell.open({shellName, introspect}, deadline))
        return false;
    m_shell.hear(introspect);
    return true;
}

std::optional<QList<SourceWindow>> GnomeClients::windows(const Deadline &deadline) {
    m_shell.follow();
    // X11 is asked afterwards, and may be as silent.
    m_extension = ShellExtension(m_shell).state(Deadline(deadline.remaining() / 2));
    if (!m_shell.isOpen())
        return std::nullopt;
    const QList<qint32> clients = m_clients();
    m_entries.refresh();
    std::optional<BusNames> names;
    QHash<qint32, QString> applications;
    for (const qint32 process : clients) {
        const auto busNames = [&] {
            if (!names)
                names = BusNames::all(deadline);
            return names->of(process);
        };
        if (const auto found = applicationOfProcess(process, m_entries, busNames))
            applications.insert(process, found->id);
    }
    QList<SourceWindow> windows;
    for (const qint32 process : clients) {
        const QString id = applications.value(process);
        // A helper of an application is no other one.
        if (id.isEmpty() || applications.value(parentOfProcess(process)) == id)
            continue;
        SourceWindow window{static_cast<quint64>(process), process, {}, true};
        window.claims.kdeDesktopFile = id;
        windows.append(window);
    }
    return windows;
}

bool GnomeClients::close(const QList<SourceWindow> & /*windows*/, const Deadline & /*deadline*/) {
    return false;
}

Sight GnomeClients::sight() {
    const Remedy remedy = remedyFor(m_extension);
    return {
        Sight::Extent::partial,
        u"GNOME does not tell which windows are open, so some applications run unseen, and few can be asked "
        "to quit."_s,
        remedy.sentence, remedy.help};
}

} // namespace kestrin::desktop
