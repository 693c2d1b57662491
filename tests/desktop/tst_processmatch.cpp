// Which process a window belongs to where the compositor does not tell: what the evidence leaves, and where
// it comes from.

#include "desktop/applications/SessionUnit.h"
#include "desktop/wayland/FlatpakInstances.h"
#include "desktop/wayland/ProcessMatch.h"
#include "desktop/wayland/SocketOwners.h"
#include "desktop/wayland/SocketPeers.h"
#include "tests/support/ListeningSocket.h"
#include "tests/support/Test.h"

#include <linux/netlink.h>
#include <linux/sock_diag.h>

namespace {

using Candidates = QList<MatchCandidate>;

MatchCandidate program(qint32 process, const QString &executable) {
    return {
        .process = process, .executable = executable, .commandName = executable.section(u'/', -1).left(15)};
}

MatchCandidate with(MatchCandidate candidate, const std::function<void(MatchCandidate &)> &change) {
    change(candidate);
    return candidate;
}

MatchCandidate onX11(qint32 process, const QStringList &classes) {
    return {
        .process = process, .isNative = false, .executable = u"/usr/bin/xterm"_s, .windowClasses = classes};
}

} // namespace

class ProcessMatchTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void matches();
    void units();
    void socketAnswers();
    void ownersOfSockets();
    void flatpaks();
};

void ProcessMatchTest::matches() {
    const auto row = [](const char *name, const MatchQuestion &question, const Candidates &candidates,
                        qint32 process) {
        QVERIFY2(matchingProcess(question, candidates) == process, name);
        const Candidates turned(candidates.crbegin(), candidates.crend());
        QVERIFY2(matchingProcess(question, turned) == process, name);
    };
    const auto isNew = [](MatchCandidate &candidate) { candidate.isNew = true; };
    const auto hasSuchWindows = [](MatchCandidate &candidate) { candidate.hasSuchWindows = true; };
    const auto inUnit = [](const QString &id) {
        return [id](MatchCandidate &candidate) { candidate.unitId = id; };
    };
    const auto inSandbox = [](const QString &id) {
        return [id](MatchCandidate &candidate) { candidate.sandboxId = id; };
    };
    const MatchCandidate foot = program(1, u"/usr/bin/foot"_s);
    const MatchCandidate secondFoot = program(2, u"/usr/bin/foot"_s);
    const MatchCandidate panel = program(3, u"/usr/bin/panel"_s);
    const MatchCandidate script = {
        .process = 4, .executable = u"/usr/bin/python3.11"_s, .commandName = u"gnome-tweaks"_s};
    const MatchCandidate chrome = program(5, u"/opt/google/chrome/chrome"_s);

    row("nobody", {.appId = u"foot"_s}, {}, 0);
    row("its name", {.appId = u"foot"_s}, {panel, foot}, 1);
    row("another case, and the last part", {.appId = u"org.kde.Foot"_s}, {panel, foot}, 1);
    row("no claim", {.appId = {}}, {foot}, 0);
    row("an unknown claim", {.appId = u"notes"_s}, {foot}, 0);
    row("a name that the kernel has cut off", {.appId = u"org.x.a-very-long-program-name"_s},
        {panel, with(foot, [](auto &candidate) { candidate.commandName = u"a-very-long-pro"_s; })}, 1);
    row("two of a program", {.appId = u"foot"_s}, {foot, secondFoot}, 0);
    row("two, of which one is new", {.appId = u"foot"_s, .isNew = true}, {foot, with(secondFoot, isNew)}, 2);
    row("two, and an old window", {.appId = u"foot"_s}, {foot, with(secondFoot, isNew)}, 0);
    row("two new ones", {.appId = u"foot"_s, .isNew = true}, {with(foot, isNew), with(secondFoot, isNew)}, 0);
    row("another window of one of two", {.appId = u"foot"_s}, {with(foot, hasSuchWindows), secondFoot}, 1);
    row("the one that is new", {.appId = u"notes"_s, .isNew = true}, {foot, with(panel, isNew)}, 3);
    row("the one that is new, to an old window", {.appId = u"notes"_s}, {foot, with(panel, isNew)}, 0);
    row("new, and used to it", {.appId = u"notes"_s, .isNew = true},
        {with(foot, hasSuchWindows), with(panel, isNew)}, 0);
    row("somebody new, and the program", {.appId = u"foot"_s, .isNew = true}, {foot, with(panel, isNew)}, 1);

    row("name on the bus", {.appId = u"foot"_s, .busOwner = 3}, {foot, panel}, 3);
    row("name on the bus of somebody else", {.appId = u"foot"_s, .busOwner = 99}, {foot, panel}, 1);
    row("sandbox", {.appId = u"us.zoom.Zoom"_s}, {foot, with(panel, inSandbox(u"us.zoom.Zoom"_s))}, 3);
    row("sandbox called as the entry", {.appId = u"zoom"_s, .entryId = u"us.zoom.Zoom"_s},
        {program(9, u"/usr/bin/other"_s), with(panel, inSandbox(u"us.zoom.Zoom"_s))}, 3);
    row("unit", {.appId = u"org.Notes"_s}, {foot, with(panel, inUnit(u"org.Notes"_s))}, 3);
    row("started from a terminal's unit", {.appId = u"foot"_s},
        {with(foot, inUnit(u"foot"_s)), with(panel, inUnit(u"foot"_s))}, 1);
    row("left over in a terminal's unit", {.appId = u"foot"_s}, {foot, with(panel, inUnit(u"foot"_s))}, 1);
    row("the entry's program",
        {.appId = u"term"_s, .program = u"/usr/bin/f"_s, .resolvedProgram = u"/usr/bin/foot"_s},
        {panel, foot}, 1);
    row("a launcher beside the program",
        {.appId = u"google-chrome"_s, .resolvedProgram = u"/opt/google/chrome/google-chrome"_s},
        {foot, chrome}, 5);
    row("a common folder", {.appId = u"x"_s, .resolvedProgram = u"/usr/bin/x-launcher"_s}, {foot}, 0);
    row("a script", {.appId = u"org.gnome.tweaks"_s, .program = u"/usr/bin/gnome-tweaks"_s}, {foot, script},
        4);

    row("X11", {.appId = u"Zoom"_s}, {foot, onX11(7, {u"Zoom"_s})}, 7);
    row("two windows on X11", {.appId = u"Zoom"_s, .windows = 2}, {onX11(7, {u"Zoom"_s, u"Zoom"_s})}, 7);
    row("two programs on X11", {.appId = u"Zoom"_s, .windows = 2},
        {onX11(7, {u"Zoom"_s}), onX11(8, {u"Zoom"_s})}, 0);
    row("another class on X11", {.appId = u"xterm"_s}, {onX11(7, {u"Zoom"_s})}, 0);
    row("X11 before whoever is called so", {.appId = u"foot"_s}, {foot, onX11(7, {u"foot"_s})}, 7);
    row("one on X11 and one not", {.appId = u"foot"_s, .windows = 2}, {foot, onX11(7, {u"foot"_s})}, 0);
    row("one on X11 and one not, which is new", {.appId = u"foot"_s, .windows = 2, .isNew = true},
        {with(foot, isNew), onX11(7, {u"foot"_s})}, 1);
}

void ProcessMatchTest::units() {
    const auto unit = [](const QByteArray &path) {
        return unitIdOfControlGroup("0::/user.slice/user-1000.slice/user@1000.service/app.slice/" + path +
                                    '\n');
    };
    QCOMPARE(unit("app-gnome-org.gnome.TextEditor-4711.scope"), u"org.gnome.TextEditor"_s);
    QCOMPARE(unit("app-gnome-my\\x2dapp-4711.scope"), u"my-app"_s);
    QCOMPARE(unit("app-org.kde.konsole@0a1b.service"), u"org.kde.konsole"_s);
    QCOMPARE(unit("app-org.kde.konsole.service"), u"org.kde.konsole"_s);
    QCOMPARE(unit("app-flatpak-us.zoom.Zoom-12.scope"), u"us.zoom.Zoom"_s);
    QCOMPARE(unit("app-org.kde.konsole-1.scope/app-foot-2.scope/sub"), u"foot"_s);
    for (const char *path :
         {"app-.scope", "app-1.scope", "app-", "dbus.service", "app-@.service", "app-x\\x2", ""})
        QCOMPARE(unit(path), QString());
    QCOMPARE(unit("app-a\\xzzb-1.scope"), u"a\\xzzb"_s);
}

void ProcessMatchTest::socketAnswers() {
    // As the kernel would answer: a message with a name and a peer, and the end.
    const auto bytes = [](auto value) {
        return QByteArray(reinterpret_cast<const char *>(&value), sizeof value);
    };
    const auto attribute = [&](quint16 type, const QByteArray &value) {
        return (bytes(static_cast<quint16>(4 + value.size())) + bytes(type) + value)
            .leftJustified((value.size() + 7) & ~3, '\0');
    };
    const auto message = [&](quint16 type, const QByteArray &body) {
        nlmsghdr head{};
        head.nlmsg_len = static_cast<quint32>(sizeof head + static_cast<std::size_t>(body.size()));
        head.nlmsg_type = type;
        return bytes(head) + body;
    };
    const QByteArray socket(16, '\0');
    const QByteArray whole =
        message(SOCK_DIAG_BY_FAMILY,
                socket + attribute(0, QByteArray("/run/w\0", 7)) + attribute(2, bytes(7U))) +
        message(SOCK_DIAG_BY_FAMILY, socket + attribute(0, "/other") + attribute(2, bytes(8U))) +
        message(SOCK_DIAG_BY_FAMILY, socket + attribute(0, "/run/w"));
    const auto read = [](const QByteArray &answer, bool goesOn) {
        SocketPeers peers;
        const QByteArray exact(answer.constData(), answer.size());
        QList<quint32> found;
        if (takeSocketAnswer(exact, {"/run/w"}, peers) == goesOn)
            found = peers.value("/run/w").values();
        return peers.size() > 1 ? QList<quint32>{0} : found;
    };
    QCOMPARE(read(whole, true), QList<quint32>{7});
    QCOMPARE(read(whole + message(NLMSG_DONE, bytes(0)), false), QList<quint32>{7});
    QCOMPARE(read(message(NLMSG_ERROR, bytes(-2)), false), QList<quint32>());
    for (const char *name :
         {"socket:[12", "socket:12]", "pipe:[12]", "socket:[]", "socket:[99999999999]", ""})
        QCOMPARE(inodeOfSocket(name), 0U);
    QCOMPARE(inodeOfSocket("socket:[12]"), 12U);
}

void ProcessMatchTest::ownersOfSockets() {
    const samples::ListeningSocket server;
    SocketOwners owners;
    const auto clients = [&] { return owners.of(peersOfSockets({server.path()}).value(server.path())); };
    QCOMPARE(clients(), QList<qint32>());

    const int client = server.connect();
    const int accepted = ::accept4(server.descriptor(), nullptr, nullptr, SOCK_CLOEXEC);
    QCOMPARE(clients(), QList<qint32>{::getpid()});
    // Under another number it is still his, and then it is nobody's.
    const int same = ::dup(client);
    ::close(client);
    QCOMPARE(clients(), QList<qint32>{::getpid()});
    ::close(same);
    QCOMPARE(clients(), QList<qint32>());
    ::close(accepted);
}

void ProcessMatchTest::flatpaks() {
    const QTemporaryDir runtime;
    const QTemporaryDir proc;
    const auto install = [&](const QString &instance, const QByteArray &info, const QByteArray &sandbox) {
        samples::write(runtime.filePath(u".flatpak/"_s + instance + u"/info"_s), info);
        samples::write(runtime.filePath(u".flatpak/"_s + instance + u"/bwrapinfo.json"_s), sandbox);
    };
    const QByteArray zoom = "[Application]\nname=us.zoom.Zoom\n";
    // Both see another file system than this process.
    for (const QString &process : {u"12"_s, u"13"_s, u"self"_s}) {
        QVERIFY(QDir(proc.path()).mkpath(process + u"/ns"_s));
        QVERIFY(QFile::link(u"mnt:"_s + process, proc.filePath(process + u"/ns/mnt"_s)));
    }
    samples::write(proc.filePath(u"12/root/.flatpak-info"_s), zoom);
    install(u"1"_s, zoom, R"({"child-pid": 12, "mnt-namespace": 1})");
    install(u"2"_s, zoom, R"({"child-pid": 13})"); // somebody else's by now
    install(u"3"_s, zoom, R"({"child-pid": -1})");
    install(u"4"_s, zoom, R"({"child-pid": "12"})");
    install(u"5"_s, zoom, "[");
    install(u"6"_s, "[Runtime]\nname=us.zoom.Zoom\n", R"({"child-pid": 12})");
    QCOMPARE(runningFlatpaks(QFile::encodeName(runtime.path()), QFile::encodeName(proc.path())),
             (QList<FlatpakInstance>{{u"us.zoom.Zoom"_s, 12}}));
    QVERIFY(runningFlatpaks({}, "/proc").isEmpty());
}

KESTRIN_TEST(ProcessMatchTest)
#include "tst_processmatch.moc"
