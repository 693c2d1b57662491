// The workspace of macOS: records, quit requests and launches, as AppKit has them and as the engine gets
// them.

#include "engine/MacActivityLogStoring.h"
#include "engine/NSWorkspaceAppInventoryService.h"
#include "engine/NSWorkspaceRiskAppActionPerformer.h"
#include "engine/PrivacyModeSettingsStoring.h"
#include "engine/RiskAppRelaunchMonitor.h"
#include "engine/workspace/appkit/AppKitWorkspace.h"
#include "tests/macos/MacTests.h"
#include "tests/macos/SampleApplication.h"
#include "tests/support/Samples.h"

#include <QTest>
#include <QThread>

using namespace Qt::StringLiterals;
using namespace kestrin;

namespace {

void postLaunch(NSRunningApplication *application) {
    postOnWorkspaceCentre(NSWorkspaceDidLaunchApplicationNotification, [NSWorkspace sharedWorkspace],
                          [NSDictionary dictionaryWithObject:application forKey:NSWorkspaceApplicationKey]);
}

void postLaunchWith(NSDictionary *userInfo) {
    postOnWorkspaceCentre(NSWorkspaceDidLaunchApplicationNotification, nil, userInfo);
}

/// Hears of launches and remembers the names.
struct Listener {
    explicit Listener(Workspace &workspace)
        : subscription(workspace.subscribeToLaunches([this](const WorkspaceApplication &application) {
            names.append(application.localizedName.value_or(u"none"_s));
            onMainThread = onMainThread && QThread::currentThread() == QCoreApplication::instance()->thread();
        })) {}

    QStringList names;
    bool onMainThread = true;
    std::unique_ptr<LaunchSubscription> subscription;
};

class WorkspaceTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void init() { m_pool = [[NSAutoreleasePool alloc] init]; }
    void cleanup() { [m_pool release]; }

    void recordsAreTranslated();
    void absentAndStrangeValues();
    void onlyRegularNamedApplicationsAreListed();
    void quitRequests();
    void launchIsHeardOnce();
    void nothingIsHeardAfterUnsubscribing();
    void unsubscribingInsideTheHandler();
    void otherNotificationsAreIgnored();
    void monitorReacts();

  private:
    NSAutoreleasePool *m_pool = nil;
    AppKitWorkspace m_workspace;
};

void WorkspaceTest::recordsAreTranslated() {
    SampleApplication *zoom = [SampleApplication named:@"Zoom – ünïcode 🎥" process:4711];
    zoom->identifier = @"us.zoom.xos";
    zoom->executable = [[NSURL fileURLWithPath:@"/Applications/zoom us.app/Contents/MacOS/zööm"] retain];
    SampleApplication *agent = [SampleApplication named:@"Agent" process:7];
    agent->policy = NSApplicationActivationPolicyAccessory;
    SampleApplication *daemon = [SampleApplication named:@"Daemon" process:8];
    daemon->policy = NSApplicationActivationPolicyProhibited;
    listAsRunning([NSArray arrayWithObjects:zoom, agent, daemon, nil]);

    const QList<WorkspaceApplication> expected{
        {ActivationPolicy::regular, u"Zoom – ünïcode 🎥"_s, 4711, u"us.zoom.xos"_s,
         u"/Applications/zoom us.app/Contents/MacOS/zööm"_s},
        {ActivationPolicy::accessory, u"Agent"_s, 7, std::nullopt, std::nullopt},
        {ActivationPolicy::prohibited, u"Daemon"_s, 8, std::nullopt, std::nullopt}};
    QCOMPARE(m_workspace.runningApplications(), expected);
}

void WorkspaceTest::absentAndStrangeValues() {
    SampleApplication *bare = [SampleApplication named:nil process:-1];
    SampleApplication *empty = [SampleApplication named:@"" process:2];
    empty->identifier = @"";
    const unichar characters[] = {'a', 0, 'b'};
    SampleApplication *strange = [SampleApplication named:[NSString stringWithCharacters:characters length:3]
                                                  process:3];
    // A policy that a later system may add is not a regular one.
    strange->policy = 99;
    listAsRunning([NSArray arrayWithObjects:bare, empty, strange, nil]);

    const auto applications = m_workspace.runningApplications();
    QCOMPARE(applications.size(), 3);
    QCOMPARE(applications[0],
             (WorkspaceApplication{ActivationPolicy::regular, std::nullopt, -1, std::nullopt, std::nullopt}));
    QCOMPARE(applications[1],
             (WorkspaceApplication{ActivationPolicy::regular, u""_s, 2, u""_s, std::nullopt}));
    QCOMPARE(applications[2].localizedName, QString(reinterpret_cast<const QChar *>(characters), 3));
    QCOMPARE(applications[2].activationPolicy, ActivationPolicy::prohibited);

    listAsRunning(nil);
    QCOMPARE(m_workspace.runningApplications(), {});
}

void WorkspaceTest::onlyRegularNamedApplicationsAreListed() {
    SampleApplication *agent = [SampleApplication named:@"Zoom" process:1];
    agent->policy = NSApplicationActivationPolicyAccessory;
    listAsRunning([NSArray arrayWithObjects:[SampleApplication named:@"B" process:2], agent,
                                            [SampleApplication named:nil process:3],
                                            [SampleApplication named:@"" process:4],
                                            [SampleApplication named:@"A" process:5], nil]);
    NSWorkspaceAppInventoryService service(m_workspace);
    QCOMPARE(service.runningApps(), (QList<RunningMacApp>{samples::app(u"B"_s, 2), samples::app(u"A"_s, 5)}));
}

void WorkspaceTest::quitRequests() {
    SampleApplication *obedient = [SampleApplication named:@"Obedient" process:10];
    obedient->obeys = YES;
    SampleApplication *stubborn = [SampleApplication named:@"Stubborn" process:11];
    SampleApplication *second = [SampleApplication named:@"Second" process:11];
    second->obeys = YES;
    listAsRunning([NSArray arrayWithObjects:obedient, stubborn, second, nil]);

    NSWorkspaceRiskAppActionPerformer performer(m_workspace);
    QCOMPARE(performer.requestQuit(samples::app(u"Obedient"_s, 10)).message, u"Asked Obedient to quit."_s);
    QCOMPARE(performer.requestQuit(samples::app(u"Stubborn"_s, 11)).message,
             u"Could not ask Stubborn to quit."_s);
    QVERIFY(!m_workspace.terminate(12));
    QCOMPARE(obedient->requests, 1);
    QCOMPARE(stubborn->requests, 1);
    QCOMPARE(second->requests, 0);
}

void WorkspaceTest::launchIsHeardOnce() {
    Listener first(m_workspace);
    Listener second(m_workspace);
    postLaunch([SampleApplication named:@"Zoom" process:1]);
    // Launches come from the event loop, not from inside the poster.
    QCOMPARE(first.names, {});
    QTRY_VERIFY_WITH_TIMEOUT(!first.names.isEmpty() && !second.names.isEmpty(), patience);
    postLaunch([SampleApplication named:@"Teams" process:2]);
    QTRY_VERIFY_WITH_TIMEOUT(first.names.size() > 1 && second.names.size() > 1, patience);
    QCOMPARE(first.names, (QStringList{u"Zoom"_s, u"Teams"_s}));
    QCOMPARE(second.names, first.names);
    QVERIFY(first.onMainThread);
}

void WorkspaceTest::nothingIsHeardAfterUnsubscribing() {
    Listener staying(m_workspace);
    Listener leaving(m_workspace);
    postLaunch([SampleApplication named:@"before" process:1]);
    leaving.subscription.reset();
    postLaunch([SampleApplication named:@"after" process:2]);
    QTRY_VERIFY_WITH_TIMEOUT(staying.names.size() == 2, patience);
    QCOMPARE(leaving.names, {});
}

void WorkspaceTest::unsubscribingInsideTheHandler() {
    Listener staying(m_workspace);
    int calls = 0;
    std::unique_ptr<LaunchSubscription> subscription;
    const auto kept = std::make_shared<QString>(u"what the handler holds"_s);
    subscription =
        m_workspace.subscribeToLaunches([&, value = std::weak_ptr(kept), kept](const WorkspaceApplication &) {
            ++calls;
            postLaunch([SampleApplication named:@"two" process:2]);
            subscription.reset();
            // The other launch is delivered while this handler is still at work and needs what it holds.
            QTRY_VERIFY_WITH_TIMEOUT(staying.names.size() == 2, patience);
            QVERIFY(!value.expired());
        });
    postLaunch([SampleApplication named:@"one" process:1]);
    QTRY_VERIFY_WITH_TIMEOUT(calls > 0 && staying.names.size() == 2, patience);
    QCOMPARE(calls, 1);
    QCOMPARE(kept.use_count(), 1);
}

void WorkspaceTest::otherNotificationsAreIgnored() {
    Listener listener(m_workspace);
    SampleApplication *application = [SampleApplication named:@"Zoom" process:1];
    postLaunchWith(nil);
    postLaunchWith([NSDictionary dictionary]);
    postLaunchWith([NSDictionary dictionaryWithObject:@"Zoom" forKey:NSWorkspaceApplicationKey]);
    postLaunchWith([NSDictionary dictionaryWithObject:[NSNull null] forKey:NSWorkspaceApplicationKey]);
    postLaunchWith([NSDictionary dictionaryWithObject:application forKey:@"NSApplicationName"]);
    NSDictionary *good = [NSDictionary dictionaryWithObject:application forKey:NSWorkspaceApplicationKey];
    postOnWorkspaceCentre(NSWorkspaceDidTerminateApplicationNotification, nil, good);
    [[NSNotificationCenter defaultCenter] postNotificationName:NSWorkspaceDidLaunchApplicationNotification
                                                        object:nil
                                                      userInfo:good];
    // Whoever sends it.
    postOnWorkspaceCentre(NSWorkspaceDidLaunchApplicationNotification, @"somebody", good);
    QTRY_VERIFY_WITH_TIMEOUT(!listener.names.isEmpty(), patience);
    postLaunch([SampleApplication named:@"last" process:2]);
    QTRY_VERIFY_WITH_TIMEOUT(listener.names.contains(u"last"_s), patience);
    QCOMPARE(listener.names, (QStringList{u"Zoom"_s, u"last"_s}));
}

void WorkspaceTest::monitorReacts() {
    SampleApplication *zoom = [SampleApplication named:@"zoom.us" process:4711];
    zoom->identifier = @"us.zoom.xos";
    zoom->obeys = YES;
    SampleApplication *agent = [SampleApplication named:@"Zoom" process:4712];
    agent->policy = NSApplicationActivationPolicyAccessory;
    listAsRunning([NSArray arrayWithObjects:agent, zoom, nil]);

    const auto log = std::make_shared<InMemoryMacActivityLogStore>();
    RiskAppRelaunchMonitor monitor(
        RiskAppCatalog{RiskAppCatalog::defaultDefinitions()},
        std::make_shared<InMemoryPrivacyModeSettingsStore>(PrivacyModeSettings{true, {}}),
        std::make_shared<NSWorkspaceRiskAppActionPerformer>(m_workspace), log, false, {}, m_workspace);
    monitor.start();
    postLaunch(agent);
    postLaunch(zoom);
    QTRY_VERIFY_WITH_TIMEOUT(!log->recent(8).isEmpty(), patience);
    QCOMPARE(samples::messages(log->recent(8)),
             (QStringList{u"Asked zoom.us to quit."_s, u"zoom.us relaunched while Privacy Mode is on."_s}));
    QCOMPARE(log->recent(1).first().bundleIdentifier, u"us.zoom.xos"_s);
    QCOMPARE(zoom->requests, 1);
    QCOMPARE(agent->requests, 0);
}

} // namespace

int runWorkspaceTests(const QStringList &arguments) {
    WorkspaceTest test;
    return QTest::qExec(&test, arguments);
}

#include "tst_workspace.moc"
