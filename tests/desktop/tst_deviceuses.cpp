// Who uses microphone or camera: by device files of the test's own, which real programs open, by tables of
// what the system tells of devices and processes, and by sources that come and go.

#include "desktop/live/DesktopDeviceUses.h"
#include "desktop/live/DeviceFileUses.h"
#include "desktop/live/DeviceKind.h"
#include "engine/workspace/InMemoryWorkspace.h"
#include "tests/support/Program.h"
#include "tests/support/Test.h"

#include <fcntl.h>
#include <unistd.h>

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
    void write(const QByteArray &name, const QByteArray &text) const {
        samples::write(root.filePath(QString::fromUtf8(name)), text);
    }
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
        write("proc/" + QByteArray::number(process) + "/fdinfo/" + QByteArray::number(descriptor),
              "pos:\t0\nflags:\t" + flags + "\nmnt_id:\t5\n");
    }
};

/// A program that does as it is told, line by line.
class Puppet : public samples::Program {
  public:
    explicit Puppet(const QString &executable = u"/bin/bash"_s)
        : Program({executable, u"-c"_s, u"while read -r word; do eval \"$word\"; done"_s}) {}

    /// Returns when it is done.
    void obey(const QString &command) {
        write(command.toUtf8() + "; echo done\n");
        while (!canReadLine() && waitForReadyRead()) {
        }
        QCOMPARE(readLine(), QByteArray("done\n"));
    }
};

QString line(QChar sign, MacRiskCategory category, qint32 process) {
    return sign + rawValue(category) + u' ' + QString::number(process);
}

/// What was told, one word an event.
struct Told {
    QStringList events;
    int sightChanges = 0;
    std::unique_ptr<DeviceUseSubscription> subscription;

    explicit Told(DeviceUses &uses) {
        const auto note = [this](QChar sign) {
            return [this, sign](const DeviceUse &use) {
                events.append(line(sign, use.category, use.processIdentifier));
            };
        };
        subscription = uses.subscribe({note(u'+'), note(u'-'), [this] { ++sightChanges; }});
    }
};

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
    void applications();
    void sources();

  private:
    InMemoryWorkspace workspace;
};

void DeviceUsesTest::kinds() {
    const Devices devices;
    devices.makeVirtual(u"video9"_s);
    // Without capabilities nothing is known of it.
    const auto row = [&](const QByteArray &name, DeviceKind kind, const QByteArray &capabilities = {}) {
        const QByteArray number = "81:" + name.mid(5);
        if (!capabilities.isEmpty()) {
            devices.write("sys/" + name + "/dev", number + '\n');
            devices.write("udev/c" + number,
                          "E:ID_V4L_VERSION=2\nE:ID_V4L_CAPABILITIES=" + capabilities + "\nG:seat\n");
        }
        QVERIFY2(kindOfDevice(name, devices.places()) == kind, name.constData());
    };
    row("video0", DeviceKind::camera);
    row("video1", DeviceKind::camera, ":capture:");
    // Metadata, an output, a codec and a card for television.
    row("video2", DeviceKind::other, ":");
    row("video3", DeviceKind::other, ":video_output:");
    row("video4", DeviceKind::other, ":capture:video_output:");
    row("video5", DeviceKind::camera, ":capture:tuner:");
    row("video9", DeviceKind::virtualCamera);
    for (const QByteArray microphone : {"snd/pcmC0D0c", "snd/pcmC12D34c"})
        row(microphone, DeviceKind::microphone);
    for (const QByteArray other :
         {"snd/pcmC0D0p", "pcmC0D0c", "snd/pcmC0c", "snd/pcmCD0c", "video", "video1x", "videos/video1"})
        row(other, DeviceKind::other);
}

void DeviceUsesTest::stateOfProcesses() {
    const Devices devices;
    devices.makeVirtual(u"video1"_s);
    const QString program = u"/opt/call/call"_s;
    const QByteArray mapped =
        "7f00-7f10 rw-s 00000000 00:06 9   " + QFile::encodeName(devices.path(u"video1"_s)) + '\n';
    QList<SourceUse> expected;
    int process = 100;
    const auto row = [&](const QString &executable, const QString &device, const QByteArray &flags,
                         const QList<MacRiskCategory> &uses, const QByteArray &maps = {}) {
        devices.addProcess(++process, executable);
        devices.addDescriptor(process, 3, device, flags);
        // The same once more is no second use.
        devices.addDescriptor(process, 4, device, flags);
        devices.write("proc/" + QByteArray::number(process) + "/maps", maps);
        for (const MacRiskCategory category : uses)
            expected.append({category, process});
    };
    row(program, u"video0"_s, "0100002", {camera});
    row(program, u"video0"_s, "02104000", {camera});
    row(program, u"snd/pcmC0D0c"_s, "0100002", {microphone});
    row(u"/opt/call/call (deleted)"_s, u"video0"_s, "02", {camera});
    // It writes, only stands for the file, may only ask about it, or plays.
    row(program, u"video0"_s, "01", {});
    row(program, u"video0"_s, "012100000", {});
    row(program, u"video0"_s, "03", {});
    row(program, u"snd/pcmC0D0p"_s, "02", {});
    row(program, u"null"_s, "02", {});
    // Servers are told by where they are installed.
    row(u"/usr/bin/wireplumber"_s, u"video0"_s, "02", {});
    row(u"/usr/bin/pulseaudio"_s, u"snd/pcmC0D0c"_s, "02", {});
    row(u"/usr/libexec/xdg-desktop-portal-gtk"_s, u"video0"_s, "02", {});
    row(u"/home/x/pipewire"_s, u"video0"_s, "02", {camera});
    row(u"/usr/local/bin/pipewire"_s, u"video0"_s, "02", {camera});
    row(u"/usr/bin/pipewire-recorder"_s, u"video0"_s, "02", {camera});
    // Of a virtual camera whoever reads it, or has its pictures in his memory.
    row(program, u"video1"_s, "0100002", {});
    row(program, u"video1"_s, "0100000", {camera});
    row(program, u"video1"_s, "0100002", {camera}, mapped);
    // A link of the same name leads elsewhere, and a process is gone while it is looked at.
    devices.addProcess(201, program);
    devices.write("elsewhere/video0", {});
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
    Puppet early;
    Puppet late;
    early.obey(u"exec 3<'%1'"_s.arg(devices.path(u"snd/pcmC0D0c"_s)));
    DesktopDeviceUses uses(listOf(std::make_unique<DeviceFileUses>(devices.realPlaces())), workspace);
    const Told told(uses);
    QCOMPARE(uses.uses().size(), 1);
    QCOMPARE(uses.uses().first().processIdentifier, early.process());
    QCOMPARE(uses.uses().first().localizedName, u"bash"_s);

    late.obey(u"exec 3<>'%1' 4<'%1'"_s.arg(devices.path(u"video0"_s)));
    QTRY_COMPARE(told.events, QStringList{line(u'+', camera, late.process())});
    late.obey(u"exec 3<&-"_s);
    late.obey(u"exec 3<'%1'"_s.arg(devices.path(u"snd/pcmC0D0c"_s)));
    QTRY_COMPARE(told.events.value(1), line(u'+', microphone, late.process()));
    // One ends as it should and the other without a word.
    late.obey(u"exec 4<&-"_s);
    QTRY_COMPARE(told.events.value(2), line(u'-', camera, late.process()));
    const QString ended = line(u'-', microphone, early.process());
    early.kill();
    QTRY_COMPARE(told.events.value(3), ended);
    late.obey(u"exec 3<&-"_s);
    QTRY_COMPARE(told.events.value(4), line(u'-', microphone, late.process()));
    QCOMPARE(told.events.size(), 5);
}

void DeviceUsesTest::laterDevices() {
    const Devices devices;
    QVERIFY(QDir(devices.path(u"snd"_s)).removeRecursively());
    DesktopDeviceUses uses(listOf(std::make_unique<DeviceFileUses>(devices.realPlaces())), workspace);
    const Told told(uses);
    Puppet program;
    const std::pair<QString, MacRiskCategory> come[] = {
        {u"video7"_s, camera}, {u"snd/pcmC1D0c"_s, microphone}, {u"video7"_s, camera}};
    for (const auto &[name, category] : come) {
        // Opened in the instant in which it is there, and gone while it is open.
        QVERIFY(QDir().mkpath(QFileInfo(devices.path(name)).path()));
        const qsizetype before = told.events.size();
        program.obey(u"exec 3<>'%1'"_s.arg(devices.path(name)));
        QTRY_COMPARE(told.events.value(before), line(u'+', category, program.process()));
        QVERIFY(QFile::remove(devices.path(name)));
        QTRY_COMPARE(told.events.value(before + 1), line(u'-', category, program.process()));
    }
    // Whatever was seen of a camera that comes and goes, it ended, and what is left is the microphone.
    program.obey(u"for i in {1..2000}; do exec 3<'%1'; exec 3<&-; done; exec 4<>'%2'"_s.arg(
        devices.path(u"video0"_s), devices.path(u"snd/pcmC1D0c"_s)));
    QTRY_VERIFY(uses.uses().size() == 1 && uses.uses().first().category == microphone);
    QTRY_COMPARE(told.events.count(line(u'+', camera, program.process())),
                 told.events.count(line(u'-', camera, program.process())));
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
    devices.write(
        "data/applications/org.example.Recorder.desktop",
        "[Desktop Entry]\nType=Application\nName=Sound Recorder\nExec=" + QFile::encodeName(recorder) + '\n');
    qputenv("XDG_DATA_HOME", QFile::encodeName(devices.root.filePath(u"data"_s)));
    DesktopDeviceUses uses(listOf(std::make_unique<DeviceFileUses>(devices.realPlaces())), workspace);
    const Told told(uses);

    // A helper of the same program, one that lies beside it, and a program of another kind. What they start
    // inherits what they have open.
    Puppet application(recorder);
    Puppet other(devices.root.filePath(hostile));
    // Whoever has windows is called as they are, and is nobody's helper.
    Puppet windowed(recorder);
    workspace.add({ActivationPolicy::regular, u"Call"_s, windowed.process(), u"us.zoom.xos"_s, {}});
    const QString opens =
        u"'%1' -c 'exec 3<\"%2\"; while kill -0 $PPID; do sleep 0.1; done' 2>/dev/null & :"_s;
    const QString camera = devices.path(u"video0"_s);
    application.obey(opens.arg(recorder, camera));
    QTRY_COMPARE(told.events, QStringList{line(u'+', MacRiskCategory::camera, application.process())});
    application.obey(opens.arg(helper, devices.path(u"snd/pcmC0D0c"_s)));
    other.obey(u"exec 3<'%1'"_s.arg(camera));
    windowed.obey(opens.arg(recorder, camera));
    QTRY_COMPARE(uses.uses().size(), 4);
    using User = std::pair<QString, std::optional<QString>>;
    const QMap<qint32, User> expected{
        {application.process(), {u"Sound Recorder"_s, u"org.example.Recorder"_s}},
        {other.process(), {hostile.mid(4), std::nullopt}},
        {windowed.process(), {u"Call"_s, u"us.zoom.xos"_s}},
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
