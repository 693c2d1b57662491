#include "desktop/live/ServerProcess.h"

#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace kestrin::desktop {

bool isServerProcess(const ProcessIdentity &process) {
    if (!process.executablePath || !process.sandboxId.isEmpty())
        return false;
    // Where only an administrator puts programs.
    static constexpr QLatin1StringView folders[] = {"/usr/"_L1, "/nix/store/"_L1, "/gnu/store/"_L1};
    static constexpr QLatin1StringView names[] = {
        "pipewire"_L1, "pipewire-pulse"_L1, "pipewire-media-session"_L1, "wireplumber"_L1, "pulseaudio"_L1,
        "jackd"_L1,    "jackdbus"_L1};
    const QString &path = *process.executablePath;
    const auto begins = [&path](QLatin1StringView folder) { return path.startsWith(folder); };
    if (std::none_of(std::begin(folders), std::end(folders), begins) || path.startsWith("/usr/local/"_L1))
        return false;
    const QString name = process.executableName();
    return std::find(std::begin(names), std::end(names), name) != std::end(names) ||
           name.startsWith("xdg-desktop-portal"_L1);
}

} // namespace kestrin::desktop
