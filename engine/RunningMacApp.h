#pragma once

#include "foundation/JsonCoding.h"

#include <QString>

#include <optional>

namespace kestrin::engine {

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
            foundation::jsonField("processIdentifier", &RunningMacApp::processIdentifier),
            foundation::jsonField("localizedName", &RunningMacApp::localizedName),
            foundation::jsonField("bundleIdentifier", &RunningMacApp::bundleIdentifier),
            foundation::jsonField("executablePath", &RunningMacApp::executablePath),
        };
    }
};

} // namespace kestrin::engine
