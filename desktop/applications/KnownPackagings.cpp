#include "desktop/applications/KnownPackagings.h"

#include <QLatin1StringView>

using namespace Qt::StringLiterals;

namespace kestrin::desktop {

namespace {

struct Packaging {
    QLatin1StringView name;
    QLatin1StringView bundleIdentifier;
};

constexpr auto zoom = "us.zoom.xos"_L1;
constexpr auto teams = "com.microsoft.teams2"_L1;
constexpr auto chrome = "com.google.Chrome"_L1;

constexpr Packaging entryNames[] = {
    {"zoom"_L1, zoom},                                       // the maker's .deb and .rpm
    {"us.zoom.zoom"_L1, zoom},                               // Flatpak
    {"zoom-client_zoom-client"_L1, zoom},                    // Snap
    {"teams"_L1, teams},                                     // the maker's former .deb and .rpm
    {"com.microsoft.teams"_L1, teams},                       // its Flatpak
    {"teams_teams"_L1, teams},                               // its Snap
    {"teams-for-linux"_L1, teams},                           // community client
    {"com.github.ismaelmartinez.teams_for_linux"_L1, teams}, // its Flatpak
    {"teams-for-linux_teams-for-linux"_L1, teams},           // its Snap
    {"google-chrome"_L1, chrome},                            // the maker's .deb and .rpm
    {"google-chrome-stable"_L1, chrome},                     // packages of several distributions
    {"com.google.chrome"_L1, chrome}, // Flatpak, and a second entry of newer .deb files
};

constexpr Packaging windowClasses[] = {
    {"zoom"_L1, zoom},
    {"microsoft teams - preview"_L1, teams},
    {"teams-for-linux"_L1, teams},
    {"google-chrome"_L1, chrome},
};

template <std::size_t count>
std::optional<QString> find(const Packaging (&packagings)[count], const QString &name) {
    for (const Packaging &packaging : packagings) {
        if (name.compare(packaging.name, Qt::CaseInsensitive) == 0)
            return QString(packaging.bundleIdentifier);
    }
    return std::nullopt;
}

} // namespace

std::optional<QString> knownBundleIdentifierOfId(const QString &desktopFileId) {
    return find(entryNames, desktopFileId);
}

std::optional<QString> knownBundleIdentifierOfClass(const QString &windowClass) {
    return find(windowClasses, windowClass);
}

} // namespace kestrin::desktop
