// Quitting real programs of Debian, one of each kind, by its own command (tools/ensure-packages
// desktop-programs).

#include "desktop/quitting/QuitCommands.h"
#include "desktop/x11/X11Workspace.h"
#include "tests/support/Files.h"
#include "tests/support/SampleApp.h"
#include "tests/support/TestClass.h"

#include <QStandardPaths>

#include <chrono>

using namespace Qt::StringLiterals;
using namespace kestrin;
using namespace kestrin::engine;
using namespace kestrin::desktop;
using samples::SampleApp;

class DesktopProgramsTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase();
    void quits_data();
    void quits();
};

/// This desktop's own preferences, in which the program with the tray icon finds that it has one.
void DesktopProgramsTest::initTestCase() {
    samples::write(qEnvironmentVariable("XDG_CONFIG_HOME") + u"/feathernotes/fn.conf"_s,
                   "[window]\nhasTray=true\n");
    // The tests themselves need no platform.
    qunsetenv("QT_QPA_PLATFORM");
}

void DesktopProgramsTest::quits_data() {
    QTest::addColumn<QString>("program");
    // By an action of GTK, by one of KDE, and by the menu in the tray.
    for (const char *const program : {"mousepad", "kcharselect", "feathernotes"})
        QTest::newRow(program) << QString::fromLatin1(program);
}

void DesktopProgramsTest::quits() {
    QFETCH(QString, program);
    if (QStandardPaths::findExecutable(program).isEmpty())
        QSKIP("The program is not installed; tools/ensure-packages desktop-programs installs it.");
    const SampleApp tray(u"--commands --later --watcher accepts"_s);
    QTRY_VERIFY(!tray.told(u"bus"_s).isEmpty());
    X11Workspace workspace;
    const samples::Program app({program});
    QTRY_VERIFY_WITH_TIMEOUT(samples::running(workspace).contains(app.process()), 30000);
    QTRY_COMPARE_WITH_TIMEOUT(tray.told(u"icon"_s).isEmpty(), program != u"feathernotes"_s, 30000);
    // Not by the workspace, which would close the window in the end, nor with its patience: the program has
    // just been started.
    QVERIFY(acceptsQuitCommand({app.process(), {program}, {}}, std::chrono::seconds(30)));
    QTRY_VERIFY_WITH_TIMEOUT(app.state() == QProcess::NotRunning, 30000);
    QCOMPARE(app.exitStatus(), QProcess::NormalExit);
}

KESTRIN_TEST(DesktopProgramsTest)
#include "tst_desktopprograms.moc"
