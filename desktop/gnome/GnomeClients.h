#pragma once

#include "desktop/applications/DesktopEntryIndex.h"
#include "desktop/gnome/ShellExtension.h"
#include "desktop/sources/WindowSource.h"

#include <functional>

namespace kestrin::desktop {

/// What can be seen of a GNOME shell that does not tell us its windows: which processes are its clients. It
/// says to everybody that something has changed, and the kernel who is connected. Of these an application of
/// the menus counts as one window, shown or not, and others as none. Nothing can be closed.
class GnomeClients final : public WindowSource {
    Q_OBJECT

  public:
    /// Tells the processes that are connected to the compositor.
    using Clients = std::function<QList<qint32>()>;
    static Clients clientsOfThisSession();

    explicit GnomeClients(Clients clients = clientsOfThisSession());

    bool open(const foundation::Deadline &deadline) override;
    bool isOpen() const override { return m_shell.isOpen(); }
    std::optional<QList<SourceWindow>> windows(const foundation::Deadline &deadline) override;
    bool close(const QList<SourceWindow> &windows, const foundation::Deadline &deadline) override;
    /// As it was at the last call of `windows`.
    engine::Sight sight() override;

  private:
    const Clients m_clients;
    ShellConversation m_shell;
    DesktopEntryIndex m_entries;
    ExtensionState m_extension = ExtensionState::unknown;
};

} // namespace kestrin::desktop
