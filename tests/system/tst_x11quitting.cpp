// Checks over real windows: who is asked, how, and what is said about it.

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
using samples::running;
using samples::SampleApp;

class X11QuittingTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void previewThenEnforcedCheck();
    void whichWindowsAreAsked_data();
    void whichWindowsAreAsked();
    void whoAsksFirstStays();
    void withoutAWindowManager();

  private:
    QTemporaryDir m_folder;
    JSONUserDefaults m_defaults{m_folder.filePath(u"user-defaults.json"_s)};
    X11Workspace m_workspace;
    MacProtectionRuntime m_runtime{
        m_defaults, {m_folder.filePath(u"Kestrin"_s), &m_workspace, systemTime, nullptr, nullptr}};
};

void X11QuittingTest::previewThenEnforcedCheck() {
    installEntry(u"Zoom"_s, u"Zoom"_s, {u"StartupWMClass=zoom"_s});
    installEntry(u"teams-for-linux"_s, u"Teams for Linux"_s);
    installEntry(u"google-chrome"_s, u"Google Chrome"_s);
    installEntry(u"otter"_s, u"Otter AI"_s);
    const SampleApp zoom(u"--class zoom/zoom"_s);
    QTRY_COMPARE(running(m_workspace).size(), 1);
    const SampleApp refusing(u"--class teams-for-linux/teams-for-linux --manner no-delete"_s);
    QTRY_COMPARE(running(m_workspace).size(), 2);
    const SampleApp browser(u"--class google-chrome/Google-chrome"_s);
    QTRY_COMPARE(running(m_workspace).size(), 3);
    const SampleApp ignoring(u"--class otter/Otter --manner ignores"_s);
    QTRY_COMPARE(running(m_workspace).size(), 4);
    const SampleApp editor(u"--class editor/Editor"_s);
    QTRY_COMPARE(running(m_workspace).size(), 5);

    QCOMPARE(samples::messages(m_runtime.performCheck(true).events).last(),
             u"Preview: Kestrin would ask Otter AI to quit while Privacy Mode is on."_s);
    QCOMPARE(
        samples::messages(m_runtime.performCheck(false).events),
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
    // Whoever was asked last has dealt with it, so the others would have by now.
    QTRY_COMPARE(ignoring.said(u"asked 1"_s), 1);
    for (const SampleApp *untouched : {&refusing, &browser, &editor})
        QCOMPARE(untouched->said(u"asked 1"_s), 0);
    QCOMPARE(running(m_workspace),
             (QList<qint32>{refusing.pid(), browser.pid(), ignoring.pid(), editor.pid()}));
    // Once, so the preview did not ask.
    QVERIFY(m_workspace.terminate(editor.pid()));
    QTRY_VERIFY(!editor.isRunning());
    QCOMPARE(ignoring.said(u"asked 1"_s), 1);
    for (const qint32 nobody : {zoom.pid(), 0, -1})
        QVERIFY(!m_workspace.terminate(nobody));
}

void X11QuittingTest::whichWindowsAreAsked_data() {
    QTest::addColumn<QString>("options");
    QTest::addColumn<QList<int>>("asked");
    QTest::newRow("all") << u"--window --window --window"_s << QList<int>{1, 2, 3};
    // A kill on behalf of the window that refuses would end the process.
    QTest::newRow("those that take part") << u"--window --manner no-delete --window"_s << QList<int>{2};
    QTest::newRow("regular ones") << u"--window --type DOCK --window"_s << QList<int>{2};
}

void X11QuittingTest::whichWindowsAreAsked() {
    QFETCH(QString, options);
    QFETCH(QList<int>, asked);
    const qsizetype windows = options.count(u"--window"_s);
    const SampleApp app(options);
    QTRY_COMPARE(app.said(u"mapped %1"_s.arg(windows)), 1);
    const SampleApp fence;
    QTRY_VERIFY(running(m_workspace).contains(fence.pid()));
    QVERIFY(m_workspace.terminate(app.pid()));
    for (const int number : asked)
        QTRY_COMPARE(app.said(u"closed %1"_s.arg(number)), 1);
    if (asked.size() == windows) {
        QTRY_VERIFY(!app.isRunning());
        return;
    }
    QTRY_VERIFY(!m_workspace.terminate(app.pid()));
    QVERIFY(m_workspace.terminate(fence.pid()));
    QTRY_VERIFY(!fence.isRunning());
    QVERIFY(app.isRunning());
    QCOMPARE(app.said(u"asked 1"_s), 0);
}

void X11QuittingTest::whoAsksFirstStays() {
    const SampleApp app(u"--manner asks"_s);
    QTRY_COMPARE(running(m_workspace), QList<qint32>{app.pid()});
    QVERIFY(m_workspace.terminate(app.pid()));
    QTRY_COMPARE(app.said(u"mapped 2"_s), 1);
    QVERIFY(m_workspace.terminate(app.pid()));
    QTRY_COMPARE(app.said(u"asked 1"_s), 2);
    QVERIFY(app.isRunning());
    QCOMPARE(running(m_workspace), QList<qint32>{app.pid()});
}

void X11QuittingTest::withoutAWindowManager() {
    const SampleApp zoom(u"--class zoom/zoom"_s);
    QTRY_COMPARE(running(m_workspace), QList<qint32>{zoom.pid()});
    samples::desktop::stopWindowManager(SIGKILL);
    // Nobody passes the request on, so it must not be told as delivered.
    QVERIFY(!m_workspace.terminate(zoom.pid()));
    for (const QString &message : samples::messages(m_runtime.performCheck(false).events))
        QVERIFY2(!message.startsWith(u"Asked"_s), qUtf8Printable(message));
    samples::desktop::startWindowManager();
    QTRY_COMPARE(running(m_workspace), QList<qint32>{zoom.pid()});
    QVERIFY(m_workspace.terminate(zoom.pid()));
    QTRY_VERIFY(!zoom.isRunning());
}

QTEST_GUILESS_MAIN(X11QuittingTest)
#include "tst_x11quitting.moc"
