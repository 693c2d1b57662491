// Quitting real programs of Debian by their own commands: one of each kind (tools/ensure-packages
// desktop-programs).

#include "engine/workspace/session/QuitCommands.h"
#include "engine/workspace/x11/X11Workspace.h"
#include "tests/support/SampleApp.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTest>

#include <algorithm>
#include <chrono>

using namespace Qt::StringLiterals;
using namespace kestrin;
using samples::SampleApp;

namespace {

class Program {
  public:
    explicit Program(const QString &name) {
        m_process.setStandardErrorFile(QProcess::nullDevice());
        m_process.setStandardOutputFile(QProcess::nullDevice());
        // The tests themselves need no platform.
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.remove(u"QT_QPA_PLATFORM"_s);
        m_process.setProcessEnvironment(environment);
        m_process.start(name, QStringList());
    }
    Program(const Program &) = delete;
    Program &operator=(const Program &) = delete;
    ~Program() {
        m_process.kill();
        m_process.waitForFinished();
    }

    bool endedByItself() const {
        return m_process.state() == QProcess::NotRunning && m_process.exitStatus() == QProcess::NormalExit;
    }
    bool isListed(Workspace &workspace) const {
        const auto applications = workspace.runningApplications();
        return std::any_of(applications.cbegin(), applications.cend(), [this](const auto &application) {
            return application.processIdentifier == m_process.processId();
        });
    }
    qint32 pid() const { return static_cast<qint32>(m_process.processId()); }

  private:
    QProcess m_process;
};

} // namespace

class DesktopProgramsTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase();
    void quits_data();
    void quits();
};

/// This desktop's own preferences, in which the program with the tray icon finds that it has one.
void DesktopProgramsTest::initTestCase() {
    const QDir folder(qEnvironmentVariable("XDG_CONFIG_HOME") + u"/feathernotes"_s);
    QVERIFY(folder.mkpath(u"."_s));
    QFile preferences(folder.filePath(u"fn.conf"_s));
    QVERIFY(preferences.open(QIODevice::WriteOnly));
    QVERIFY(preferences.write("[window]\nhasTray=true\n") > 0);
}

void DesktopProgramsTest::quits_data() {
    QTest::addColumn<QString>("program");
    QTest::newRow("GTK action") << u"mousepad"_s;
    QTest::newRow("KDE action") << u"kcharselect"_s;
    QTest::newRow("tray menu") << u"feathernotes"_s;
}

void DesktopProgramsTest::quits() {
    QFETCH(QString, program);
    if (QStandardPaths::findExecutable(program).isEmpty())
        QSKIP("The program is not installed; tools/ensure-packages desktop-programs installs it.");
    const SampleApp tray({u"--commands"_s, u"--later"_s, u"--watcher"_s, u"accepts"_s});
    QTRY_VERIFY(!tray.told(u"bus"_s).isEmpty());
    X11Workspace workspace;
    const Program app(program);
    QTRY_VERIFY_WITH_TIMEOUT(app.isListed(workspace), 30000);
    QTRY_COMPARE_WITH_TIMEOUT(tray.told(u"icon"_s).isEmpty(), program != u"feathernotes"_s, 30000);
    // Not by the workspace, which would close the window in the end, nor with its patience: the program has
    // just been started.
    QVERIFY(acceptsQuitCommand({app.pid(), {program}, {}}, std::chrono::seconds(30)));
    QTRY_VERIFY_WITH_TIMEOUT(app.endedByItself(), 30000);
}

QTEST_GUILESS_MAIN(DesktopProgramsTest)
#include "tst_desktopprograms.moc"
