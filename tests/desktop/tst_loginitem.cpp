// Starting at login: what is written, what is read, and who wins.

#include "desktop/login/FileLoginItem.h"
#include "tests/support/Test.h"

#include <QProcess>
#include <QStandardPaths>

namespace {

const QByteArray on = "[Desktop Entry]\nType=Application\nName=K\nExec=true\n";

/// A user's folder and one for all users.
struct Places {
    QTemporaryDir root;
    LoginFile file = autostartEntry();

    Places() { file.folders = {root.filePath(u"own"_s), root.filePath(u"all"_s)}; }
    QString own() const { return root.filePath(u"own/"_s + file.name); }
    QString all() const { return root.filePath(u"all/"_s + file.name); }
    QString install(const QString &folder) const {
        const QString path = root.filePath(folder + u"/kestrin"_s);
        samples::write(path, "#!/bin/sh\n");
        QFile::setPermissions(path, QFile::ReadOwner | QFile::ExeOwner);
        return path;
    }
};

} // namespace

class LoginItemTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void commands();
    void precedence();
    void obstacles();
    void launchAgents();
};

void LoginItemTest::commands() {
    const QString validator = QStandardPaths::findExecutable(u"desktop-file-validate"_s);
    const auto row = [&validator](const QString &folder, const QByteArray &line) {
        const Places places;
        FileLoginItem item(places.install(folder), places.file);
        // Also says that TryExec, which is quoted differently, names the program.
        QVERIFY(!item.isEnabled() && item.setEnabled(true) && item.isEnabled());
        const QByteArray text = samples::contents(places.own());
        QVERIFY2(text.contains(QByteArray(line).replace("DIR", places.root.path().toUtf8())), text);
        QVERIFY(samples::isOwnersAlone(places.own()));
        if (!validator.isEmpty())
            QCOMPARE(QProcess::execute(validator, {places.own()}), 0);
    };
    row(u"a b"_s, "Exec=\"DIR/a b/kestrin\" --background\n");
    row(u"5%é"_s, "Exec=env DIR/5%%é/kestrin --background\n");
    row(u"q\"$x`\\'%f"_s, R"(Exec=env "DIR/q\\"\\$x\\`\\\\'%%f/kestrin" --background)");
    row(u"a\nHidden=true"_s, R"(Exec="DIR/a\nHidden=true/kestrin" --background)");
}

void LoginItemTest::precedence() {
    const auto row = [](const char *what, const QByteArray &own, const QByteArray &all, bool starts) {
        const Places places;
        if (!own.isEmpty())
            samples::write(places.own(), own);
        if (!all.isEmpty())
            samples::write(places.all(), all);
        FileLoginItem item(places.install(u"bin"_s), places.file);
        QVERIFY2(item.isEnabled() == starts, what);

        QVERIFY2(item.setEnabled(true) && item.isEnabled(), what);
        // What starts for all users needs nothing of one's own, and anything else names this program.
        QCOMPARE(samples::contents(places.own()).contains("/bin/kestrin --"), !(own.isEmpty() && starts));
        FileLoginItem withoutProgram(QString(), places.file);
        QVERIFY2(withoutProgram.setEnabled(false) && !item.isEnabled(), what);
        QCOMPARE(QFile::exists(places.own()), !all.isEmpty());
        QVERIFY2(!withoutProgram.setEnabled(true) && !item.isEnabled(), what);
        QVERIFY2(item.setEnabled(true) && item.isEnabled(), what);
        QCOMPARE(samples::contents(places.all()), all.isEmpty() ? QByteArray("(no file)") : all);
    };
    row("none", {}, {}, false);
    row("on", on + "Hidden=false\nX-GNOME-Autostart-enabled=true\n", {}, true);
    row("hidden", on + "Hidden=true\n", {}, false);
    row("switched off by the desktop", on + "X-GNOME-Autostart-enabled=false\n", {}, false);
    row("program gone", on + "TryExec=/nowhere/kestrin\n", {}, false);
    row("no entry", "[Other]\nExec=true\n", {}, false);
    row("for all", {}, on, true);
    row("masked", "\n", on, false);
    row("for one", on, on + "Hidden=true\n", true);
}

void LoginItemTest::obstacles() {
    // What is no file is nobody's switch: it is named and stays.
    const Places places;
    FileLoginItem item(places.install(u"bin"_s), places.file);
    QVERIFY(QDir().mkpath(places.own()));
    QCOMPARE(item.setEnabled(false).problem, places.own() + u" is a folder and not a file; move it away."_s);
    QVERIFY(!item.setEnabled(true) && QFileInfo(places.own()).isDir());
    QVERIFY(QDir().rmdir(places.own()));

    // More than fits into memory, most of which is a hole.
    QFile large(places.own());
    QVERIFY(large.open(QFile::WriteOnly) && large.resize(qint64(1) << 40));
    QVERIFY(!item.isEnabled() && item.setEnabled(true) && item.isEnabled());

    // A link goes, what it leads to stays.
    QVERIFY(item.setEnabled(false) && !QFile::exists(places.own()));
    const QString folder = QFileInfo(places.own()).path();
    QVERIFY(QFile::link(folder, places.own()) && item.setEnabled(false));
    QVERIFY(!QFileInfo(places.own()).isSymLink() && QFileInfo(folder).isDir());
}

void LoginItemTest::launchAgents() {
    Places places;
    places.file = launchAgent();
    places.file.folders = {places.root.filePath(u"own"_s)};
    FileLoginItem item(places.install(u"a & <b> \"é\""_s), places.file);
    QVERIFY(item.setEnabled(true) && item.isEnabled() && samples::isOwnersAlone(item.path()));
    const QByteArray text = samples::contents(item.path());
    QVERIFY(text.contains("/a &amp; &lt;b&gt; &quot;é&quot;/kestrin</string>"));
    for (const QByteArray &off : {QByteArray(text).replace("<true/>", "<false/>"), text.chopped(5),
                                  QByteArray(text).replace("</dict>", "<key>Disabled</key><true/></dict>")}) {
        samples::write(item.path(), off);
        QVERIFY2(!item.isEnabled(), off);
    }
    QVERIFY(item.setEnabled(true) && item.setEnabled(false) && !QFile::exists(item.path()));
}

KESTRIN_TEST(LoginItemTest)
#include "tst_loginitem.moc"
