#pragma once

#include "foundation/JsonCoding.h"

#include <QString>

#include <optional>

namespace kestrin {

struct WorkspaceApplication;

/// A snapshot of one running application.
struct RunningMacApp {
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
