// Quitting through what applications offer on the session bus: in which order, and what is left when they
// lie, refuse or say nothing.

#include "desktop/x11/X11Workspace.h"
#include "tests/support/Files.h"
#include "tests/support/SampleApp.h"
#include "tests/support/TestClass.h"

#include <QElapsedTimer>
#include <QTemporaryDir>

#include <csignal>

using namespace Qt::StringLiterals;
using namespace kestrin;
using namespace kestrin::engine;
using namespace kestrin::desktop;
using samples::SampleApp;

class SessionQuittingTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase();
    void ladder();
    void onlyItsOwnObjects();
    void silentTray();
    void uselessBuses();

  private:
    /// Asks it as soon as it can be asked, and in a short time whatever it does not answer.
    void quit(const SampleApp &app, bool isInTray = false);

    X11Workspace m_workspace;
    std::unique_ptr<SampleApp> m_tray;
    QTemporaryDir m_folder;
    qint64 m_elapsed = 0;
};

void SessionQuittingTest::quit(const SampleApp &app, bool isInTray) {
    QTRY_VERIFY(samples::running(m_workspace).contains(app.pid()));
    QTRY_COMPARE(app.said(u"in tray"_s), isInTray ? 1 : 0);
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(m_workspace.terminate(app.pid()), Termination::delivered);
    m_elapsed = timer.elapsed();
    QVERIFY2(m_elapsed < 1500, qPrintable(QString::number(m_elapsed)));
}

void SessionQuittingTest::initTestCase() {
    qputenv("LANGUAGE", "de_DE:de");
    qputenv("LANG", "de_DE.UTF-8");
    samples::installEntry(u"talk"_s, u"Foo Talk"_s, {u"StartupWMClass=talk"_s});
    for (const QString &name : {u"libQt5Core.so.5"_s, u"libQt6Core.so.6"_s})
        samples::write(m_folder.filePath(name), "library");
    m_tray = std::make_unique<SampleApp>(u"--commands --later --watcher accepts"_s);
    QTRY_VERIFY(!m_tray->told(u"bus"_s).isEmpty());
}

void SessionQuittingTest::ladder() {
    // The older Qt would end without asking, so it is not told to.
    const QString olderQt = u"--qt accepts"_s;
    const QString talk = u"--class talk/talk --manner ignores --tray accepts"_s;
    // What it offers and what it hears; nothing when its window is asked.
    for (const auto &[offers, heard] : {
             std::pair{u"--gtk accepts --kde accepts --qt accepts --tray accepts"_s, u"gtk"_s},
             std::pair{u"--gtk disabled --kde accepts --tray accepts"_s, u"kde"_s},
             std::pair{u"--gtk refuses --kde disabled --qt accepts --tray accepts"_s, u"qt"_s},
             std::pair{u"--kde refuses --qt refuses --tray accepts"_s, u"tray Quit"_s},
             std::pair{u"--gtk leaves --kde accepts --tray accepts"_s, u"gtk"_s},
             // It lives on in the tray when its window is closed. Its menu has the name of its desktop entry,
             // or of its icon.
             std::pair{talk, u"tray Foo Talk beenden"_s},
             std::pair{talk, u"tray Quit Sample Icon"_s},
             std::pair{u"--tray disabled"_s, QString()},
             std::pair{u"--gtk refuses --kde refuses --qt refuses --tray refuses"_s, QString()},
             std::pair{u"--gtk hangs --kde hangs --qt hangs --tray hangs"_s, QString()},
             std::pair{u"--gtk is-busy --kde is-busy --qt is-busy --tray is-busy"_s, QString()},
             std::pair{u"--gtk hangs --kde accepts"_s, u"kde"_s},
             std::pair{olderQt, QString()},
             std::pair{u"--gtk accepts --windows 3"_s, u"gtk"_s},
             // Its windows say nothing that helps, as those of a GTK application without the toolkit's own.
             std::pair{u"--gtk accepts --bus-name org.example.Talk --claim :9.99"_s, u"gtk"_s},
         }) {
        const QString library = offers == olderQt ? u"libQt5Core.so.5"_s : u"libQt6Core.so.6"_s;
        QStringList more{u"--map"_s, m_folder.filePath(library)};
        if (offers == talk)
            more += {u"--menu"_s, u"Quit Meeting,"_s + heard.sliced(5)};
        const SampleApp app(offers, more);
        quit(app, offers.contains(u"--tray"_s));
        // A third of the patience is the least that a silent step may have.
        if (offers.contains(u"hangs"_s) || offers.contains(u"is-busy"_s))
            QVERIFY2(m_elapsed >= 100, qPrintable(QString::number(m_elapsed)));
        QTRY_VERIFY2(!app.isRunning(), qPrintable(offers));
        QVERIFY2(app.said(u"asked 1"_s) == (heard.isEmpty() ? 1 : 0), qPrintable(offers));
        QVERIFY2(app.told(u"quit"_s) == heard, qPrintable(offers));
    }
}

void SessionQuittingTest::onlyItsOwnObjects() {
    const SampleApp other(
        u"--gtk accepts --kde accepts --tray accepts --bus-name org.example.Other --manner ignores"_s);
    QTRY_COMPARE(other.said(u"in tray"_s), 1);
    for (const QString &claimed : {other.told(u"bus"_s), u"org.example.Other"_s}) {
        const SampleApp liar(u"--gtk refuses --claim "_s + claimed);
        quit(liar);
        QTRY_VERIFY(!liar.isRunning());
        QCOMPARE(liar.said(u"asked 1"_s), 1);
    }
    QVERIFY(other.isRunning());
    QCOMPARE(other.told(u"quit"_s), QString());
}

void SessionQuittingTest::silentTray() {
    m_tray = std::make_unique<SampleApp>(u"--commands --later --watcher hangs"_s);
    QTRY_VERIFY(!m_tray->told(u"bus"_s).isEmpty());
    const SampleApp app(u"--tray accepts"_s);
    quit(app);
    QTRY_COMPARE(app.said(u"asked 1"_s), 1);
    // Who offers something better does not wait for it.
    const SampleApp better(u"--gtk accepts --tray accepts"_s);
    quit(better);
    QTRY_COMPARE(better.told(u"quit"_s), u"gtk"_s);
    m_tray.reset();
    const SampleApp without(u"--tray accepts --kde disabled"_s);
    quit(without);
    QTRY_COMPARE(without.said(u"asked 1"_s), 1);
}

void SessionQuittingTest::uselessBuses() {
    const auto back = qScopeGuard(
        [before = qgetenv("DBUS_SESSION_BUS_ADDRESS")] { qputenv("DBUS_SESSION_BUS_ADDRESS", before); });
    const auto quitOn = [this](const QByteArray &address, qint64 frozenBus = 0) {
        qputenv("DBUS_SESSION_BUS_ADDRESS", address);
        const SampleApp app(frozenBus ? u"--gtk accepts"_s : QString());
        QTRY_COMPARE(app.said(u"mapped 1"_s), 1);
        if (frozenBus)
            ::kill(static_cast<pid_t>(frozenBus), SIGSTOP);
        quit(app);
        QTRY_COMPARE(app.said(u"asked 1"_s), 1);
    };
    samples::Program bus({u"dbus-daemon"_s, u"--session"_s, u"--nofork"_s, u"--print-address"_s,
                          u"--address=unix:path="_s + m_folder.filePath(u"bus"_s)});
    QVERIFY(bus.waitForReadyRead());
    quitOn(bus.readLine().trimmed(), bus.processId());
    for (const char *dead : {"unix:path=/nonexistent/bus", "nonsense", ""})
        quitOn(dead);
}

KESTRIN_TEST(SessionQuittingTest)
#include "tst_sessionquitting.moc"
