#pragma once

#include "desktop/gnome/ShellConversation.h"
#include "desktop/sources/WindowSource.h"

namespace kestrin::desktop {

/// The windows of a GNOME shell whose extension of ours runs and answers us.
class GnomeShellWindows final : public WindowSource {
    Q_OBJECT

  public:
    GnomeShellWindows();

    bool open(const foundation::Deadline &deadline) override;
    bool isOpen() const override { return m_shell.isOpen(); }
    std::optional<QList<SourceWindow>> windows(const foundation::Deadline &deadline) override;
    /// An application all of whose windows these are gets its own Quit from the shell.
    bool close(const QList<SourceWindow> &windows, const foundation::Deadline &deadline) override;

  private:
    ShellConversation m_shell;
};

} // namespace kestrin::desktop
