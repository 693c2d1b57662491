// The commands to quit that an application itself offers on the session bus.
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QList>
#include <QString>
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
};

/// What all members of the bus together may cost when they are silent.
inline constexpr std::chrono::milliseconds busPatience{400};

/// Asks the application through the first of its own commands that it accepts: the action "quit" of a GTK
/// application, the quit of a KDE or Qt application, the Quit or Exit of its tray menu. False when it has
/// none, accepts none, or does not answer in time; then its windows are what is left. Main thread only;
/// connects to the bus for as long as it takes.
bool acceptsQuitCommand(const QuitTarget &target, std::chrono::milliseconds patience = busPatience);

/// Where a GTK application with this identifier has its actions.
QByteArray gtkObjectPath(const QByteArray &applicationId);

/// A tray icon by the text under which it is registered; the path is absent from many.
struct TrayIconAddress {
    QByteArray busName;
    QByteArray objectPath;

    static TrayIconAddress parse(const QByteArray &text);
    bool operator==(const TrayIconAddress &) const = default;
};

/// Whether a process with this /proc/PID/maps quits like its user would when QCoreApplication::quit is
/// called: since Qt 6 that asks the windows first, before that it ends the program and what is not saved is
/// lost.
bool asksBeforeItQuits(QByteArrayView memoryMap);

} // namespace kestrin::desktop
