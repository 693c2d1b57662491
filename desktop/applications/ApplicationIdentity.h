// Who an application is: the name that its user knows, and a stable identifier.
#pragma once

#include <QString>

#include <optional>

namespace kestrin::desktop {

class DesktopEntryIndex;
struct ProcessIdentity;
struct ApplicationClaims;

struct ApplicationIdentity {
    /// Empty when nothing tells it.
    QString name;
    /// The catalog's bundle identifier for what the catalog knows, else the desktop-file id; absent when the
    /// application has no desktop entry.
    std::optional<QString> identifier;

    /// From the window that stands for the application, and its process.
    static ApplicationIdentity of(const ApplicationClaims &claims, const ProcessIdentity &process,
                                  DesktopEntryIndex &entries);
};

} // namespace kestrin::desktop
