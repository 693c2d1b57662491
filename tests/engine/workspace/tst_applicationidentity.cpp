// Who an application is: from its windows, its process and the desktop entries, however it was installed.

#include "engine/RiskAppCatalog.h"
#include "engine/workspace/x11/ApplicationIdentity.h"
#include "engine/workspace/x11/DesktopEntryIndex.h"
#include "engine/workspace/x11/DesktopReading.h"
#include "engine/workspace/x11/ProcessIdentity.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace kestrin;

namespace {

WindowFacts window(const QString &instance, const QString &windowClass) {
    WindowFacts facts;
    facts.instanceName = instance;
    facts.className = windowClass;
    return facts;
}

ProcessIdentity process(const QString &executable, const QString &sandboxId = {}) {
    return {executable.isEmpty() ? std::nullopt : std::optional(executable), sandboxId};
}

} // namespace

class ApplicationIdentityTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase();
    void identity_data();
    void identity();
    void representative();
    void sandboxes_data();
    void sandboxes();
    void executables();

  private:
    void install(const QString &id, const QByteArray &name, const QByteArray &more = {});

    QTemporaryDir m_folder;
};

void ApplicationIdentityTest::install(const QString &id, const QByteArray &name, const QByteArray &more) {
    QFile file(m_folder.filePath(id + u".desktop"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("[Desktop Entry]\nType=Application\nName=" + name + "\n" + more);
}

void ApplicationIdentityTest::initTestCase() {
    install(u"Zoom"_s, "Zoom Workplace", "StartupWMClass=zoom\n");
    install(u"org.gnome.gedit"_s, "Text Editor");
    install(u"org.kde.kate"_s, "Kate");
    install(u"us.zoom.Zoom"_s, "Zoom");
    install(u"my-zoom-starter"_s, "Meetings", "StartupWMClass=meetings\n");
    install(u"com.google.Chrome"_s, "Google Chrome", "StartupWMClass=Google-chrome\n");
    install(u"chrome-abc-Default"_s, "Mail", "StartupWMClass=crx_abc\nExec=google-chrome --app-id=abc\n");
    install(u"teams-for-linux_teams-for-linux"_s, "Teams for Linux", "StartupWMClass=teams-for-linux\n");
    install(u"nameless"_s, "");
}

void ApplicationIdentityTest::identity_data() {
    QTest::addColumn<WindowFacts>("facts");
    QTest::addColumn<ProcessIdentity>("processIdentity");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("identifier"); // "none" for absent

    WindowFacts gtk = window(u"gedit"_s, u"Gedit"_s);
    gtk.gtkApplicationId = u"org.gnome.gedit"_s;
    WindowFacts kde = window(u"kate"_s, u"kate"_s);
    kde.kdeDesktopFile = u"/usr/share/applications/org.kde.kate.desktop"_s;

    QTest::newRow("claimed class") << window(u"zoom"_s, u"zoom"_s) << process(u"/opt/zoom/zoom"_s)
                                   << u"Zoom Workplace"_s << u"us.zoom.xos"_s;
    QTest::newRow("claimed class, in other letters")
        << window(u"x"_s, u"ZOOM"_s) << process({}) << u"Zoom Workplace"_s << u"us.zoom.xos"_s;
    QTest::newRow("GTK id") << gtk << process(u"/usr/bin/gedit"_s) << u"Text Editor"_s
                            << u"org.gnome.gedit"_s;
    QTest::newRow("KDE file") << kde << process(u"/usr/bin/kate"_s) << u"Kate"_s << u"org.kde.kate"_s;
    QTest::newRow("id like the class")
        << window(u"x"_s, u"Org.Kde.Kate"_s) << process({}) << u"Kate"_s << u"org.kde.kate"_s;
    QTest::newRow("Flatpak") << window(u"a"_s, u"b"_s) << process(u"/app/zoom"_s, u"us.zoom.Zoom"_s)
                             << u"Zoom"_s << u"us.zoom.xos"_s;
    QTest::newRow("Flatpak without an entry")
        << window(u"a"_s, u"Video"_s) << process({}, u"us.zoom.Zoom2"_s) << u"Video"_s << u"none"_s;
    QTest::newRow("Snap without an entry")
        << window({}, {}) << process(u"/snap/z/zoom"_s, u"zoom-client_zoom-client"_s) << u"zoom"_s
        << u"us.zoom.xos"_s;
    QTest::newRow("community client") << window(u"teams-for-linux"_s, u"teams-for-linux"_s) << process({})
                                      << u"Teams for Linux"_s << u"com.microsoft.teams2"_s;
    QTest::newRow("a starter of one's own")
        << window(u"zoom"_s, u"meetings"_s) << process({}) << u"Meetings"_s << u"my-zoom-starter"_s;
    QTest::newRow("browser") << window(u"google-chrome"_s, u"Google-chrome"_s) << process({})
                             << u"Google Chrome"_s << u"com.google.Chrome"_s;
    QTest::newRow("site of a browser") << window(u"crx_abc"_s, u"Google-chrome"_s) << process({})
                                       << u"Google Chrome"_s << u"com.google.Chrome"_s;
    QTest::newRow("class only") << window(u"xclock"_s, u"XClock"_s) << process(u"/usr/bin/xclock"_s)
                                << u"XClock"_s << u"none"_s;
    QTest::newRow("instance only") << window(u"xclock"_s, {}) << process(u"/usr/bin/oclock"_s) << u"xclock"_s
                                   << u"none"_s;
    QTest::newRow("executable only") << window({}, {}) << process(u"/usr/bin/oclock"_s) << u"oclock"_s
                                     << u"none"_s;
    QTest::newRow("nothing") << window({}, {}) << process({}) << QString() << u"none"_s;
    QTest::newRow("entry without a name")
        << window(u"n"_s, u"nameless"_s) << process({}) << u"nameless"_s << u"nameless"_s;
}

void ApplicationIdentityTest::identity() {
    QFETCH(WindowFacts, facts);
    QFETCH(ProcessIdentity, processIdentity);
    DesktopEntryIndex entries({QFile::encodeName(m_folder.path())}, {});
    const auto identity = ApplicationIdentity::of(facts, processIdentity, entries);
    QTEST(identity.name, "name");
    QTEST(identity.identifier.value_or(u"none"_s), "identifier");
}

void ApplicationIdentityTest::representative() {
    const auto shown = [](quint32 id, const WindowFacts &facts) { return DesktopWindow{id, 7, facts}; };
    const DesktopWindow unnamed = shown(1, window({}, {}));
    const DesktopWindow site = shown(2, window(u"crx_abc"_s, u"Google-chrome"_s));
    const DesktopWindow browser = shown(3, window(u"google-chrome"_s, u"Google-chrome"_s));

    const auto idOf = [](const QList<DesktopWindow> &windows) {
        return DesktopApplication{7, windows}.representative().id;
    };
    QCOMPARE(idOf({unnamed, site, browser}), 3U);
    QCOMPARE(idOf({unnamed, site}), 2U);
    QCOMPARE(idOf({unnamed}), 1U);
}

void ApplicationIdentityTest::sandboxes_data() {
    QTest::addColumn<QString>("found");
    QTest::addColumn<QString>("expected");

    const QString uuid = u"0a1b2c3d-0000-4000-8000-0123456789ab"_s;
    QTest::newRow("label") << snapIdOfSecurityLabel("snap.zoom-client.zoom-client (enforce)\n")
                           << u"zoom-client_zoom-client"_s;
    QTest::newRow("no label") << snapIdOfSecurityLabel("unconfined\n") << QString();
    QTest::newRow("label of a service") << snapIdOfSecurityLabel("snap.x (enforce)") << QString();
    QTest::newRow("group")
        << snapIdOfControlGroup(u"0::/user.slice/app.slice/snap.teams.teams-%1.scope\n"_s.arg(uuid).toUtf8())
        << u"teams_teams"_s;
    QTest::newRow("older group") << snapIdOfControlGroup(u"1:x:/snap.a.b.%1.scope"_s.arg(uuid).toUtf8())
                                 << u"a_b"_s;
    QTest::newRow("other group") << snapIdOfControlGroup("0::/user.slice/app-gnome-xterm-12.scope\n")
                                 << QString();
    QTest::newRow("noise") << snapIdOfControlGroup("\xFF\0/snap..-.scope") << QString();
}

void ApplicationIdentityTest::sandboxes() {
    QFETCH(QString, found);
    QTEST(found, "expected");
}

void ApplicationIdentityTest::executables() {
    QTemporaryDir proc;
    QDir(proc.path()).mkpath(u"12"_s);
    QDir(proc.path()).mkpath(u"13"_s);
    // Links that lead nowhere, like those of /proc, are read and not followed.
    QVERIFY(QFile::link(u"/opt/zoom/zoom (deleted)"_s, proc.filePath(u"12/exe"_s)));
    const auto updated = ProcessIdentity::of(12, QFile::encodeName(proc.path()));
    QCOMPARE(updated.executablePath, u"/opt/zoom/zoom"_s);
    QCOMPARE(ProcessIdentity::of(13, QFile::encodeName(proc.path())).executablePath, std::nullopt);
    QCOMPARE(ProcessIdentity::of(14, QFile::encodeName(proc.path())).executablePath, std::nullopt);

    QVERIFY(process(u"/usr/bin/ssh"_s).forwardsWindows());
    QVERIFY(!process(u"/usr/bin/sshfs"_s).forwardsWindows());
    QCOMPARE(ProcessIdentity::of(qint32(QCoreApplication::applicationPid())).executablePath,
             QCoreApplication::applicationFilePath());
}

QTEST_GUILESS_MAIN(ApplicationIdentityTest)
#include "tst_applicationidentity.moc"
