// The commands to quit that an application itself offers on the session bus.
#pragma once

#include "engine/workspace/Workspace.h"

#include <QByteArray>
#include <QList>
#include <QStringList>

#include <chrono>

namespace kestrin::desktop {

/// Who is to be asked, and what is known of it. What its windows say is only believed of its own process.
struct QuitTarget {
    struct GtkApplication {
        QByteArray busName;
        QByteArray objectPath;

        bool operator==(const GtkApplication &) const = default;
    };

    qint32 process = 0;
    /// What may stand beside "Quit" in its menu.
    QStringList names;
    QList<GtkApplication> gtkApplications;

    static QuitTarget of(const engine::WorkspaceApplication &application);
};

/// What all members of the bus together may cost when they are silent.
inline constexpr std::chrono::milliseconds busPatience{400};

/// Asks the application through the first of its own commands that it accepts: the action "quit" of a GTK
/// application, the quit of a KDE or Qt application, the Quit or Exit of its tray menu. False when it has
/// none, accepts none, or does not answer in time; then its windows are what is left. Main thread only;
/// connects to the bus for as long as it takes.
bool acceptsQuitCommand(const QuitTarget &target, std::chrono::milliseconds patience = busPatience);

} // namespace kestrin::desktop
