// Which applications are seen on a real desktop, and who they are said to be.

#include "engine/workspace/x11/X11Workspace.h"
#include "tests/support/SampleApp.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace kestrin;
using samples::installEntry;
using samples::running;
using samples::SampleApp;

namespace {

/// "name, identifier" or "none".
QString identity(X11Workspace &workspace, const SampleApp &app) {
    for (const WorkspaceApplication &application : workspace.runningApplications()) {
        if (application.processIdentifier == app.pid())
            return application.localizedName.value_or(u"no name"_s) + u", "_s +
                   application.bundleIdentifier.value_or(u"no identifier"_s);
    }
    return u"none"_s;
}

} // namespace

class X11ListingTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void oneApplicationAProcessInTheirOrder();
    void regularWindows();
    void processIds();
    void identities_data();
    void identities();
    void entriesInTheUsersLanguage();
    void malformedProperties();
    void windowsThatVanish();
};

void X11ListingTest::oneApplicationAProcessInTheirOrder() {
    X11Workspace workspace;
    QVERIFY(workspace.runningApplications().isEmpty());
    QCOMPARE(workspace.limitation(), QString());
    const SampleApp first(u"--windows 3"_s);
    QTRY_COMPARE(first.said(u"mapped 3"_s), 1);
    QTRY_COMPARE(running(workspace), QList<qint32>{first.pid()});
    SampleApp second;
    QTRY_COMPARE(running(workspace), (QList<qint32>{first.pid(), second.pid()}));
    const SampleApp third;
    QTRY_COMPARE(running(workspace), (QList<qint32>{first.pid(), second.pid(), third.pid()}));
    const WorkspaceApplication found = workspace.runningApplications().first();
    QCOMPARE(found.activationPolicy, ActivationPolicy::regular);
    QVERIFY(found.executablePath && found.executablePath->endsWith(u"/sample-app"_s));
    second.kill();
    QTRY_COMPARE(running(workspace), (QList<qint32>{first.pid(), third.pid()}));
}

void X11ListingTest::regularWindows() {
    X11Workspace workspace;
    std::vector<std::unique_ptr<SampleApp>> apps;
    const auto open = [&](const char *options) {
        apps.push_back(std::make_unique<SampleApp>(QString::fromLatin1(options)));
        QTRY_COMPARE(apps.back()->said(u"mapped 1"_s), 1);
    };
    for (const char *options :
         {"--type DOCK", "--type DESKTOP", "--type SPLASH", "--type NOTIFICATION", "--type UTILITY",
          "--type TOOLBAR", "--type MENU", "--skip-taskbar", "--window --type DOCK --window --skip-taskbar"})
        open(options);
    QList<qint32> expected;
    for (const char *options :
         {"--type NORMAL", "--type DIALOG", "--window --type DOCK --window --type NORMAL", ""}) {
        open(options);
        // The window manager takes one window after the other, so it has dealt with the earlier ones.
        expected.append(apps.back()->pid());
        QTRY_COMPARE(running(workspace), expected);
    }
}

void X11ListingTest::processIds() {
    X11Workspace workspace;
    for (const QString &options : {u"--pid 1 --machine elsewhere.example"_s, u"--pid none"_s}) {
        const SampleApp app(options);
        QTRY_COMPARE(running(workspace), QList<qint32>{app.pid()});
    }
}

void X11ListingTest::identities_data() {
    installEntry(u"Zoom"_s, u"Zoom"_s, {u"StartupWMClass=zoom"_s});
    installEntry(u"google-chrome"_s, u"Google Chrome"_s);
    installEntry(u"chrome-abcdef-Default"_s, u"A Site"_s,
                 {u"StartupWMClass=crx_abcdef"_s, u"Exec=google-chrome --app-id=abcdef"_s});
    installEntry(u"org.example.Notes"_s, u"Notes"_s);
    installEntry(u"org.example.Painter"_s, u"Painter"_s);

    QTest::addColumn<QString>("options");
    QTest::addColumn<QString>("identity");
    const QString chrome = u"Google Chrome, com.google.Chrome"_s;
    const QString browser = u" --window --class google-chrome/Google-chrome"_s;
    const QString site = u" --window --class crx_abcdef/Google-chrome"_s;
    QTest::newRow("browser with a site") << browser + site << chrome;
    QTest::newRow("site before its browser") << site + browser << chrome;
    QTest::newRow("catalog application") << u"--class x/ZOOM"_s << u"Zoom, us.zoom.xos"_s;
    QTest::newRow("GTK application id")
        << u"--gtk-id org.example.Notes --class other/Other"_s << u"Notes, org.example.Notes"_s;
    QTest::newRow("KDE desktop file")
        << u"--kde-entry org.example.Painter --class other/Other"_s << u"Painter, org.example.Painter"_s;
    QTest::newRow("instance") << u"--class org.example.notes/Unknown"_s << u"Notes, org.example.Notes"_s;
    QTest::newRow("no entry") << u"--class some/Thing --title Zoom"_s << u"Thing, no identifier"_s;
    QTest::newRow("never the title") << u"--class none --title Zoom"_s << u"sample-app, no identifier"_s;
}

void X11ListingTest::identities() {
    QFETCH(QString, options);
    X11Workspace workspace;
    const SampleApp app(options);
    const auto windows = qMax<qsizetype>(options.count(u"--window"_s), 1);
    QTRY_COMPARE(app.said(u"mapped %1"_s.arg(windows)), 1);
    QTRY_COMPARE(running(workspace), QList<qint32>{app.pid()});
    QTEST(identity(workspace, app), "identity");
}

void X11ListingTest::entriesInTheUsersLanguage() {
    const QByteArray before = qgetenv("LANG");
    qputenv("LANG", "de_AT.UTF-8");
    X11Workspace workspace;
    const SampleApp app(u"--class org.example.sketch/Sketch"_s);
    QTRY_COMPARE(identity(workspace, app), u"Sketch, no identifier"_s);
    installEntry(u"org.example.Sketch"_s, u"Sketch"_s, {u"Name[de]=Skizze"_s, u"Name[fr]=Croquis"_s});
    QCOMPARE(identity(workspace, app), u"Skizze, org.example.Sketch"_s);
    qputenv("LANG", before);
}

void X11ListingTest::malformedProperties() {
    X11Workspace workspace;
    const SampleApp app(u"--malformed"_s);
    QTRY_COMPARE(running(workspace), QList<qint32>{app.pid()});
    QVERIFY(!identity(workspace, app).startsWith(u','));
    QVERIFY(!workspace.terminate(app.pid()));
    const SampleApp other;
    QTRY_COMPARE(running(workspace), (QList<qint32>{app.pid(), other.pid()}));
    QVERIFY(app.isRunning());
}

void X11ListingTest::windowsThatVanish() {
    X11Workspace workspace;
    const SampleApp steady;
    QTRY_COMPARE(running(workspace), QList<qint32>{steady.pid()});
    const SampleApp flickering(u"--manner flickers --windows 5"_s);
    QTRY_COMPARE(flickering.said(u"mapped 1"_s), 1);
    for (int i = 0; i < 300; ++i) {
        QList<qint32> seen = running(workspace);
        QCOMPARE(seen.first(), steady.pid());
        seen.removeAll(flickering.pid());
        QCOMPARE(seen.size(), 1);
    }
}

QTEST_GUILESS_MAIN(X11ListingTest)
#include "tst_x11listing.moc"
