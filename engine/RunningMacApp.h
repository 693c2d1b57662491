#pragma once

#include "foundation/JsonCoding.h"

#include <QObject>
#include <QString>

#include <optional>

namespace kestrin {

struct WorkspaceApplication;

/// A snapshot of one running application.
struct RunningMacApp {
    Q_GADGET
    Q_PROPERTY(QString id READ id CONSTANT)
    Q_PROPERTY(qint32 processIdentifier MEMBER processIdentifier CONSTANT)
    Q_PROPERTY(QString localizedName MEMBER localizedName CONSTANT)

  public:
    qint32 processIdentifier = 0;
    QString localizedName;
    std::optional<QString> bundleIdentifier;
    std::optional<QString> executablePath;

    /// The bundle identifier, or the name when there is none, "-" and the process id.
    QString id() const;

    /// The snapshot of a platform record; none when the application is no regular one or has no name.
    static std::optional<RunningMacApp> from(const WorkspaceApplication &application);

    bool operator==(const RunningMacApp &) const = default;

    static constexpr auto jsonFields() {
        return std::tuple{
            jsonField("processIdentifier", &RunningMacApp::processIdentifier),
            jsonField("localizedName", &RunningMacApp::localizedName),
            jsonField("bundleIdentifier", &RunningMacApp::bundleIdentifier),
            jsonField("executablePath", &RunningMacApp::executablePath),
        };
    }
};

} // namespace kestrin
