// Checks over real windows: who is asked, how, and what is said about it.

#include "engine/JSONMacActivityLogStore.h"
#include "engine/workspace/x11/X11Workspace.h"
#include "runtime/JSONUserDefaults.h"
#include "runtime/MacProtectionRuntime.h"
#include "tests/support/SampleApp.h"
#include "tests/support/Samples.h"

#include <QTemporaryDir>
#include <QTest>

#include <csignal>

using namespace Qt::StringLiterals;
using namespace kestrin;
using samples::installEntry;
using samples::SampleApp;

namespace {

bool isListed(Workspace &workspace, const SampleApp &app) {
    const auto applications = workspace.runningApplications();
    return std::any_of(
        applications.cbegin(), applications.cend(),
        [&](const WorkspaceApplication &application) { return application.processIdentifier == app.pid(); });
}

QStringList options(const QString &text) {
    return text.split(u' ');
}

} // namespace

class X11QuittingTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase();
    void previewAsksNobody();
    void enforcedCheck();
    void everyWindowIsAsked();
    void onlyWindowsThatTakePart();
    void onlyRegularWindows();
    void whoAsksFirstStays();
    void whoHasGone();
    void withoutAWindowManager();

  private:
    QTemporaryDir m_folder;
    JSONUserDefaults m_defaults{m_folder.filePath(u"user-defaults.json"_s)};
    X11Workspace m_workspace;

    MacProtectionSurroundings surroundings() {
        return {m_folder.filePath(u"Kestrin"_s), &m_workspace, systemTime, nullptr, nullptr};
    }
};

void X11QuittingTest::initTestCase() {
    installEntry(u"Zoom"_s, u"Zoom"_s, {u"StartupWMClass=zoom"_s});
    installEntry(u"teams-for-linux"_s, u"Teams for Linux"_s);
    installEntry(u"google-chrome"_s, u"Google Chrome"_s);
    installEntry(u"otter"_s, u"Otter AI"_s);
    installEntry(u"editor"_s, u"Editor"_s);
}

void X11QuittingTest::previewAsksNobody() {
    const SampleApp zoom(options(u"--class zoom/zoom"_s));
    QTRY_VERIFY(isListed(m_workspace, zoom));
    MacProtectionRuntime runtime(m_defaults, surroundings());
    QCOMPARE(samples::messages(runtime.performCheck(true).events).last(),
             u"Preview: Kestrin would ask Zoom to quit while Privacy Mode is on."_s);
    // A request would come before this one.
    QVERIFY(m_workspace.terminate(zoom.pid()));
    QTRY_VERIFY(!zoom.isRunning());
    QCOMPARE(zoom.said(u"asked 1"_s), 1);
}

void X11QuittingTest::enforcedCheck() {
    const SampleApp zoom(options(u"--class zoom/zoom"_s));
    QTRY_VERIFY(isListed(m_workspace, zoom));
    const SampleApp refusing(options(u"--class teams-for-linux/teams-for-linux --manner no-delete"_s));
    QTRY_VERIFY(isListed(m_workspace, refusing));
    const SampleApp browser(options(u"--class google-chrome/Google-chrome"_s));
    QTRY_VERIFY(isListed(m_workspace, browser));
    const SampleApp ignoring(options(u"--class otter/Otter --manner ignores"_s));
    QTRY_VERIFY(isListed(m_workspace, ignoring));
    const SampleApp editor(options(u"--class editor/Editor"_s));
    QTRY_VERIFY(isListed(m_workspace, editor));

    MacProtectionRuntime runtime(m_defaults, surroundings());
    const PrivacyModeRunResult result = runtime.performCheck(false);
    QCOMPARE(
        samples::messages(result.events),
        (QStringList{
            u"Privacy Mode is on. Evaluating Mac protected apps."_s,
            u"Zoom matches Zoom risk categories: Video call, Microphone, Camera."_s,
            u"Asked Zoom to quit."_s,
            u"Teams for Linux matches Microsoft Teams risk categories: Video call, Microphone, Camera."_s,
            u"Could not ask Teams for Linux to quit."_s,
            u"Google Chrome matches Google Chrome risk categories: Browser, Microphone, Camera."_s,
            u"Otter AI matches Otter AI risk categories: AI tool, Microphone."_s,
            u"Asked Otter AI to quit."_s,
        }));
    QTRY_VERIFY(!zoom.isRunning());
    QTRY_COMPARE(ignoring.said(u"asked 1"_s), 1);
    // Whoever was asked after them has dealt with it, so they would have closed by now.
    for (const SampleApp *untouched : {&refusing, &browser, &editor}) {
        QVERIFY(untouched->isRunning() && isListed(m_workspace, *untouched));
        QCOMPARE(untouched->said(u"asked 1"_s), 0);
    }
    QVERIFY(isListed(m_workspace, ignoring));
    QCOMPARE(runtime.logStore().recent(1).first().message, u"Asked Otter AI to quit."_s);
}

void X11QuittingTest::everyWindowIsAsked() {
    const SampleApp app(options(u"--class zoom/zoom --windows 3"_s));
    QTRY_COMPARE(app.said(u"mapped 3"_s), 1);
    QTRY_VERIFY(isListed(m_workspace, app));
    const SampleApp fence;
    QTRY_VERIFY(isListed(m_workspace, fence));
    QVERIFY(m_workspace.terminate(app.pid()));
    QTRY_VERIFY(!app.isRunning());
    for (const QString &line : {u"asked 1"_s, u"asked 2"_s, u"asked 3"_s})
        QCOMPARE(app.said(line), 1);
}

void X11QuittingTest::onlyWindowsThatTakePart() {
    const SampleApp app(options(u"--window --manner no-delete --window"_s));
    QTRY_COMPARE(app.said(u"mapped 2"_s), 1);
    const SampleApp fence;
    QTRY_VERIFY(isListed(m_workspace, fence));
    QVERIFY(m_workspace.terminate(app.pid()));
    QTRY_COMPARE(app.said(u"closed 2"_s), 1);
    // The window that is left refuses; a kill on behalf of it would end the process.
    QVERIFY(!m_workspace.terminate(app.pid()));
    QVERIFY(m_workspace.terminate(fence.pid()));
    QTRY_VERIFY(!fence.isRunning());
    QVERIFY(app.isRunning() && isListed(m_workspace, app));
    QCOMPARE(app.said(u"asked 1"_s), 0);
}

void X11QuittingTest::onlyRegularWindows() {
    const SampleApp app(options(u"--window --type dock --window"_s));
    QTRY_COMPARE(app.said(u"mapped 2"_s), 1);
    QTRY_VERIFY(isListed(m_workspace, app));
    QVERIFY(m_workspace.terminate(app.pid()));
    QTRY_COMPARE(app.said(u"closed 2"_s), 1);
    QTRY_VERIFY(!isListed(m_workspace, app));
    QVERIFY(!m_workspace.terminate(app.pid()));
    QCOMPARE(app.said(u"asked 1"_s), 0);
    QVERIFY(app.isRunning());
}

void X11QuittingTest::whoAsksFirstStays() {
    const SampleApp app(options(u"--manner asks"_s));
    QTRY_VERIFY(isListed(m_workspace, app));
    QVERIFY(m_workspace.terminate(app.pid()));
    QTRY_COMPARE(app.said(u"dialog 1"_s), 1);
    QVERIFY(m_workspace.terminate(app.pid()));
    QTRY_COMPARE(app.said(u"asked 1"_s), 2);
    QVERIFY(app.isRunning() && isListed(m_workspace, app));
}

void X11QuittingTest::whoHasGone() {
    SampleApp zoom(options(u"--class zoom/zoom"_s));
    QTRY_VERIFY(isListed(m_workspace, zoom));
    zoom.kill();
    QTRY_VERIFY(!isListed(m_workspace, zoom));
    QVERIFY(!m_workspace.terminate(zoom.pid()));
    QVERIFY(!m_workspace.terminate(0));
    QVERIFY(!m_workspace.terminate(-1));
}

void X11QuittingTest::withoutAWindowManager() {
    const SampleApp zoom(options(u"--class zoom/zoom"_s));
    QTRY_VERIFY(isListed(m_workspace, zoom));
    MacProtectionRuntime runtime(m_defaults, surroundings());
    samples::desktop::stopWindowManager(SIGKILL);
    // Nobody passes the request on, so it must not be told as delivered.
    QVERIFY(!m_workspace.terminate(zoom.pid()));
    for (const QString &message : samples::messages(runtime.performCheck(false).events))
        QVERIFY2(!message.startsWith(u"Asked"_s), qUtf8Printable(message));
    samples::desktop::startWindowManager();
    QTRY_VERIFY(isListed(m_workspace, zoom));
    QVERIFY(m_workspace.terminate(zoom.pid()));
    QTRY_VERIFY(!zoom.isRunning());
}

QTEST_GUILESS_MAIN(X11QuittingTest)
#include "tst_x11quitting.moc"
