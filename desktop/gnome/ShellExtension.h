// Kestrin's extension of the GNOME shell, as the shell itself knows it.
#pragma once

#include "desktop/gnome/ShellConversation.h"

namespace kestrin::desktop {

enum class ExtensionState {
    unknown,      ///< the shell has not seen it, or does not say
    switchedOff,  ///< by the user, or never switched on
    withAllOff,   ///< the user wants no extensions at all
    incompatible, ///< for another version of the shell
    broken,       ///< the shell could not start it
    running,
};

/// Both names together belong to a shell whose extension runs.
inline const QByteArray shellName = "org.gnome.Shell";
inline const QByteArray extensionName = KESTRIN_WINDOWS_NAME;

/// Questions to an open conversation.
class ShellExtension {
  public:
    explicit ShellExtension(ShellConversation &shell) : m_shell(shell) {}

    ExtensionState state(const foundation::Deadline &deadline);
    /// Whether the shell did it.
    bool setEnabled(bool enabled, const foundation::Deadline &deadline);

    /// Whether it is where a shell looks that begins now.
    static bool isInstalled();

  private:
    ShellConversation &m_shell;
};

} // namespace kestrin::desktop
