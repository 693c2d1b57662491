#include "desktop/macos/AppKitWorkspace.h"

#include "desktop/macos/NSStringText.h"
#include "desktop/macos/ObjectReference.h"

#import <AppKit/AppKit.h>

namespace kestrin::desktop {

using namespace engine;

namespace {

std::optional<QString> optionalText(NSString *text) {
    return text ? std::optional(fromNSString(text)) : std::nullopt;
}

ActivationPolicy activationPolicyOf(NSRunningApplication *application) {
    switch ([application activationPolicy]) {
    case NSApplicationActivationPolicyRegular:
        return ActivationPolicy::regular;
    case NSApplicationActivationPolicyAccessory:
        return ActivationPolicy::accessory;
    default:
        return ActivationPolicy::prohibited;
    }
}

WorkspaceApplication translated(NSRunningApplication *application) {
    return {activationPolicyOf(application), optionalText([application localizedName]),
            [application processIdentifier], optionalText([application bundleIdentifier]),
            optionalText([[application executableURL] path])};
}

std::optional<WorkspaceApplication> launchedApplication(NSNotification *notification) {
    const id application = [[notification userInfo] objectForKey:NSWorkspaceApplicationKey];
    if (![application isKindOfClass:[NSRunningApplication class]])
        return std::nullopt;
    return translated(application);
}

class AppKitLaunchSubscription final : public LaunchSubscription {
  public:
    explicit AppKitLaunchSubscription(Workspace::LaunchHandler handler);
    ~AppKitLaunchSubscription() override;

  private:
    struct Registration {
        Workspace::LaunchHandler handler;
        bool isActive = true;
    };

    static void deliver(const std::weak_ptr<const Registration> &target, NSNotification *notification);

    std::shared_ptr<Registration> m_registration;
    ObjectReference<id> m_token;
};

AppKitLaunchSubscription::AppKitLaunchSubscription(Workspace::LaunchHandler handler)
    : m_registration(std::make_shared<Registration>(Registration{std::move(handler)})) {
    @autoreleasepool {
        // A notification may wait in the main queue when the token is removed, and the centre may keep the
        // block for longer than that, so the block itself keeps nothing alive.
        const std::weak_ptr<const Registration> target = m_registration;
        m_token.reset([[[NSWorkspace sharedWorkspace] notificationCenter]
            addObserverForName:NSWorkspaceDidLaunchApplicationNotification
                        object:nil
                         queue:[NSOperationQueue mainQueue]
                    usingBlock:^(NSNotification *notification) {
                      deliver(target, notification);
                    }]);
    }
}

AppKitLaunchSubscription::~AppKitLaunchSubscription() {
    m_registration->isActive = false;
    @autoreleasepool {
        [[[NSWorkspace sharedWorkspace] notificationCenter] removeObserver:m_token.get()];
    }
}

void AppKitLaunchSubscription::deliver(const std::weak_ptr<const Registration> &target,
                                       NSNotification *notification) {
    // The handler may end the subscription; it has to last until it returns, but is not to be called again.
    const auto registration = target.lock();
    if (!registration || !registration->isActive)
        return;
    if (const auto application = launchedApplication(notification))
        registration->handler(*application);
}

} // namespace

QList<WorkspaceApplication> AppKitWorkspace::runningApplications() {
    QList<WorkspaceApplication> applications;
    @autoreleasepool {
        for (NSRunningApplication *application in [[NSWorkspace sharedWorkspace] runningApplications])
            applications.append(translated(application));
    }
    return applications;
}

Termination AppKitWorkspace::terminate(qint32 processIdentifier) {
    @autoreleasepool {
        for (NSRunningApplication *application in [[NSWorkspace sharedWorkspace] runningApplications]) {
            if ([application processIdentifier] == processIdentifier)
                return [application terminate] ? Termination::delivered : Termination::refused;
        }
    }
    return Termination::gone;
}

std::unique_ptr<LaunchSubscription> AppKitWorkspace::subscribeToLaunches(LaunchHandler handler) {
    return std::make_unique<AppKitLaunchSubscription>(std::move(handler));
}

} // namespace kestrin::desktop
