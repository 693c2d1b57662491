#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

namespace kestrin::desktop {

/// A Flatpak application that runs.
struct FlatpakInstance {
    QString applicationId;
    /// The first process inside its sandbox, by its number outside.
    qint32 process = 0;

    bool operator==(const FlatpakInstance &) const = default;
};

/// As Flatpak itself notes them; unless told otherwise in the folder of this session. Those whose process has
/// ended are left out.
QList<FlatpakInstance> runningFlatpaks(const QByteArray &runtimeFolder = qgetenv("XDG_RUNTIME_DIR"),
                                       const QByteArray &procFolder = "/proc");

} // namespace kestrin::desktop
