// Who uses microphone or camera: by device files of the test's own, which real programs open, by tables of
// what the system tells of devices and processes, and by sources that come and go.

#include "desktop/live/DesktopDeviceUses.h"
#include "desktop/live/DeviceFileUses.h"
#include "desktop/live/DeviceKind.h"
#include "engine/workspace/InMemoryWorkspace.h"
#include "tests/support/Test.h"

#include <QProcess>

#include <fcntl.h>
#include <unistd.h>

#include <csignal>

using enum MacRiskCategory;

namespace {

/// Two cameras and a sound card, and room for what the system tells of them.
struct Devices {
    QTemporaryDir root;

    Devices() {
        for (const QString &name :
             {u"video0"_s, u"video1"_s, u"snd/pcmC0D0c"_s, u"snd/pcmC0D0p"_s, u"null"_s})
            samples::write(path(name), "");
    }

    QString path(const QString &name) const { return root.filePath(u"dev/"_s + name); }
    DevicePlaces places() const {
        const auto place = [this](const QString &name) { return QFile::encodeName(root.filePath(name)); };
        return {place(u"dev"_s), place(u"proc"_s), place(u"sys"_s), place(u"udev"_s)};
    }
    /// With the processes of this machine.
    DevicePlaces realPlaces() const {
        DevicePlaces all = places();
        all.processes = "/proc";
        return all;
    }
    void link(const QString &target, const QString &name) const {
        QDir().mkpath(QFileInfo(root.filePath(name)).path());
        QVERIFY(QFile::link(target, root.filePath(name)));
    }
    void makeVirtual(const QString &camera) const {
        link(u"../../devices/virtual/video4linux/"_s + camera, u"sys/"_s + camera);
    }
    void addProcess(int number, const QString &executable) const {
        link(executable, u"proc/%1/exe"_s.arg(number));
    }
    void addDescriptor(int process, int descriptor, const QString &device, const QByteArray &flags) const {
        link(path(device), u"proc/%1/fd/%2"_s.arg(process).arg(descriptor));
        samples::write(root.filePath(u"proc/%1/fdinfo/%2"_s.arg(process).arg(descriptor)),
                       "pos:\t0\nflags:\t" + flags + "\nmnt_id:\t5\n");
    }
};

/// A program that does as it is told, line by line.
struct Program {
    QProcess process;
    qint32 id = 0;

    explicit Program(const QString &executable = u"/bin/bash"_s) {
        process.start(executable, {u"-c"_s, u"while read -r word; do eval \"$word\"; done"_s});
        if (!process.waitForStarted())
            qFatal("%s could not be started.", qUtf8Printable(executable));
        id = static_cast<qint32>(process.processId());
    }
    ~Program() {
        process.closeWriteChannel();
        if (!process.waitForFinished(5000))
            process.kill();
        process.waitForFinished();
    }

    void tell(const QString &command) { process.write(command.toUtf8() + '\n'); }
    /// Returns when it is done.
    void obey(const QString &command) {
        tell(command + u"; echo done"_s);
        while (!process.canReadLine() && process.waitForReadyRead()) {
        }
        QCOMPARE(process.readLine(), QByteArray("done\n"));
    }
};

/// What was told, one word an event.
struct Told {
    QStringList events;
    int sightChanges = 0;
    std::unique_ptr<DeviceUseSubscription> subscription;

    explicit Told(DeviceUses &uses) {
        const auto note = [this](QChar sign) {
            return [this, sign](const DeviceUse &use) {
                events.append(sign + rawValue(use.category) + u' ' + QString::number(use.processIdentifier));
            };
        };
        subscription = uses.subscribe({note(u'+'), note(u'-'), [this] { ++sightChanges; }});
    }
};

QString line(QChar sign, MacRiskCategory category, qint32 process) {
    return sign + rawValue(category) + u' ' + QString::number(process);
}

std::vector<std::unique_ptr<UseSource>> listOf(std::unique_ptr<UseSource> source) {
    std::vector<std::unique_ptr<UseSource>> sources;
    sources.push_back(std::move(source));
    return sources;
}

/// A server of sound that tells what the test says.
class ToldUses final : public UseSource {
  public:
    QList<SourceUse> current;
    bool answers = true;
    bool opened = false;

    bool open(const Deadline & /*deadline*/) override { return opened = answers; }
    bool isOpen() const override { return opened; }
    void close() override { opened = false; }
    std::optional<QList<SourceUse>> uses(const Deadline & /*deadline*/) override {
        return answers ? std::optional(current) : std::nullopt;
    }
    bool isSoundServer() const override { return true; }

    void tell(const QList<SourceUse> &uses) {
        current = uses;
        Q_EMIT changed();
    }
    void comeBack() {
        answers = true;
        Q_EMIT appeared();
    }
    void goAway() {
        answers = opened = false;
        Q_EMIT lost();
    }
};

} // namespace

class DeviceUsesTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void kinds();
    void stateOfProcesses();
    void unseen();
    void programs();
    void laterDevices();
    void flapping();
    void applications();
    void sources();

  private:
    InMemoryWorkspace workspace;
};

void DeviceUsesTest::kinds() {
    const Devices devices;
    const std::pair<QString, QByteArray> cameras[] = {
        {u"video1"_s, ":capture:"},       {u"video2"_s, ":"},
        {u"video3"_s, ":video_output:"},  {u"video4"_s, ":capture:video_output:"},
        {u"video5"_s, ":capture:tuner:"},
    };
    for (const auto &[name, can] : cameras) {
        const QByteArray number = "81:" + name.mid(5).toLatin1();
        samples::write(devices.root.filePath(u"sys/"_s + name + u"/dev"_s), number + '\n');
        samples::write(devices.root.filePath(u"udev/c"_s + QString::fromLatin1(number)),
                       "S:v4l\nE:ID_V4L_VERSION=2\nE:ID_V4L_CAPABILITIES=" + can + "\nG:seat\n");
    }
    devices.makeVirtual(u"video9"_s);
    const std::pair<QByteArray, DeviceKind> expected[] = {
        // Nothing is known of it.
        {"video0", DeviceKind::camera},
        {"video1", DeviceKind::camera},
        // Metadata, an output, a codec and a card for television.
        {"video2", DeviceKind::other},
        {"video3", DeviceKind::other},
        {"video4", DeviceKind::other},
        {"video5", DeviceKind::camera},
        {"video9", DeviceKind::virtualCamera},
        {"snd/pcmC0D0c", DeviceKind::microphone},
        {"snd/pcmC12D34c", DeviceKind::microphone},
        {"snd/pcmC0D0p", DeviceKind::other},
        {"snd/controlC0", DeviceKind::other},
        {"pcmC0D0c", DeviceKind::other},
        {"snd/pcmC0c", DeviceKind::other},
        {"snd/pcmCD0c", DeviceKind::other},
        {"video", DeviceKind::other},
        {"video1x", DeviceKind::other},
        {"videos/video1", DeviceKind::other},
    };
    for (const auto &[name, kind] : expected)
        QVERIFY2(kindOfDevice(name, devices.places()) == kind, name.constData());
}

void DeviceUsesTest::stateOfProcesses() {
    const Devices devices;
    devices.makeVirtual(u"video1"_s);
    struct State {
        QString executable;
        QString device;
        QByteArray flags;
        QList<MacRiskCategory> uses;
        QByteArray maps = {};
    };
    const QString program = u"/opt/call/call"_s;
    const QByteArray mapped =
        "7f00-7f10 rw-s 00000000 00:06 9   " + QFile::encodeName(devices.path(u"video1"_s)) + '\n';
    const State states[] = {
        {program, u"video0"_s, "0100002", {camera}},
        {program, u"video0"_s, "02104000", {camera}},
        {program, u"snd/pcmC0D0c"_s, "0100002", {microphone}},
        {u"/opt/call/call (deleted)"_s, u"video0"_s, "02", {camera}},
        // It writes, only stands for the file, may only ask about it, or plays.
        {program, u"video0"_s, "01", {}},
        {program, u"video0"_s, "012100000", {}},
        {program, u"video0"_s, "03", {}},
        {program, u"snd/pcmC0D0p"_s, "02", {}},
        {program, u"null"_s, "02", {}},
        // Servers are told by where they are installed.
        {u"/usr/bin/wireplumber"_s, u"video0"_s, "02", {}},
        {u"/usr/bin/pulseaudio"_s, u"snd/pcmC0D0c"_s, "02", {}},
        {u"/usr/libexec/xdg-desktop-portal-gtk"_s, u"video0"_s, "02", {}},
        {u"/home/x/pipewire"_s, u"video0"_s, "02", {camera}},
        {u"/usr/local/bin/pipewire"_s, u"video0"_s, "02", {camera}},
        {u"/usr/bin/pipewire-recorder"_s, u"video0"_s, "02", {camera}},
        // Of a virtual camera whoever reads it, or has its pictures in his memory.
        {program, u"video1"_s, "0100002", {}},
        {program, u"video1"_s, "0100000", {camera}},
        {program, u"video1"_s, "0100002", {camera}, mapped},
    };
    QList<SourceUse> expected;
    int process = 100;
    for (const State &state : states) {
        devices.addProcess(++process, state.executable);
        devices.addDescriptor(process, 3, state.device, state.flags);
        // The same once more is no second use.
        devices.addDescriptor(process, 4, state.device, state.flags);
        samples::write(devices.root.filePath(u"proc/%1/maps"_s.arg(process)), state.maps);
        for (const MacRiskCategory category : state.uses)
            expected.append({category, process});
    }
    // A link of the same name leads elsewhere, and a process is gone while it is looked at.
    devices.addProcess(201, program);
    samples::write(devices.root.filePath(u"elsewhere/video0"_s), "");
    devices.link(devices.root.filePath(u"elsewhere/video0"_s), u"proc/201/fd/3"_s);
    QVERIFY(QDir().mkpath(devices.root.filePath(u"proc/202"_s)));
    QVERIFY(QDir().mkpath(devices.root.filePath(u"proc/self"_s)));

    DeviceFileUses source(devices.places());
    QVERIFY(source.open(Deadline(1s)));
    QCOMPARE(source.uses(Deadline(5s)), std::optional(expected));
    QVERIFY(source.sight().isFull());
}

void DeviceUsesTest::unseen() {
    const Devices devices;
    QVERIFY(QDir().mkpath(devices.root.filePath(u"proc"_s)));
    DesktopDeviceUses uses(listOf(std::make_unique<DeviceFileUses>(devices.places())), workspace);
    const Told told(uses);
    const QString usual = uses.sight().reason;
    QVERIFY(usual.contains(u"No sound server"));
    // No process of this /proc has opened it.
    const int camera = ::open(QFile::encodeName(devices.path(u"video0"_s)).constData(), O_RDONLY | O_CLOEXEC);
    QTRY_VERIFY(uses.sight().reason.contains(u"A program uses the camera"));
    ::close(camera);
    QTRY_COMPARE(uses.sight().reason, usual);
    QCOMPARE(told.sightChanges, 2);

    QVERIFY(QDir(devices.path({})).removeRecursively());
    DesktopDeviceUses blind(listOf(std::make_unique<DeviceFileUses>(devices.places())), workspace);
    QCOMPARE(blind.sight().extent, Sight::Extent::none);
    QCOMPARE(blind.uses(), QList<DeviceUse>());
}

void DeviceUsesTest::programs() {
    const Devices devices;
    Program early;
    Program late;
    early.obey(u"exec 3<'%1'"_s.arg(devices.path(u"snd/pcmC0D0c"_s)));
    DesktopDeviceUses uses(listOf(std::make_unique<DeviceFileUses>(devices.realPlaces())), workspace);
    const Told told(uses);
    QCOMPARE(uses.uses().size(), 1);
    QCOMPARE(uses.uses().first().processIdentifier, early.id);
    QCOMPARE(uses.uses().first().localizedName, u"bash"_s);

    late.obey(u"exec 3<>'%1' 4<'%1'"_s.arg(devices.path(u"video0"_s)));
    QTRY_COMPARE(told.events, QStringList{line(u'+', camera, late.id)});
    late.obey(u"exec 3<&-"_s);
    late.obey(u"exec 3<'%1'"_s.arg(devices.path(u"snd/pcmC0D0c"_s)));
    QTRY_COMPARE(told.events.value(1), line(u'+', microphone, late.id));
    // One ends as it should and the other without a word.
    late.obey(u"exec 4<&-"_s);
    QTRY_COMPARE(told.events.value(2), line(u'-', camera, late.id));
    ::kill(early.id, SIGKILL);
    QTRY_COMPARE(told.events.value(3), line(u'-', microphone, early.id));
    late.obey(u"exec 3<&-"_s);
    QTRY_COMPARE(told.events.value(4), line(u'-', microphone, late.id));
    QCOMPARE(told.events.size(), 5);
}

void DeviceUsesTest::laterDevices() {
    const Devices devices;
    QVERIFY(QDir(devices.path(u"snd"_s)).removeRecursively());
    DesktopDeviceUses uses(listOf(std::make_unique<DeviceFileUses>(devices.realPlaces())), workspace);
    const Told told(uses);
    Program program;
    const std::pair<QString, MacRiskCategory> come[] = {
        {u"video7"_s, camera}, {u"snd/pcmC1D0c"_s, microphone}, {u"video7"_s, camera}};
    for (const auto &[name, category] : come) {
        // Opened in the instant in which it is there, and gone while it is open.
        QVERIFY(QDir().mkpath(QFileInfo(devices.path(name)).path()));
        const qsizetype before = told.events.size();
        program.obey(u"exec 3<>'%1'"_s.arg(devices.path(name)));
        QTRY_COMPARE(told.events.value(before), line(u'+', category, program.id));
        QVERIFY(QFile::remove(devices.path(name)));
        QTRY_COMPARE(told.events.value(before + 1), line(u'-', category, program.id));
    }
}

void DeviceUsesTest::flapping() {
    const Devices devices;
    DesktopDeviceUses uses(listOf(std::make_unique<DeviceFileUses>(devices.realPlaces())), workspace);
    const Told told(uses);
    Program program;
    program.obey(u"for i in {1..2000}; do exec 3<'%1'; exec 3<&-; done; exec 4<'%2'"_s.arg(
        devices.path(u"video0"_s), devices.path(u"snd/pcmC0D0c"_s)));
    // Whatever was seen of the camera, it ended, and what is left is the microphone.
    QTRY_VERIFY(told.events.contains(line(u'+', microphone, program.id)));
    QTRY_COMPARE(told.events.count(line(u'+', camera, program.id)),
                 told.events.count(line(u'-', camera, program.id)));
    QCOMPARE(uses.uses().size(), 1);
}

void DeviceUsesTest::applications() {
    const Devices devices;
    const QString hostile = u"opt/"_s + QString(100, u'x') + u"\n\u202e\x1b[2J"_s;
    const QString recorder = devices.root.filePath(u"opt/recorder/recorder"_s);
    const QString helper = devices.root.filePath(u"opt/recorder/parts/helper"_s);
    for (const QString &copy : {recorder, helper, devices.root.filePath(hostile)}) {
        QVERIFY(QDir().mkpath(QFileInfo(copy).path()));
        QVERIFY(QFile::copy(QFileInfo(u"/bin/bash"_s).canonicalFilePath(), copy));
    }
    samples::write(
        devices.root.filePath(u"data/applications/org.example.Recorder.desktop"_s),
        "[Desktop Entry]\nType=Application\nName=Sound Recorder\nExec=" + QFile::encodeName(recorder) + '\n');
    qputenv("XDG_DATA_HOME", QFile::encodeName(devices.root.filePath(u"data"_s)));
    DesktopDeviceUses uses(listOf(std::make_unique<DeviceFileUses>(devices.realPlaces())), workspace);
    const Told told(uses);

    // A helper of the same program, one that lies beside it, and a program of another kind. What they start
    // inherits what they have open.
    Program application(recorder);
    Program other(devices.root.filePath(hostile));
    // Whoever has windows is called as they are, and is nobody's helper.
    Program windowed(recorder);
    workspace.add({ActivationPolicy::regular, u"Call"_s, windowed.id, u"us.zoom.xos"_s, {}});
    const QString opens =
        u"'%1' -c 'exec 3<\"%2\"; while kill -0 $PPID; do sleep 0.1; done' 2>/dev/null & :"_s;
    const QString camera = devices.path(u"video0"_s);
    application.obey(opens.arg(recorder, camera));
    QTRY_COMPARE(told.events, QStringList{line(u'+', MacRiskCategory::camera, application.id)});
    application.obey(opens.arg(helper, devices.path(u"snd/pcmC0D0c"_s)));
    other.obey(u"exec 3<'%1'"_s.arg(camera));
    windowed.obey(opens.arg(recorder, camera));
    QTRY_COMPARE(uses.uses().size(), 4);
    using User = std::pair<QString, std::optional<QString>>;
    const QMap<qint32, User> expected{
        {application.id, {u"Sound Recorder"_s, u"org.example.Recorder"_s}},
        {other.id, {hostile.mid(4), std::nullopt}},
        {windowed.id, {u"Call"_s, u"us.zoom.xos"_s}},
    };
    QMap<qint32, User> users;
    for (const DeviceUse &use : uses.uses())
        users[use.processIdentifier] = {use.localizedName, use.bundleIdentifier};
    QCOMPARE(users, expected);
}

void DeviceUsesTest::sources() {
    auto sources = listOf(std::make_unique<ToldUses>());
    auto &sound = static_cast<ToldUses &>(*sources.front());
    sources.push_back(std::make_unique<ToldUses>());
    auto &second = static_cast<ToldUses &>(*sources.back());
    DesktopDeviceUses uses(std::move(sources), workspace, u"Nobody sees the moon."_s);
    const auto self = static_cast<qint32>(::getpid());

    // Asked without being watched, it is closed again.
    sound.current = {{microphone, self}};
    QCOMPARE(uses.uses().size(), 1);
    QVERIFY(!sound.opened && !second.opened);
    QCOMPARE(uses.sight().text(), u"Nobody sees the moon."_s);

    Told told(uses);
    QCOMPARE(uses.uses().size(), 1);
    // One category of one process is one use, whoever tells of it. Nobody is called by what he claims if
    // there is better.
    second.tell({{microphone, self, u"Claimed"_s}, {screenCapture, self}, {camera, 0, u"Claimed"_s}});
    QTRY_COMPARE(told.events, (QStringList{line(u'+', screenCapture, self), line(u'+', camera, 0)}));
    const QList<DeviceUse> all = uses.uses();
    QCOMPARE(all.first().localizedName, QCoreApplication::applicationName());
    QCOMPARE(all.last().localizedName, u"Claimed"_s);

    // It goes, and comes again by itself.
    told.events.clear();
    second.goAway();
    QTRY_COMPARE(told.events, (QStringList{line(u'-', screenCapture, self), line(u'-', camera, 0)}));
    second.comeBack();
    QTRY_COMPARE(told.events.mid(2), (QStringList{line(u'+', screenCapture, self), line(u'+', camera, 0)}));
    second.goAway();
    sound.goAway();
    QTRY_COMPARE(uses.sight().extent, Sight::Extent::none);
    QTRY_COMPARE(uses.uses(), QList<DeviceUse>());

    second.comeBack();
    QTRY_VERIFY(second.opened);
    told.subscription.reset();
    QTRY_VERIFY(!second.opened);
}

KESTRIN_TEST(DeviceUsesTest)
#include "tst_deviceuses.moc"
