// What a window says about whose it is.
#pragma once

#include <QString>

#include <utility>

namespace kestrin::desktop {

/// As the window system tells it; absent is empty. Any client may claim anything.
struct ApplicationClaims {
    /// Both parts of X11's WM_CLASS.
    QString instanceName;
    QString className;
    QString gtkApplicationId;
    /// A desktop entry's id or path.
    QString kdeDesktopFile;
    /// The desktop-file id of the sandbox in which the window's client runs, as the desktop itself knows it.
    QString sandboxId;

    /// Whether the window says whose it is.
    bool isNamed() const {
        return !className.isEmpty() || !instanceName.isEmpty() || !gtkApplicationId.isEmpty() ||
               !kdeDesktopFile.isEmpty() || !sandboxId.isEmpty();
    }
    /// The window of a site that a browser shows as an application. It names its site where others name
    /// themselves.
    bool isSite() const { return instanceName.startsWith(QLatin1StringView("crx_")); }
    bool operator==(const ApplicationClaims &) const = default;
    /// Of an application's windows the first of the best stands for it.
    bool isWorseThan(const ApplicationClaims &other) const {
        return std::pair(isNamed(), !isSite()) < std::pair(other.isNamed(), !other.isSite());
    }
};

} // namespace kestrin::desktop
