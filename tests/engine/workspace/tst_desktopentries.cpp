// Reading desktop entries, and finding them in the folders of several data directories.

#include "engine/workspace/x11/DesktopEntryIndex.h"
#include "tests/support/Files.h"

#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace kestrin;

namespace {

/// Two data directories, the user's own before the system's.
struct Folders {
    QTemporaryDir root;
    DesktopEntryIndex index{{QFile::encodeName(own()), QFile::encodeName(system())}, {"de"}};

    QString own() const { return root.filePath(u"own"_s); }
    QString system() const { return root.filePath(u"system"_s); }
    static void install(const QString &folder, const QString &id, const QByteArray &name,
                        const QByteArray &more = {}) {
        samples::write(folder + u'/' + id + u".desktop"_s,
                       "[Desktop Entry]\nType=Application\nName=" + name + "\nExec=true\n" + more);
    }
    QString nameOf(const QString &id) {
        const auto found = index.withId(id);
        return found ? found->entry.name : u"none"_s;
    }
    QString idOfClass(const QString &windowClass) {
        const auto found = index.withWindowClass(windowClass);
        return found ? found->id : u"none"_s;
    }
};

} // namespace

class DesktopEntriesTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void parse();
    void precedence();
    void windowClasses();
    void oddFiles();
};

void DesktopEntriesTest::parse() {
    const auto read = [](const QByteArray &lines) {
        return DesktopEntry::parse("[Desktop Entry]\n" + lines, {"de_AT", "de"}).value_or(DesktopEntry());
    };
    const DesktopEntry plain = read("Type=Application\nName=Editor\nStartupWMClass=Ed");
    QCOMPARE(plain, (DesktopEntry{u"Editor"_s, u"Ed"_s, true, false, false, false}));
    QCOMPARE(read("Name=Ed\nName[de]=Schreiber\nName[de_AT]=Schreiberl\n").name, u"Schreiberl"_s);
    QCOMPARE(read("Name[de_AT]=Schreiberl\nName[de]=Schreiber\nName=Ed\n").name, u"Schreiberl"_s);
    QCOMPARE(read("Name=Editor\nName[fr]=Éditeur\nName[de]=\n").name, u"Editor"_s);
    QCOMPARE(read("  Name = A  B \r\n# Name=C\n[Desktop Action x]\nName=D\n").name, u"A  B"_s);
    QCOMPARE(read("Name=a\\sb\\\\c\\q").name, u"a b\\c\\q"_s);
    QCOMPARE(read("Name=\xFFX").name, u"\uFFFDX"_s);
    QVERIFY(read("Hidden=true\n").isHidden && read("NoDisplay = true\n").isOutsideMenus);
    QVERIFY(!read("Type=Link\n").isApplication);
    QVERIFY(read("Exec=/opt/b/b --profile-directory=D --app-id=abc\n").isWebApplication);
    QVERIFY(!read("Exec=b --no-app=1 %U\n").isWebApplication);
    QCOMPARE(DesktopEntry::parse("\xEF\xBB\xBF# c\n\n[Before]\nName=No\n[Desktop Entry]\nName=X", {})->name,
             u"X"_s);
    QVERIFY(!DesktopEntry::parse("Name=X\n", {}));

    QCOMPARE(entryLocales("sr_YU.UTF-8@Latn"), (EntryLocales{"sr_YU@Latn", "sr_YU", "sr@Latn", "sr"}));
    QCOMPARE(entryLocales("de"), EntryLocales{"de"});
    QVERIFY(entryLocales("C.UTF-8").isEmpty() && entryLocales({}).isEmpty());
}

void DesktopEntriesTest::precedence() {
    Folders folders;
    folders.install(folders.system(), u"editor"_s, "System's", "StartupWMClass=ed\n");
    folders.install(folders.own(), u"editor"_s, "Own", "Name[de]=Eigener\n");
    folders.install(folders.system(), u"gone"_s, "Gone");
    folders.install(folders.own(), u"gone"_s, "Gone", "Hidden=true\n");
    folders.install(folders.system(), u"kde/Viewer"_s, "Viewer");
    folders.install(folders.own(), u"org.Calls"_s, "Upper");
    folders.install(folders.system(), u"org.calls"_s, "Lower");

    QCOMPARE(folders.nameOf(u"editor"_s), u"Eigener"_s);
    QCOMPARE(folders.idOfClass(u"ed"_s), u"none"_s);
    // Who deleted an entry does not want to see the one behind it.
    QCOMPARE(folders.nameOf(u"gone"_s), u"none"_s);
    // Folders are part of the id, and case does not count, unless it tells two files apart.
    QCOMPARE(folders.nameOf(u"KDE-viewer"_s), u"Viewer"_s);
    QCOMPARE(folders.nameOf(u"org.calls"_s), u"Lower"_s);
    QCOMPARE(folders.nameOf(u"ORG.CALLS"_s), u"Upper"_s);
    QCOMPARE(folders.nameOf(QString()), u"none"_s);

    // Written in place, so that the folder stays as it is; and a whole folder gone.
    folders.install(folders.own(), u"editor"_s, "Second", "StartupWMClass=second\n");
    folders.index.refresh();
    QCOMPARE(folders.nameOf(u"editor"_s), u"Second"_s);
    QCOMPARE(folders.idOfClass(u"second"_s), u"editor"_s);
    QVERIFY(QDir(folders.own()).removeRecursively());
    folders.index.refresh();
    QCOMPARE(folders.idOfClass(u"second"_s), u"none"_s);
    QCOMPARE(folders.idOfClass(u"ed"_s), u"editor"_s);
}

void DesktopEntriesTest::windowClasses() {
    Folders folders;
    folders.install(folders.own(), u"a-opener"_s, "Opens files", "StartupWMClass=Ed\nNoDisplay=true\n");
    folders.install(folders.system(), u"editor"_s, "Editor", "StartupWMClass=ED\n");
    folders.install(folders.own(), u"mail"_s, "Mail", "StartupWMClass=crx_x\nExec=b --app-id=x\n");
    folders.install(folders.own(), u"off"_s, "Off", "StartupWMClass=off\nHidden=true\n");

    QCOMPARE(folders.idOfClass(u"ed"_s), u"editor"_s); // the main entry before one that only opens files
    for (const QString &other : {u"crx_x"_s, u"off"_s, u""_s})
        QCOMPARE(folders.idOfClass(other), u"none"_s);
}

void DesktopEntriesTest::oddFiles() {
    Folders folders;
    QDir().mkpath(folders.own() + u"/folder.desktop"_s);
    // Nobody writes into the pipe; opening it must not wait for somebody.
    QCOMPARE(::mkfifo(QFile::encodeName(folders.own() + u"/pipe.desktop"_s).constData(), 0600), 0);
    QVERIFY(QFile::link(folders.own(), folders.own() + u"/loop"_s));
    QVERIFY(QFile::link(u"/nowhere"_s, folders.own() + u"/broken.desktop"_s));
    folders.install(folders.own(), u"good"_s, "Good", "StartupWMClass=good\n");

    for (const QString &id : {u"folder"_s, u"pipe"_s, u"broken"_s})
        QCOMPARE(folders.nameOf(id), u"none"_s);
    QCOMPARE(folders.idOfClass(u"good"_s), u"good"_s);
}

QTEST_APPLESS_MAIN(DesktopEntriesTest)
#include "tst_desktopentries.moc"
