// The one door to the operating system: which applications run, asking one to quit, and hearing of launches.
#pragma once

#include "engine/workspace/Sight.h"

#include <QList>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace kestrin::engine {

/// How an application takes part in the desktop. Only `regular` ones, those that a Dock or a task bar shows,
/// are ordinary applications.
enum class ActivationPolicy {
    regular = 0,
    accessory = 1,
    prohibited = 2,
};

/// The operating system's record of one running application, unfiltered.
struct WorkspaceApplication {
    ActivationPolicy activationPolicy = ActivationPolicy::regular;
    std::optional<QString> localizedName;
    qint32 processIdentifier = 0;
    std::optional<QString> bundleIdentifier;
    std::optional<QString> executablePath;

    bool operator==(const WorkspaceApplication &) const = default;
};

/// What became of a request to quit.
enum class Termination {
    delivered, ///< which says nothing about what the application does with it
    refused,   ///< it runs, and there was no way to ask it, or a desktop that does not answer
    gone,      ///< no application with this process id can be seen
};

/// A registration for launches; it lasts as long as the object. Destroying it unsubscribes at once: the
/// handler is not called any more, not even for a launch that has already been noticed.
class LaunchSubscription {
  public:
    LaunchSubscription() = default;
    LaunchSubscription(const LaunchSubscription &) = delete;
    LaunchSubscription &operator=(const LaunchSubscription &) = delete;
    virtual ~LaunchSubscription() = default;
};

/// The platform contract. Everything is called on the main thread and answers synchronously; nothing throws,
/// and what cannot be found out is left out of the answer.
class Workspace {
  public:
    using LaunchHandler = std::function<void(const WorkspaceApplication &)>;

    Workspace() = default;
    Workspace(const Workspace &) = delete;
    Workspace &operator=(const Workspace &) = delete;
    virtual ~Workspace() = default;

    /// The current user's running applications in the platform's order.
    virtual QList<WorkspaceApplication> runningApplications() = 0;

    /// Asks the application with this process id to quit the way the user's own Quit or Close would; it may
    /// save, ask or refuse. What runs is looked at anew.
    [[nodiscard]] virtual Termination terminate(qint32 processIdentifier) = 0;

    /// Calls `handler` on the main thread, from the event loop, for every application launched from now on.
    /// The workspace outlives the subscription.
    [[nodiscard]] virtual std::unique_ptr<LaunchSubscription> subscribeToLaunches(LaunchHandler handler) = 0;

    /// How much can be seen here at this moment.
    virtual Sight sight() { return {}; }
};

} // namespace kestrin::engine
