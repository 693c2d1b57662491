// The desktop as the window manager presents it at one moment.
#pragma once

#include "desktop/applications/WindowedApplication.h"
#include "desktop/quitting/QuitCommands.h"
#include "desktop/x11/WindowFacts.h"
#include "desktop/x11/X11Connection.h"

#include <QByteArray>
#include <QList>

#include <optional>

namespace kestrin::desktop {

struct DesktopWindow {
    quint32 id = 0;
    /// 0 when it cannot be told.
    qint32 process = 0;
    WindowFacts facts;

    /// Whether the window makes its process an application.
    bool counts() const { return process != 0 && facts.isRegular(); }
};

inline const ApplicationClaims &claimsOf(const DesktopWindow &window) {
    return window.facts.claims;
}

using DesktopApplication = WindowedApplication<DesktopWindow>;

struct DesktopReading {
    /// All managed windows, in the order in which they were first shown.
    QList<DesktopWindow> windows;

    QList<DesktopApplication> applications() const { return applicationsOf(windows); }
    std::optional<DesktopApplication> application(qint32 process) const;

    /// A window that vanished meanwhile is left out. No reading when the server did not answer in time, at
    /// once where it is known to be silent.
    static std::optional<DesktopReading> take(X11Connection &connection,
                                              const foundation::Deadline &deadline);
};

/// The GTK applications that the windows say they belong to, each once.
QList<QuitTarget::GtkApplication> gtkApplicationsOf(X11Connection &connection,
                                                    const QList<DesktopWindow> &windows,
                                                    const foundation::Deadline &deadline);

/// Those of the windows that exist and are shown or minimised, whether or not a window manager lists them.
QList<quint32> windowsInUse(X11Connection &connection, const QList<quint32> &windows,
                            const foundation::Deadline &deadline);

} // namespace kestrin::desktop
