// The workspace of macOS: records, quit requests, launches and jumps of the time, as AppKit has them and as
// the engine and the runtime get them. And the icon by which it shows Kestrin.

#include "desktop/clock/SystemTimeChangeWatch.h"
#include "desktop/macos/AppKitWorkspace.h"
#include "tests/macos/MacTests.h"
#include "tests/macos/SampleApplication.h"
#include "tests/support/Test.h"

#include <algorithm>

namespace {

void postLaunch(NSString *name) {
    SampleApplication *application = [SampleApplication named:name process:1];
    postOnWorkspaceCentre(NSWorkspaceDidLaunchApplicationNotification, [NSWorkspace sharedWorkspace],
                          [NSDictionary dictionaryWithObject:application forKey:NSWorkspaceApplicationKey]);
}

/// Hears of launches and remembers the names.
struct Listener {
    explicit Listener(Workspace &workspace)
        : subscription(workspace.subscribeToLaunches([this](const WorkspaceApplication &application) {
            names.append(application.localizedName.value_or(u"none"_s));
        })) {}

    QStringList names;
    std::unique_ptr<LaunchSubscription> subscription;
};

class WorkspaceTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void recordsAndQuitRequests();
    void launchesAreHeardOnce();
    void unsubscribingInsideTheHandler();
    void jumpsOfTheTimeAreTold();
    void iconOfTheBundle();

  private:
    AppKitWorkspace m_workspace;
};

void WorkspaceTest::recordsAndQuitRequests() {
    SampleApplication *zoom = [SampleApplication named:@"Zoom – ünïcode 🎥" process:4711];
    zoom->bundleIdentifier = @"us.zoom.xos";
    zoom->executableURL = [NSURL fileURLWithPath:@"/Applications/zoom us.app/Contents/MacOS/zööm"];
    SampleApplication *agent = [SampleApplication named:@"" process:7];
    agent->activationPolicy = NSApplicationActivationPolicyAccessory;
    agent->bundleIdentifier = @"";
    SampleApplication *nameless = [SampleApplication named:nil process:-1];
    const unichar characters[] = {'a', 0, 'b'};
    SampleApplication *strange = [SampleApplication named:[NSString stringWithCharacters:characters length:3]
                                                  process:3];
    // A policy that a later system may add is not a regular one.
    strange->activationPolicy = static_cast<NSApplicationActivationPolicy>(99);
    listAsRunning([NSArray arrayWithObjects:zoom, agent, nameless, strange, nil]);

    const QList<WorkspaceApplication> expected{
        {ActivationPolicy::regular, u"Zoom – ünïcode 🎥"_s, 4711, u"us.zoom.xos"_s,
         u"/Applications/zoom us.app/Contents/MacOS/zööm"_s},
        {ActivationPolicy::accessory, u""_s, 7, u""_s, std::nullopt},
        {ActivationPolicy::regular, std::nullopt, -1, std::nullopt, std::nullopt},
        {ActivationPolicy::prohibited, QString(reinterpret_cast<const QChar *>(characters), 3), 3,
         std::nullopt, std::nullopt}};
    QCOMPARE(m_workspace.runningApplications(), expected);

    SampleApplication *obedient = [SampleApplication named:@"Obedient" process:10];
    obedient->obeys = YES;
    SampleApplication *stubborn = [SampleApplication named:@"Stubborn" process:11];
    listAsRunning([NSArray arrayWithObjects:obedient, stubborn, nil]);
    QCOMPARE(m_workspace.terminate(10), Termination::delivered);
    QCOMPARE(m_workspace.terminate(11), Termination::refused);
    QCOMPARE(m_workspace.terminate(12), Termination::gone);
    QVERIFY(obedient->requests == 1 && stubborn->requests == 1);
}

void WorkspaceTest::launchesAreHeardOnce() {
    Listener staying(m_workspace);
    Listener leaving(m_workspace);
    postLaunch(@"Zoom");
    QTRY_VERIFY_WITH_TIMEOUT(!staying.names.isEmpty() && !leaving.names.isEmpty(), patience);
    postLaunch(@"Teams");
    leaving.subscription.reset();
    postLaunch(@"Editor");
    QTRY_VERIFY_WITH_TIMEOUT(staying.names.size() > 2, patience);
    QCOMPARE(staying.names, (QStringList{u"Zoom"_s, u"Teams"_s, u"Editor"_s}));
    QCOMPARE(leaving.names, QStringList{u"Zoom"_s});
}

void WorkspaceTest::unsubscribingInsideTheHandler() {
    Listener staying(m_workspace);
    int calls = 0;
    std::unique_ptr<LaunchSubscription> subscription;
    const auto kept = std::make_shared<QString>(u"what the handler holds"_s);
    subscription =
        m_workspace.subscribeToLaunches([&, value = std::weak_ptr(kept), kept](const WorkspaceApplication &) {
            ++calls;
            postLaunch(@"two");
            subscription.reset();
            // The other launch is delivered while this handler is still at work and needs what it holds.
            QTRY_VERIFY_WITH_TIMEOUT(staying.names.size() == 2, patience);
            QVERIFY(!value.expired());
        });
    postLaunch(@"one");
    QTRY_VERIFY_WITH_TIMEOUT(calls > 0 && staying.names.size() == 2, patience);
    QCOMPARE(calls, 1);
    QCOMPARE(kept.use_count(), 1);
}

void WorkspaceTest::jumpsOfTheTimeAreTold() {
    NSNotificationCenter *centre = [NSNotificationCenter defaultCenter];
    auto watch = std::make_unique<SystemTimeChangeWatch>();
    QSignalSpy spy(watch.get(), &TimeChangeWatch::changed);
    [centre postNotificationName:NSSystemClockDidChangeNotification object:nil];
    [centre postNotificationName:NSSystemTimeZoneDidChangeNotification object:nil];
    postOnWorkspaceCentre(NSWorkspaceDidWakeNotification, [NSWorkspace sharedWorkspace], nil);
    QTRY_COMPARE_WITH_TIMEOUT(spy.size(), 3, patience);
    // One that still waits when the watch ends reaches nobody.
    [centre postNotificationName:NSSystemClockDidChangeNotification object:nil];
    watch.reset();
    QCoreApplication::processEvents();
    QCOMPARE(spy.size(), 3);
}

void WorkspaceTest::iconOfTheBundle() {
    NSString *name = [[NSBundle mainBundle] objectForInfoDictionaryKey:@"CFBundleIconFile"];
    NSString *file = [[NSBundle mainBundle] pathForResource:name ofType:nil];
    QList<NSInteger> sizes;
    for (NSBitmapImageRep *picture in [NSImageRep imageRepsWithContentsOfFile:file]) {
        const NSInteger size = [picture pixelsWide];
        sizes.append(size);
        QCOMPARE([[picture colorAtX:size / 2 y:size / 2] alphaComponent], 1.0);
        // Round corners.
        QCOMPARE([[picture colorAtX:size / 9 y:size / 9] alphaComponent], 0.0);
    }
    // Each png2icns puts them in an order of its own.
    std::ranges::sort(sizes);
    QCOMPARE(sizes, (QList<NSInteger>{16, 32, 128, 256, 512, 1024}));
}

} // namespace

KESTRIN_TEST(WorkspaceTest)

#include "tst_workspace.moc"
