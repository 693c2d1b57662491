// Quitting through what applications offer on the session bus: in which order, and what is left when they
// lie, refuse or say nothing.

#include "engine/workspace/x11/X11Workspace.h"
#include "tests/support/SampleApp.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>

using namespace Qt::StringLiterals;
using namespace kestrin;
using samples::SampleApp;

namespace {

QStringList options(const QString &text) {
    return text.split(u' ');
}

} // namespace

class SessionQuittingTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase();
    void order_data();
    void order();
    void silence_data();
    void silence();
    void byNameAlone();
    void severalWindows();
    void menus_data();
    void menus();
    void onlyItsOwnObjects();
    void withoutATray();
    void silentTray();
    void applicationsWithoutABus();
    void frozenBus();
    void deadBus();

  private:
    bool isListed(const SampleApp &app);
    void awaitReady(const SampleApp &app, bool hasIcon = false);

    X11Workspace m_workspace;
    std::unique_ptr<SampleApp> m_tray;
    QTemporaryDir m_folder;
};

bool SessionQuittingTest::isListed(const SampleApp &app) {
    const auto applications = m_workspace.runningApplications();
    return std::any_of(
        applications.cbegin(), applications.cend(),
        [&](const WorkspaceApplication &application) { return application.processIdentifier == app.pid(); });
}

void SessionQuittingTest::awaitReady(const SampleApp &app, bool hasIcon) {
    QTRY_VERIFY(isListed(app));
    if (hasIcon)
        QTRY_COMPARE(app.said(u"in tray"_s), 1);
}

void SessionQuittingTest::initTestCase() {
    qputenv("LANGUAGE", "de_DE:de");
    qputenv("LANG", "de_DE.UTF-8");
    samples::installEntry(u"talk"_s, u"Foo Talk"_s, {u"StartupWMClass=talk"_s});
    for (const char *version : {"5", "6"}) {
        QFile library(m_folder.filePath(u"libQt%1Core.so.%1"_s.arg(QLatin1StringView(version))));
        QVERIFY(library.open(QIODevice::WriteOnly) && library.write("library") > 0);
    }
    m_tray = std::make_unique<SampleApp>(options(u"--commands --later --watcher accepts"_s));
    QTRY_VERIFY(!m_tray->told(u"bus"_s).isEmpty());
}

void SessionQuittingTest::order_data() {
    QTest::addColumn<QString>("offers");
    QTest::addColumn<QString>("heard"); // "" when the window is asked

    QTest::newRow("everything") << u"--gtk accepts --kde accepts --qt accepts --tray accepts"_s
                                << u"quit gtk"_s;
    QTest::newRow("action disabled") << u"--gtk disabled --kde accepts --tray accepts"_s << u"quit kde"_s;
    QTest::newRow("action refused") << u"--gtk refuses --qt accepts --tray accepts"_s << u"quit qt"_s;
    QTest::newRow("KDE action disabled") << u"--kde disabled --qt accepts"_s << u"quit qt"_s;
    QTest::newRow("quit refused") << u"--kde refuses --qt refuses --tray accepts"_s << u"quit tray Quit"_s;
    QTest::newRow("tray only") << u"--tray accepts"_s << u"quit tray Quit"_s;
    QTest::newRow("ends at once") << u"--gtk leaves --kde accepts --tray accepts"_s << u"quit gtk"_s;
    QTest::newRow("tray item disabled") << u"--tray disabled"_s << QString();
    QTest::newRow("all refuse") << u"--gtk refuses --kde refuses --qt refuses --tray refuses"_s << QString();
}

void SessionQuittingTest::order() {
    QFETCH(QString, offers);
    QFETCH(QString, heard);
    const SampleApp app(options(offers + u" --map "_s + m_folder.filePath(u"libQt6Core.so.6"_s)));
    awaitReady(app, offers.contains(u"tray"_s));
    QVERIFY(m_workspace.terminate(app.pid()));
    QTRY_VERIFY(!app.isRunning());
    QCOMPARE(app.said(u"asked 1"_s), heard.isEmpty() ? 1 : 0);
    QCOMPARE(app.told(u"quit"_s), heard.isEmpty() ? heard : heard.sliced(5));
}

void SessionQuittingTest::silence_data() {
    QTest::addColumn<QString>("offers");
    QTest::addColumn<QString>("heard");

    QTest::newRow("all hang") << u"--gtk hangs --kde hangs --qt hangs --tray hangs"_s << QString();
    QTest::newRow("all busy") << u"--gtk is-busy --kde is-busy --qt is-busy --tray is-busy"_s << QString();
    QTest::newRow("action hangs") << u"--gtk hangs --kde accepts"_s << u"kde"_s;
    QTest::newRow("action busy") << u"--gtk is-busy --tray accepts"_s << u"tray Quit"_s;
}

void SessionQuittingTest::silence() {
    QFETCH(QString, offers);
    QFETCH(QString, heard);
    const SampleApp app(options(offers));
    awaitReady(app);
    QElapsedTimer timer;
    timer.start();
    QVERIFY(m_workspace.terminate(app.pid()));
    // A third of the patience is the least that a silent step may have, and no step has more than all of it.
    QVERIFY2(timer.elapsed() >= 100 && timer.elapsed() < 1500, qPrintable(QString::number(timer.elapsed())));
    QTRY_VERIFY(!app.isRunning());
    QCOMPARE(app.told(u"quit"_s), heard);
    QCOMPARE(app.said(u"asked 1"_s), heard.isEmpty() ? 1 : 0);
}

void SessionQuittingTest::byNameAlone() {
    // Its windows say nothing that helps, as those of a GTK application without the toolkit's own windows.
    const SampleApp app(options(u"--gtk accepts --bus-name org.example.Talk --claim :9.99"_s));
    awaitReady(app);
    QVERIFY(m_workspace.terminate(app.pid()));
    QTRY_COMPARE(app.told(u"quit"_s), u"gtk"_s);
}

void SessionQuittingTest::severalWindows() {
    const SampleApp app(options(u"--gtk accepts --windows 3 --manner asks"_s));
    QTRY_COMPARE(app.said(u"mapped 3"_s), 1);
    awaitReady(app);
    QVERIFY(m_workspace.terminate(app.pid()));
    QTRY_VERIFY(!app.isRunning());
    QCOMPARE(app.said(u"quit gtk"_s), 1);
    QCOMPARE(app.said(u"dialog 1"_s), 0);
}

void SessionQuittingTest::menus_data() {
    QTest::addColumn<QString>("menu");
    QTest::addColumn<QString>("chosen");

    QTest::newRow("German") << u"Öffnen,_Beenden"_s << u"_Beenden"_s;
    QTest::newRow("English all the same") << u"Open,E_xit,Help"_s << u"E_xit"_s;
    QTest::newRow("submenu") << u"Open,File>Quit,Help"_s << u"Quit"_s;
    QTest::newRow("with the name of its desktop entry")
        << u"Open,Foo Talk beenden"_s << u"Foo Talk beenden"_s;
    QTest::newRow("with the name of its icon") << u"Open,Quit Sample Icon"_s << u"Quit Sample Icon"_s;
    QTest::newRow("another language") << u"Ouvrir,Quitter"_s << QString();
    QTest::newRow("something else") << u"Quit Meeting,Exit Full Screen"_s << QString();
    QTest::newRow("empty") << u""_s << QString();
}

void SessionQuittingTest::menus() {
    QFETCH(QString, menu);
    QFETCH(QString, chosen);
    // It lives on in the tray when its window is closed.
    const SampleApp app(options(u"--class talk/talk --manner ignores --tray accepts --menu"_s) +
                        QStringList{menu});
    awaitReady(app, true);
    QVERIFY(m_workspace.terminate(app.pid()));
    if (chosen.isEmpty()) {
        QTRY_COMPARE(app.said(u"asked 1"_s), 1);
        QVERIFY(app.isRunning());
    } else {
        QTRY_VERIFY(!app.isRunning());
        QCOMPARE(app.told(u"quit"_s), u"tray "_s + chosen);
    }
}

void SessionQuittingTest::onlyItsOwnObjects() {
    const SampleApp other(options(
        u"--gtk accepts --kde accepts --tray accepts --bus-name org.example.Other --manner ignores"_s));
    awaitReady(other, true);
    const SampleApp liar(options(u"--gtk refuses --claim"_s) + QStringList{other.told(u"bus"_s)});
    const SampleApp second(options(u"--gtk refuses --claim org.example.Other"_s));
    for (const SampleApp *app : {&liar, &second}) {
        awaitReady(*app);
        QVERIFY(m_workspace.terminate(app->pid()));
        QTRY_VERIFY(!app->isRunning());
        QCOMPARE(app->said(u"asked 1"_s), 1);
    }
    QVERIFY(other.isRunning());
    QCOMPARE(other.told(u"quit"_s), QString());
    // The older Qt would end without asking, so it is not told to.
    for (const QString &library : {u"libQt5Core.so.5"_s, u"libQt6Core.so.6"_s}) {
        const SampleApp app(options(u"--qt accepts --map "_s + m_folder.filePath(library)));
        awaitReady(app);
        QVERIFY(m_workspace.terminate(app.pid()));
        QTRY_VERIFY(!app.isRunning());
        QCOMPARE(app.said(u"quit qt"_s), library.contains(u'6') ? 1 : 0);
    }
}

void SessionQuittingTest::withoutATray() {
    m_tray.reset();
    const SampleApp app(options(u"--tray accepts --kde disabled"_s));
    awaitReady(app);
    QVERIFY(m_workspace.terminate(app.pid()));
    QTRY_COMPARE(app.said(u"asked 1"_s), 1);
}

void SessionQuittingTest::silentTray() {
    const SampleApp tray(options(u"--commands --later --watcher hangs"_s));
    QTRY_VERIFY(!tray.told(u"bus"_s).isEmpty());
    const SampleApp app(options(u"--tray accepts"_s));
    awaitReady(app);
    QElapsedTimer timer;
    timer.start();
    QVERIFY(m_workspace.terminate(app.pid()));
    QVERIFY(timer.elapsed() < 1500);
    QTRY_COMPARE(app.said(u"asked 1"_s), 1);
    // Who offers something better does not wait for it.
    const SampleApp better(options(u"--gtk accepts --tray accepts"_s));
    awaitReady(better);
    QVERIFY(m_workspace.terminate(better.pid()));
    QTRY_COMPARE(better.told(u"quit"_s), u"gtk"_s);
}

void SessionQuittingTest::applicationsWithoutABus() {
    const SampleApp app;
    awaitReady(app);
    QVERIFY(m_workspace.terminate(app.pid()));
    QTRY_COMPARE(app.said(u"asked 1"_s), 1);
}

void SessionQuittingTest::frozenBus() {
    const QByteArray before = qgetenv("DBUS_SESSION_BUS_ADDRESS");
    QProcess bus;
    bus.start(u"dbus-daemon"_s, {u"--session"_s, u"--nofork"_s, u"--print-address"_s, u"--address"_s,
                                 u"unix:path="_s + m_folder.filePath(u"bus"_s)});
    QVERIFY(bus.waitForReadyRead());
    qputenv("DBUS_SESSION_BUS_ADDRESS", bus.readLine().trimmed());
    const SampleApp app(options(u"--gtk accepts"_s));
    awaitReady(app);
    ::kill(static_cast<pid_t>(bus.processId()), SIGSTOP);
    QElapsedTimer timer;
    timer.start();
    QVERIFY(m_workspace.terminate(app.pid()));
    QVERIFY(timer.elapsed() < 1500);
    QTRY_COMPARE(app.said(u"asked 1"_s), 1);
    bus.kill();
    bus.waitForFinished();
    qputenv("DBUS_SESSION_BUS_ADDRESS", before);
}

void SessionQuittingTest::deadBus() {
    for (const char *address : {"unix:path=/nonexistent/bus", "nonsense", ""}) {
        const SampleApp app;
        awaitReady(app);
        const QByteArray before = qgetenv("DBUS_SESSION_BUS_ADDRESS");
        qputenv("DBUS_SESSION_BUS_ADDRESS", address);
        QVERIFY(m_workspace.terminate(app.pid()));
        QTRY_COMPARE(app.said(u"asked 1"_s), 1);
        qputenv("DBUS_SESSION_BUS_ADDRESS", before);
    }
}

QTEST_GUILESS_MAIN(SessionQuittingTest)
#include "tst_sessionquitting.moc"
