// The command line over real windows, as a whole process with a home of its own.

#include "tests/support/SampleApp.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include <csignal>

using namespace Qt::StringLiterals;
using namespace kestrin;
using samples::installEntry;
using samples::SampleApp;

namespace {

struct Answer {
    int exitStatus = -1;
    QByteArray out;
    QByteArray err;
};

Answer kestrinctl(const QString &arguments) {
    QProcess process;
    process.start(QStringLiteral(KESTRINCTL), arguments.split(u' '));
    if (!process.waitForFinished(20000) || process.exitStatus() != QProcess::NormalExit)
        return {};
    return {process.exitCode(), process.readAllStandardOutput(), process.readAllStandardError()};
}

/// The values of one key in an array of objects.
QStringList values(const QJsonArray &objects, const QString &key) {
    QStringList result;
    for (const auto &object : objects)
        result.append(object.toObject().value(key).toVariant().toString());
    return result;
}

QStringList runningNames() {
    return values(QJsonDocument::fromJson(kestrinctl(u"apps --json"_s).out).array(), u"localizedName"_s);
}

QStringList messages(const Answer &check) {
    return values(QJsonDocument::fromJson(check.out)[u"events"_s].toArray(), u"message"_s);
}

/// A running `kestrinctl watch`, once it says that it is.
class Watch {
  public:
    explicit Watch(const QStringList &options = {}) {
        m_process.start(QStringLiteral(KESTRINCTL), QStringList{u"watch"_s} + options);
        QObject::connect(&m_process, &QProcess::readyReadStandardError, &m_process, [this] {
            m_isReady = m_isReady || m_process.readAllStandardError().contains("Watching.");
        });
        QObject::connect(&m_process, &QProcess::readyReadStandardOutput, &m_process, [this] {
            while (m_process.canReadLine())
                m_lines.append(m_process.readLine().trimmed());
        });
    }

    bool isReady() const { return m_isReady; }
    const QByteArrayList &lines() const { return m_lines; }
    /// The exit status.
    int end(int signal) {
        ::kill(static_cast<pid_t>(m_process.processId()), signal);
        m_process.waitForFinished();
        return m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
    }

  private:
    QProcess m_process;
    bool m_isReady = false;
    QByteArrayList m_lines;
};

} // namespace

class X11KestrinctlTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase();
    void appsAndPreview();
    void enforcedCheck();
    void watchCatchesARelaunch();
};

void X11KestrinctlTest::initTestCase() {
    installEntry(u"Zoom"_s, u"Zoom"_s, {u"StartupWMClass=zoom"_s});
    installEntry(u"editor"_s, u"Editor"_s);
    // They would switch Privacy Mode by the time of day at which the test runs.
    QCOMPARE(kestrinctl(u"schedule disable sleep away"_s).exitStatus, 0);
    QCOMPARE(kestrinctl(u"on"_s).exitStatus, 0);
}

void X11KestrinctlTest::appsAndPreview() {
    const Answer none = kestrinctl(u"apps --json"_s);
    QCOMPARE(none.exitStatus, 0);
    QVERIFY(QJsonDocument::fromJson(none.out).isArray() && none.err.isEmpty());
    const SampleApp zoom({u"--class"_s, u"zoom/zoom"_s});
    QTRY_COMPARE(runningNames(), QStringList{u"Zoom"_s});
    const SampleApp editor({u"--class"_s, u"editor/Editor"_s});
    QTRY_COMPARE(runningNames(), (QStringList{u"Zoom"_s, u"Editor"_s}));
    const QJsonArray apps = QJsonDocument::fromJson(kestrinctl(u"apps --json"_s).out).array();
    QCOMPARE(values(apps, u"processIdentifier"_s),
             (QStringList{QString::number(zoom.pid()), QString::number(editor.pid())}));
    QCOMPARE(values(apps, u"bundleIdentifier"_s), (QStringList{u"us.zoom.xos"_s, u"editor"_s}));

    const Answer preview = kestrinctl(u"check --preview --json"_s);
    QCOMPARE(preview.exitStatus, 0);
    QCOMPARE(messages(preview).last(),
             u"Preview: Kestrin would ask Zoom to quit while Privacy Mode is on."_s);
    QVERIFY(zoom.isRunning());
    QCOMPARE(zoom.said(u"asked 1"_s), 0);
}

void X11KestrinctlTest::enforcedCheck() {
    QCOMPARE(kestrinctl(u"enforce on"_s).exitStatus, 0);
    const SampleApp zoom({u"--class"_s, u"zoom/zoom"_s});
    const SampleApp editor({u"--class"_s, u"editor/Editor"_s});
    QTRY_COMPARE(runningNames().size(), 2);
    const Answer check = kestrinctl(u"check --json"_s);
    QCOMPARE(check.exitStatus, 0);
    QCOMPARE(messages(check).last(), u"Asked Zoom to quit."_s);
    QTRY_VERIFY(!zoom.isRunning());
    QCOMPARE(zoom.said(u"closed 1"_s), 1);
    QVERIFY(editor.isRunning());
}

void X11KestrinctlTest::watchCatchesARelaunch() {
    QCOMPARE(kestrinctl(u"enforce on"_s).exitStatus, 0);
    Watch watch({u"--json"_s});
    QTRY_VERIFY(watch.isReady());
    const SampleApp editor({u"--class"_s, u"editor/Editor"_s});
    QTRY_COMPARE(runningNames().size(), 1);
    const SampleApp zoom({u"--class"_s, u"zoom/zoom"_s});
    QTRY_COMPARE(watch.lines().size(), 2);
    QCOMPARE(QJsonDocument::fromJson(watch.lines().first())[u"kind"_s].toString(), u"relaunchDetected"_s);
    const auto second = QJsonDocument::fromJson(watch.lines().last());
    QCOMPARE(second[u"kind"_s].toString(), u"quitRequested"_s);
    QCOMPARE(second[u"bundleIdentifier"_s].toString(), u"us.zoom.xos"_s);
    QTRY_VERIFY(!zoom.isRunning());
    QCOMPARE(watch.end(SIGINT), 0);
    QCOMPARE(watch.lines().size(), 2);

    // Nobody watches any more.
    const SampleApp unwatched({u"--class"_s, u"zoom/zoom"_s});
    QTRY_COMPARE(runningNames().size(), 2);
    QCOMPARE(unwatched.said(u"asked 1"_s), 0);
}

QTEST_GUILESS_MAIN(X11KestrinctlTest)
#include "tst_x11kestrinctl.moc"
