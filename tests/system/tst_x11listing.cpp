// Which applications are seen on a real desktop, and who they are said to be.

#include "engine/workspace/x11/X11Workspace.h"
#include "tests/support/SampleApp.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace kestrin;
using samples::installEntry;
using samples::SampleApp;

namespace {

QList<qint32> pids(X11Workspace &workspace) {
    QList<qint32> result;
    for (const WorkspaceApplication &application : workspace.runningApplications())
        result.append(application.processIdentifier);
    return result;
}

std::optional<WorkspaceApplication> record(X11Workspace &workspace, const SampleApp &app) {
    for (const WorkspaceApplication &application : workspace.runningApplications()) {
        if (application.processIdentifier == app.pid())
            return application;
    }
    return std::nullopt;
}

/// "name, identifier" or "none".
QString identity(X11Workspace &workspace, const SampleApp &app) {
    const auto found = record(workspace, app);
    if (!found)
        return u"none"_s;
    return found->localizedName.value_or(u"no name"_s) + u", "_s +
           found->bundleIdentifier.value_or(u"no identifier"_s);
}

} // namespace

class X11ListingTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void orderOfTheClientList();
    void oneApplicationAProcess();
    void regularWindows_data();
    void regularWindows();
    void processIds_data();
    void processIds();
    void identities_data();
    void identities();
    void localisedName();
    void entryAppearsAndGoes();
    void malformedProperties();
    void windowsThatVanish();
};

void X11ListingTest::orderOfTheClientList() {
    X11Workspace workspace;
    QVERIFY(workspace.runningApplications().isEmpty());
    QCOMPARE(workspace.limitation(), QString());
    std::vector<std::unique_ptr<SampleApp>> apps;
    QList<qint32> expected;
    for (int i = 0; i < 4; ++i) {
        apps.push_back(std::make_unique<SampleApp>());
        expected.append(apps.back()->pid());
        QTRY_COMPARE(pids(workspace), expected);
    }
    apps.erase(apps.begin() + 1);
    expected.removeAt(1);
    QTRY_COMPARE(pids(workspace), expected);
}

void X11ListingTest::oneApplicationAProcess() {
    X11Workspace workspace;
    const SampleApp app({u"--windows"_s, u"3"_s});
    const SampleApp other;
    QTRY_COMPARE(app.said(u"mapped 3"_s), 1);
    QTRY_COMPARE(pids(workspace).size(), 2);
    QTRY_VERIFY(pids(workspace).contains(other.pid()));
    const auto found = record(workspace, app);
    QVERIFY(found);
    QCOMPARE(found->activationPolicy, ActivationPolicy::regular);
    QVERIFY(found->executablePath && found->executablePath->endsWith(u"/sample-app"_s));
}

void X11ListingTest::regularWindows_data() {
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<bool>("listed");
    for (const char *type : {"dock", "desktop", "splash", "notification", "utility", "toolbar", "menu"})
        QTest::newRow(type) << QStringList{u"--type"_s, QString::fromLatin1(type)} << false;
    QTest::newRow("skip-taskbar") << QStringList{u"--skip-taskbar"_s} << false;
    QTest::newRow("none of several") << QStringList{u"--window"_s, u"--type"_s, u"dock"_s, u"--window"_s,
                                                    u"--skip-taskbar"_s}
                                     << false;
    QTest::newRow("normal") << QStringList{u"--type"_s, u"normal"_s} << true;
    QTest::newRow("dialog") << QStringList{u"--type"_s, u"dialog"_s} << true;
    QTest::newRow("one of several") << QStringList{u"--window"_s, u"--type"_s, u"dock"_s, u"--window"_s}
                                    << true;
}

void X11ListingTest::regularWindows() {
    QFETCH(QStringList, options);
    QFETCH(bool, listed);
    X11Workspace workspace;
    const SampleApp app(options);
    QTRY_COMPARE(app.said(u"mapped 1"_s), 1);
    // The window manager takes one window after the other, so it has dealt with the first when it lists the
    // second.
    const SampleApp later;
    QTRY_VERIFY(pids(workspace).contains(later.pid()));
    if (listed)
        QTRY_VERIFY(pids(workspace).contains(app.pid()));
    QCOMPARE(pids(workspace).contains(app.pid()), listed);
}

void X11ListingTest::processIds_data() {
    QTest::addColumn<QStringList>("options");
    QTest::newRow("a lie") << QStringList{u"--pid"_s, u"1"_s};
    QTest::newRow("out of range") << QStringList{u"--pid"_s, u"4294967295"_s};
    QTest::newRow("absent") << QStringList{u"--no-pid"_s};
    QTest::newRow("another machine's")
        << QStringList{u"--pid"_s, u"1"_s, u"--machine"_s, u"elsewhere.example"_s};
}

void X11ListingTest::processIds() {
    QFETCH(QStringList, options);
    X11Workspace workspace;
    const SampleApp app(options);
    QTRY_COMPARE(pids(workspace), QList<qint32>{app.pid()});
}

void X11ListingTest::identities_data() {
    installEntry(u"Zoom"_s, u"Zoom"_s, {u"StartupWMClass=zoom"_s});
    installEntry(u"com.github.IsmaelMartinez.teams_for_linux"_s, u"Teams for Linux"_s);
    installEntry(u"google-chrome"_s, u"Google Chrome"_s);
    installEntry(u"chrome-abcdef-Default"_s, u"A Site"_s,
                 {u"StartupWMClass=crx_abcdef"_s, u"Exec=google-chrome --app-id=abcdef"_s});
    // Started by a script, so that its entry does not look like a site's.
    installEntry(u"another-site"_s, u"Another Site"_s, {u"StartupWMClass=crx_ghijkl"_s});
    installEntry(u"org.example.Notes"_s, u"Notes"_s);
    installEntry(u"org.example.Painter"_s, u"Painter"_s);
    installEntry(u"deleted"_s, u"Deleted"_s, {u"Hidden=true"_s});

    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QString>("identity");
    const auto row = [](const char *name, const QString &options, const char *identity) {
        QTest::newRow(name) << options.split(u' ') << QString::fromUtf8(identity);
    };
    row("catalog application", u"--class zoom/zoom"_s, "Zoom, us.zoom.xos");
    row("case does not count", u"--class ZOOM/ZOOM"_s, "Zoom, us.zoom.xos");
    row("Flatpak of a community client", u"--gtk-id com.github.ismaelmartinez.teams_for_linux"_s,
        "Teams for Linux, com.microsoft.teams2");
    row("known class without an entry", u"--class teams-for-linux/teams-for-linux"_s,
        "teams-for-linux, com.microsoft.teams2");
    row("browser", u"--class google-chrome/Google-chrome"_s, "Google Chrome, com.google.Chrome");
    row("browser with a site",
        u"--window --class google-chrome/Google-chrome --window --class crx_abcdef/Google-chrome"_s,
        "Google Chrome, com.google.Chrome");
    row("site before its browser",
        u"--window --class crx_abcdef/Google-chrome --window --class google-chrome/Google-chrome"_s,
        "Google Chrome, com.google.Chrome");
    row("site with a starter of its own", u"--class crx_ghijkl/Google-chrome"_s,
        "Google Chrome, com.google.Chrome");
    row("GTK application id", u"--gtk-id org.example.Notes --class other/Other"_s,
        "Notes, org.example.Notes");
    row("KDE desktop file", u"--kde-entry org.example.Painter --class other/Other"_s,
        "Painter, org.example.Painter");
    row("class is an entry's id", u"--class x/org.example.notes"_s, "Notes, org.example.Notes");
    row("instance is an entry's id", u"--class org.example.notes/Unknown"_s, "Notes, org.example.Notes");
    row("deleted entry", u"--class deleted/Deleted"_s, "Deleted, no identifier");
    row("class without an entry", u"--class some/Thing --title Zoom"_s, "Thing, no identifier");
    row("no class, never the title", u"--no-class --title Zoom"_s, "sample-app, no identifier");
}

void X11ListingTest::identities() {
    QFETCH(QStringList, options);
    X11Workspace workspace;
    const SampleApp app(options);
    const auto windows = qMax<qsizetype>(options.count(u"--window"_s), 1);
    QTRY_COMPARE(app.said(u"mapped %1"_s.arg(windows)), 1);
    QTRY_VERIFY(pids(workspace).contains(app.pid()));
    QTEST(identity(workspace, app), "identity");
}

void X11ListingTest::localisedName() {
    installEntry(u"org.example.Sketch"_s, u"Sketch"_s, {u"Name[de]=Skizze"_s, u"Name[fr]=Croquis"_s});
    const QByteArray before = qgetenv("LANG");
    qputenv("LANG", "de_AT.UTF-8");
    X11Workspace workspace;
    const SampleApp app({u"--class"_s, u"org.example.sketch/Sketch"_s});
    QTRY_COMPARE(identity(workspace, app), u"Skizze, org.example.Sketch"_s);
    qputenv("LANG", before);
}

void X11ListingTest::entryAppearsAndGoes() {
    X11Workspace workspace;
    const SampleApp app({u"--class"_s, u"fresh/Fresh"_s});
    QTRY_COMPARE(identity(workspace, app), u"Fresh, no identifier"_s);
    installEntry(u"fresh"_s, u"Fresh Application"_s);
    QCOMPARE(identity(workspace, app), u"Fresh Application, fresh"_s);
    installEntry(u"fresh"_s, u"Renamed"_s);
    QCOMPARE(identity(workspace, app), u"Renamed, fresh"_s);
    samples::removeEntry(u"fresh"_s);
    QCOMPARE(identity(workspace, app), u"Fresh, no identifier"_s);
}

void X11ListingTest::malformedProperties() {
    X11Workspace workspace;
    QStringList everything;
    for (const char *property : {"class", "pid", "type", "state", "protocols", "machine"})
        everything << u"--malformed"_s << QString::fromLatin1(property);
    const SampleApp app(everything);
    QTRY_COMPARE(pids(workspace), QList<qint32>{app.pid()});
    const auto found = record(workspace, app);
    QVERIFY(found && !found->localizedName.value_or(QString()).isEmpty());
    QVERIFY(!workspace.terminate(app.pid()));
    const SampleApp other;
    QTRY_COMPARE(pids(workspace), (QList<qint32>{app.pid(), other.pid()}));
    QVERIFY(app.isRunning());
}

void X11ListingTest::windowsThatVanish() {
    X11Workspace workspace;
    const SampleApp steady;
    QTRY_COMPARE(pids(workspace), QList<qint32>{steady.pid()});
    const SampleApp flickering({u"--manner"_s, u"flickers"_s, u"--windows"_s, u"5"_s});
    QTRY_COMPARE(flickering.said(u"mapped 1"_s), 1);
    for (int i = 0; i < 300; ++i) {
        QList<qint32> seen = pids(workspace);
        QCOMPARE(seen.first(), steady.pid());
        seen.removeAll(flickering.pid());
        QCOMPARE(seen.size(), 1);
    }
}

QTEST_GUILESS_MAIN(X11ListingTest)
#include "tst_x11listing.moc"
