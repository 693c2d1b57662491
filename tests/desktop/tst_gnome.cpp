// What is made of a GNOME shell that is silent, talks nonsense or goes away, and what a user's permission
// leaves on disk.

#include "desktop/gnome/EnabledExtensions.h"
#include "desktop/gnome/GnomeClients.h"
#include "desktop/gnome/GnomeShellWindows.h"
#include "desktop/permission/AllowedPrograms.h"
#include "desktop/permission/PlasmaPermission.h"
#include "tests/support/Program.h"
#include "tests/support/Test.h"

#include <QCoreApplication>
#include <QDeadlineTimer>

#include <signal.h>

#include <atomic>
#include <list>
#include <thread>

using namespace kestrin::samples;

namespace {

enum class Manner { honest, silent, denies, otherType, floods };

/// A member of the bus on a thread of its own, as long as it lives.
class Shell {
  public:
    explicit Shell(const QByteArrayList &names) {
        sd_bus_open_user(&m_bus);
        sd_bus_add_object(m_bus, nullptr, KESTRIN_WINDOWS_PATH, answer, this);
        for (const QByteArray &name : names)
            sd_bus_request_name(m_bus, name.constData(), 0);
        m_thread = std::thread([this] { serve(); });
    }
    ~Shell() {
        m_isOver = true;
        m_thread.join();
        sd_bus_flush_close_unref(m_bus);
    }

    std::atomic<Manner> manner = Manner::honest;
    /// Signals still to be sent.
    std::atomic<int> signals = 0;
    std::atomic<bool> losesExtension = false;

  private:
    void serve() {
        while (!m_isOver) {
            while (sd_bus_process(m_bus, nullptr) > 0) {
            }
            for (; signals > 0; --signals)
                sd_bus_emit_signal(m_bus, KESTRIN_WINDOWS_PATH, KESTRIN_WINDOWS_NAME "1", "Changed", "");
            if (losesExtension.exchange(false))
                sd_bus_release_name(m_bus, KESTRIN_WINDOWS_NAME);
            sd_bus_wait(m_bus, 5000);
        }
    }

    static int answer(sd_bus_message *call, void *shell, sd_bus_error * /*error*/) {
        const Manner manner = static_cast<Shell *>(shell)->manner;
        if (manner == Manner::silent)
            return 1;
        if (manner == Manner::denies)
            return sd_bus_reply_method_errorf(call, SD_BUS_ERROR_ACCESS_DENIED, "No.");
        if (manner == Manner::otherType)
            return sd_bus_reply_method_return(call, "as", 1, "window");
        if (sd_bus_message_is_method_call(call, nullptr, "Quit") > 0)
            return sd_bus_reply_method_return(call, "u", 1U);
        const QByteArray name = manner == Manner::floods ? QByteArray(1001, 'n') : QByteArray("foot");
        sd_bus_message *reply = nullptr;
        sd_bus_message_new_method_return(call, &reply);
        sd_bus_message_open_container(reply, 'a', "(uissssbb)");
        for (unsigned id = 1; id <= (manner == Manner::floods ? 5001U : 2U); ++id)
            sd_bus_message_append(reply, "(uissssbb)", id, 40 + id, "foot.desktop", name.constData(), "",
                                  "box", 1, id == 1);
        sd_bus_message_close_container(reply);
        const int sent = sd_bus_send(nullptr, reply, nullptr);
        sd_bus_message_unref(reply);
        return sent;
    }

    sd_bus *m_bus = nullptr;
    std::atomic<bool> m_isOver = false;
    std::thread m_thread;
};

const QByteArrayList bothNames{"org.gnome.Shell", KESTRIN_WINDOWS_NAME};

Deadline soon() {
    return Deadline(std::chrono::milliseconds(300));
}

} // namespace

class GnomeTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    // The shell of these tests is no compositor.
    void initTestCase() { qunsetenv("WAYLAND_DISPLAY"); }
    void answers();
    void impostor();
    void following();
    void clients();
    void allowedPrograms();
    void settings();
    void plasmaEntries();
};

void GnomeTest::answers() {
    Shell shell(bothNames);
    const auto row = [&shell](Manner manner, qsizetype count) {
        // Whoever was answered once, and whoever never was.
        GnomeShellWindows known;
        shell.manner = Manner::honest;
        QVERIFY(known.open(Deadline(desktopPatience)));
        shell.manner = manner;
        const QDeadlineTimer quickly(2000);
        const std::chrono::milliseconds patience =
            manner == Manner::silent ? soon().remaining() : desktopPatience;
        const auto windows = known.windows(Deadline(patience));
        QCOMPARE(windows ? windows->size() : -1, count);
        QCOMPARE(GnomeShellWindows().open(Deadline(patience)),
                 manner != Manner::silent && manner != Manner::denies);
        QVERIFY(!quickly.hasExpired());
        if (manner == Manner::honest) {
            const ApplicationClaims claims{{}, u"foot"_s, {}, u"foot.desktop"_s, u"box"_s};
            QCOMPARE(*windows, (QList<SourceWindow>{{1, 41, claims, true}, {2, 42, claims, false}}));
            QVERIFY(known.close(*windows, soon()));
        } else if (manner == Manner::floods) {
            QCOMPARE(windows->first().claims.className.size(), 1000);
        } else {
            // Another question begins anew.
            shell.manner = Manner::honest;
            QVERIFY(known.open(Deadline(desktopPatience)) && known.windows(Deadline(desktopPatience)));
        }
    };
    row(Manner::honest, 2);
    for (const Manner manner : {Manner::silent, Manner::denies, Manner::otherType})
        row(manner, -1);
    row(Manner::floods, 5000);
}

void GnomeTest::impostor() {
    QVERIFY(!GnomeShellWindows().open(soon()));
    const Shell shell({bothNames.first()});
    QVERIFY(!GnomeShellWindows().open(soon()));
    const Shell other({bothNames.last()});
    QVERIFY(!GnomeShellWindows().open(soon()));
}

void GnomeTest::following() {
    // Of the shell, of the extension, and of the patience.
    const auto row = [](const std::function<void(std::optional<Shell> &, GnomeShellWindows &)> &end) {
        std::optional<Shell> shell(bothNames);
        GnomeShellWindows source;
        QSignalSpy changed(&source, &WindowSource::changed);
        QSignalSpy lost(&source, &WindowSource::lost);
        QVERIFY(source.open(Deadline(desktopPatience)) && source.windows(Deadline(desktopPatience)));
        shell->signals = 3000;
        QTRY_VERIFY(shell->signals == 0 && !changed.isEmpty());
        QVERIFY(lost.isEmpty());
        end(shell, source);
        QTRY_COMPARE(lost.size(), 1);
        QVERIFY(!source.windows(soon()) && !source.open(soon()));
    };
    row([](auto &shell, auto &) { shell.reset(); });
    row([](auto &shell, auto &) { shell->losesExtension = true; });
    row([](auto &shell, auto &source) {
        shell->manner = Manner::silent;
        QVERIFY(!source.windows(soon()));
    });
}

void GnomeTest::clients() {
    const QTemporaryDir home;
    qputenv("XDG_DATA_HOME", QFile::encodeName(home.path()));
    qputenv("XDG_DATA_DIRS", "/nowhere");
    const auto install = [&home](const QString &id, const QString &program, const QByteArray &more = {}) {
        write(home.filePath(u"applications/"_s + id + u".desktop"_s),
              "[Desktop Entry]\nType=Application\nName=A\nExec=\"" + QFile::encodeName(program) + "\" %U\n" +
                  more);
    };
    std::list<Program> processes;
    QList<qint32> clients{static_cast<qint32>(QCoreApplication::applicationPid())};
    const auto start = [&](const QStringList &command) {
        clients.append(processes.emplace_back(command).process());
    };
    // This process has that name.
    install(u"org.gnome.Shell"_s, u"/nowhere/shell"_s);
    install(u"zoom"_s, home.filePath(u"zoom"_s));
    install(u"hidden"_s, home.filePath(u"hidden"_s), "NoDisplay=true\n");
    for (const QString &name : {u"zoom"_s, u"hidden"_s, u"unknown"_s}) {
        QVERIFY(QFile::copy(u"/bin/sleep"_s, home.filePath(name)));
        start({home.filePath(name), u"60"_s});
    }
    const QString notes = home.filePath(u"notes"_s);
    install(u"org.example.Notes"_s, notes);
    write(notes, "[ -n \"$1\" ] || sh \"$0\" helper\nsleep 60\n");
    start({u"sh"_s, notes});
    const QString children = u"/proc/%1/task/%1/children"_s.arg(clients.last());
    QTRY_VERIFY(contents(children).toInt() > 0);
    clients.append(contents(children).toInt());

    const Shell shell({"org.gnome.Shell", "org.gnome.Shell.Introspect"});
    GnomeClients source([&clients] { return clients; });
    QVERIFY(source.open(soon()));
    const auto windows = source.windows(Deadline(desktopPatience));
    QVERIFY(windows);
    QStringList found;
    for (const SourceWindow &window : *windows)
        found.append(QString::number(clients.indexOf(window.process)) + u' ' + window.claims.kdeDesktopFile);
    QCOMPARE(found, (QStringList{u"0 org.gnome.Shell"_s, u"1 zoom"_s, u"4 org.example.Notes"_s}));
    ::kill(clients.last(), SIGKILL);
}

void GnomeTest::allowedPrograms() {
    const QTemporaryDir home;
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(home.path()));
    const QString path = AllowedPrograms::path();
    const QStringList own{u"/opt/a b/kestrin"_s, u"/opt/a b/kestrinctl"_s};
    QVERIFY(AllowedPrograms::add(own) && AllowedPrograms::remove(own) && !QFile::exists(path));
    const QByteArray others("# mine\n/usr/bin/other\n");
    write(path, others);
    QVERIFY(AllowedPrograms::add(own) && AllowedPrograms::add(own));
    QCOMPARE(contents(path), others + "/opt/a b/kestrin\n/opt/a b/kestrinctl\n");
    QVERIFY(AllowedPrograms::remove(own));
    QCOMPARE(contents(path), others);
    QVERIFY(QFile::remove(path) && QDir().mkdir(path) && !AllowedPrograms::add(own));
}

void GnomeTest::settings() {
    const auto row = [](const QByteArray &before, const QByteArray &with, const QByteArray &without) {
        QCOMPARE(listWith(before, "x@y", true), with);
        QCOMPARE(listWith(before, "x@y", false), without);
    };
    row("@as []", "@as ['x@y']", "@as []");
    row("['a@b']", "['a@b', 'x@y']", "['a@b']");
    row("['x@y']", "['x@y']", "[]");
    row("['x@y', 'a@b']", "['x@y', 'a@b']", "['a@b']");
    row("['a@b', 'x@y', 'c@d']", "['a@b', 'x@y', 'c@d']", "['a@b', 'c@d']");
    row("['ax@y']", "['ax@y', 'x@y']", "['ax@y']");
    row("No such key", {}, {});
}

void GnomeTest::plasmaEntries() {
    const QTemporaryDir home;
    const QString folder = home.filePath(u"applications"_s);
    // Windows that can be seen are all that it needs of a desktop.
    const Shell shell(bothNames);
    const auto permissionFor = [&folder](const OwnPrograms &programs) {
        return PlasmaPermission(programs, folder, std::make_unique<GnomeShellWindows>());
    };
    QVERIFY(permissionFor({{u"/usr/bin/kestrin"_s}, true}).enable().isDone && !QDir(folder).exists());
    PlasmaPermission permission =
        permissionFor({{u"/tmp/my \"builds\"/kestrin"_s, u"/tmp/kestrinctl"_s}, false});
    QVERIFY(permission.enable().isDone && permission.enable().isDone);
    const QDir entries(folder);
    QCOMPARE(entries.entryList(QDir::Files).size(), 2);
    const QByteArray text = contents(entries.filePath(entries.entryList(QDir::Files).first()));
    QVERIFY(text.contains("\nExec=\"/tmp/my \\\\\"builds\\\\\"/kestrin\"\n") &&
            text.contains("\nNoDisplay=true\n"));
    write(entries.filePath(u"other.desktop"_s), "");
    QVERIFY(permission.disable().isDone);
    QCOMPARE(entries.entryList(QDir::Files), QStringList{u"other.desktop"_s});
}

KESTRIN_TEST(GnomeTest)

#include "tst_gnome.moc"
