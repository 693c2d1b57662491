// Reading desktop entries, and finding them in the folders of several data directories.

#include "engine/workspace/x11/DesktopEntryIndex.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

using namespace Qt::StringLiterals;
using namespace kestrin;

namespace {

void write(const QString &path, const QByteArray &text) {
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(text);
}

QByteArray entryText(const QByteArray &name, const QByteArray &more = {}) {
    return "[Desktop Entry]\nType=Application\nName=" + name + "\nExec=true\n" + more;
}

/// Two data directories, the user's own before the system's.
struct Folders {
    QTemporaryDir root;
    DesktopEntryIndex index{{QFile::encodeName(own()), QFile::encodeName(system())}, {"de"}};

    QString own() const { return root.filePath(u"own"_s); }
    QString system() const { return root.filePath(u"system"_s); }
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
    void parse_data();
    void parse();
    void locales_data();
    void locales();
    void precedence();
    void windowClasses();
    void changesAreNoticed();
    void oddFiles();
};

void DesktopEntriesTest::parse_data() {
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("expected"); // name, class and flags; empty when there is no entry

    const QByteArray head = "[Desktop Entry]\n";
    QTest::newRow("plain") << head + "Type=Application\nName=Editor\nStartupWMClass=Ed" << u"Editor|Ed|A"_s;
    QTest::newRow("translated, best last")
        << head + "Name=Editor\nName[de]=Schreiber\nName[de_AT]=Schreiberl\n"
        << u"Schreiberl||"_s;
    QTest::newRow("translated, best first")
        << head + "Name[de_AT]=Schreiberl\nName[de]=Schreiber\nName=Editor\n"
        << u"Schreiberl||"_s;
    QTest::newRow("other language") << head + "Name=Editor\nName[fr]=Éditeur\n" << u"Editor||"_s;
    QTest::newRow("empty translation") << head + "Name=Editor\nName[de]=\n" << u"Editor||"_s;
    QTest::newRow("spaces and comments")
        << "# c\n\n" + head + "  Name = A  B \r\n# Name=C\nNoDisplay = true\n"
        << u"A  B||N"_s;
    QTest::newRow("escapes") << head + "Name=a\\sb\\\\c\\q" << u"a b\\c\\q||"_s;
    QTest::newRow("other groups") << "[Before]\nName=No\n" + head + "Name=Yes\n[Desktop Action x]\nName=No\n"
                                  << u"Yes||"_s;
    QTest::newRow("hidden") << head + "Type=Application\nHidden=true\nName=X" << u"X||AH"_s;
    QTest::newRow("link") << head + "Type=Link\nName=X" << u"X||"_s;
    QTest::newRow("site of a browser")
        << head + "Name=Mail\nExec=/opt/b/b --profile-directory=D --app-id=abc\n"
        << u"Mail||W"_s;
    QTest::newRow("no site") << head + "Name=B\nExec=b --no-app=1 %U\n" << u"B||"_s;
    QTest::newRow("byte order mark") << "\xEF\xBB\xBF" + head + "Name=X" << u"X||"_s;
    QTest::newRow("no UTF-8") << head + "Name=\xFFX" << u"\uFFFDX||"_s;
    QTest::newRow("no group") << QByteArray("Name=X\n") << QString();
    QTest::newRow("empty") << QByteArray() << QString();
}

void DesktopEntriesTest::parse() {
    QFETCH(QByteArray, text);
    const auto entry = DesktopEntry::parse(text, {"de_AT", "de"});
    QString found;
    if (entry) {
        found = entry->name + u'|' + entry->windowClass + u'|';
        found += entry->isApplication ? u"A"_s : QString();
        found += entry->isHidden ? u"H"_s : QString();
        found += entry->isOutsideMenus ? u"N"_s : QString();
        found += entry->isWebApplication ? u"W"_s : QString();
    }
    QTEST(found, "expected");
}

void DesktopEntriesTest::locales_data() {
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<EntryLocales>("expected");

    QTest::newRow("everything") << QByteArray("sr_YU.UTF-8@Latn")
                                << EntryLocales{"sr_YU@Latn", "sr_YU", "sr@Latn", "sr"};
    QTest::newRow("language") << QByteArray("de") << EntryLocales{"de"};
    QTest::newRow("no language") << QByteArray("C.UTF-8") << EntryLocales{};
    QTest::newRow("nothing") << QByteArray() << EntryLocales{};
}

void DesktopEntriesTest::locales() {
    QFETCH(QByteArray, name);
    QTEST(entryLocales(name), "expected");
}

void DesktopEntriesTest::precedence() {
    Folders folders;
    write(folders.system() + u"/editor.desktop"_s, entryText("System's"));
    write(folders.own() + u"/editor.desktop"_s, entryText("Own", "Name[de]=Eigener\n"));
    write(folders.system() + u"/gone.desktop"_s, entryText("Gone"));
    write(folders.own() + u"/gone.desktop"_s, entryText("Gone", "Hidden=true\n"));
    write(folders.system() + u"/kde/Viewer.desktop"_s, entryText("Viewer"));
    write(folders.own() + u"/org.Calls.desktop"_s, entryText("Upper"));
    write(folders.system() + u"/org.calls.desktop"_s, entryText("Lower"));

    QCOMPARE(folders.nameOf(u"editor"_s), u"Eigener"_s);
    // Who deleted an entry does not want to see the one behind it.
    QCOMPARE(folders.nameOf(u"gone"_s), u"none"_s);
    // Folders are part of the id, and case does not count, unless it tells two files apart.
    QCOMPARE(folders.nameOf(u"KDE-viewer"_s), u"Viewer"_s);
    QCOMPARE(folders.nameOf(u"org.calls"_s), u"Lower"_s);
    QCOMPARE(folders.nameOf(u"ORG.CALLS"_s), u"Upper"_s);
    QCOMPARE(folders.nameOf(QString()), u"none"_s);
}

void DesktopEntriesTest::windowClasses() {
    Folders folders;
    write(folders.own() + u"/a-opener.desktop"_s,
          entryText("Opens files", "StartupWMClass=Ed\nNoDisplay=true\n"));
    write(folders.system() + u"/editor.desktop"_s, entryText("Editor", "StartupWMClass=ED\n"));
    write(folders.own() + u"/mail.desktop"_s, entryText("Mail", "StartupWMClass=crx_x\nExec=b --app-id=x\n"));
    write(folders.own() + u"/off.desktop"_s, entryText("Off", "StartupWMClass=off\nHidden=true\n"));

    QCOMPARE(folders.idOfClass(u"ed"_s), u"editor"_s); // the main entry before one that only opens files
    QCOMPARE(folders.idOfClass(u"crx_x"_s), u"none"_s);
    QCOMPARE(folders.idOfClass(u"off"_s), u"none"_s);
    QCOMPARE(folders.idOfClass(u""_s), u"none"_s);
}

void DesktopEntriesTest::changesAreNoticed() {
    Folders folders;
    QCOMPARE(folders.nameOf(u"new"_s), u"none"_s);
    write(folders.system() + u"/new.desktop"_s, entryText("First", "StartupWMClass=one\n"));
    folders.index.refresh();
    QCOMPARE(folders.nameOf(u"new"_s), u"First"_s);
    QCOMPARE(folders.idOfClass(u"one"_s), u"new"_s);

    // Written in place, so that the folder stays as it is.
    write(folders.system() + u"/new.desktop"_s, entryText("Second", "StartupWMClass=another\n"));
    folders.index.refresh();
    QCOMPARE(folders.idOfClass(u"one"_s), u"none"_s);
    QCOMPARE(folders.idOfClass(u"another"_s), u"new"_s);
    QCOMPARE(folders.nameOf(u"new"_s), u"Second"_s);

    write(folders.own() + u"/new.desktop"_s, entryText("Own"));
    folders.index.refresh();
    QCOMPARE(folders.nameOf(u"new"_s), u"Own"_s);
    QVERIFY(QDir(folders.own()).removeRecursively());
    folders.index.refresh();
    QCOMPARE(folders.nameOf(u"new"_s), u"Second"_s);
}

void DesktopEntriesTest::oddFiles() {
    Folders folders;
    QDir().mkpath(folders.own() + u"/folder.desktop"_s);
    // Nobody writes into the pipe; opening it must not wait for somebody.
    QCOMPARE(::mkfifo(QFile::encodeName(folders.own() + u"/pipe.desktop"_s).constData(), 0600), 0);
    QVERIFY(QFile::link(folders.own(), folders.own() + u"/loop"_s));
    QVERIFY(QFile::link(u"/nowhere"_s, folders.own() + u"/broken.desktop"_s));
    write(folders.own() + u"/good.desktop"_s, entryText("Good", "StartupWMClass=good\n"));

    for (const QString &id : {u"folder"_s, u"pipe"_s, u"broken"_s})
        QCOMPARE(folders.nameOf(id), u"none"_s);
    QCOMPARE(folders.idOfClass(u"good"_s), u"good"_s);
}

QTEST_APPLESS_MAIN(DesktopEntriesTest)
#include "tst_desktopentries.moc"
