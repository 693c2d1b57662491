// Who uses microphone, camera and screen, as real servers of sound and video tell.
#include "desktop/live/PipeWireUses.h"
#include "desktop/live/PulseUses.h"
#include "tests/support/Files.h"
#include "tests/support/ListeningSocket.h"
#include "tests/support/MediaServer.h"
#include "tests/support/TestClass.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QStandardPaths>

#include <list>
#include <optional>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace kestrin::desktop {

using namespace engine;
using namespace foundation;
using namespace samples;

namespace {

constexpr int patience = 10'000;

Deadline soon() {
    return Deadline(5s);
}

/// Somebody who shows pictures.
QStringList showing(const QString &properties) {
    return u"gst-launch-1.0 -q videotestsrc is-live=true ! video/x-raw,width=64,height=48,framerate=5/1 ! "
           u"pipewiresink mode=provide stream-properties=p,node.name=shown,"_s.append(properties)
               .split(u' ');
}

/// A stream of PulseAudio's, who writes what he hears.
QStringList hearing(const QString &device, const QStringList &more = {}) {
    return QStringList{u"parec"_s, u"--raw"_s, u"--latency-msec=20"_s, u"-d"_s, device} + more;
}

QList<SourceUse> usesOf(const Program &hearer) {
    return {{MacRiskCategory::microphone, hearer.process(), u"parec"_s, {}}};
}

const QList<SourceUse> noUses;

enum class Kind { pipeWire, pulseAudio };

/// PulseAudio's own server may be missing where tools/pulseaudio-server cannot get it.
QList<Kind> kindsHere() {
    QList<Kind> kinds{Kind::pipeWire};
    if (!QStandardPaths::findExecutable(QStringLiteral("pulseaudio")).isEmpty())
        kinds.append(Kind::pulseAudio);
    return kinds;
}

std::unique_ptr<UseSource> sourceOf(Kind kind) {
    if (kind == Kind::pipeWire)
        return std::make_unique<PipeWireUses>();
    return std::make_unique<PulseUses>();
}

void start(MediaServer &media, Kind kind) {
    if (kind == Kind::pipeWire)
        media.startPipeWire();
    else
        media.startPulseAudio();
}

} // namespace

class TstLiveUse : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void pipeWire_data();
    void pipeWire();
    void hearers_data() { addServers(); }
    void hearers();
    void serverThatComesAndGoes_data() { addServers(); }
    void serverThatComesAndGoes();
    void silentServer_data() { addServers(); }
    void silentServer();
    void crowd_data() { addServers(); }
    void crowd();
    void pulseAudioOfPipeWire();
    void watching();
    void withoutLibrary();

  private:
    static void addServers();
};

void TstLiveUse::pipeWire_data() {
    QTest::addColumn<QStringList>("shown");
    QTest::addColumn<QStringList>("command");
    QTest::addColumn<MacRiskCategory>("category");
    QTest::addColumn<QString>("name");
    using enum MacRiskCategory;
    const auto row = [](const char *title, const QStringList &shown, const QStringList &command,
                        MacRiskCategory category, const QString &name) {
        QTest::addRow("%s", title) << shown << command << category << name;
    };
    const QStringList watching =
        u"gst-launch-1.0 -q pipewiresrc target-object=shown ! video/x-raw ! fakesink"_s.split(u' ');
    row("a client of its own", {},
        {u"sh"_s, u"-c"_s, u"exec pw-record --target test-mic \"$XDG_RUNTIME_DIR/heard.wav\""_s}, microphone,
        u"pw-record"_s);
    row("a client of PulseAudio's", {}, hearing(u"test-mic"_s), microphone, u"parec"_s);
    row("a name that steers a terminal", {},
        hearing(u"test-mic"_s, {u"--client-name=\u001b[2J\u202e"_s + QString(10'000, u'x')}), microphone,
        u"\\u001b[2J\\u202e"_s + QString(95, u'x'));
    row("a camera", showing(u"media.class=Video/Source,media.role=Camera"_s), watching, camera,
        u"gst-launch-1.0"_s);
    row("a screen, as a compositor shows it", showing(u"media.class=Stream/Output/Video"_s), watching,
        screenCapture, u"gst-launch-1.0"_s);
    row("a screen, as a portal shows it", showing(u"media.class=Video/Source"_s), watching, screenCapture,
        u"gst-launch-1.0"_s);
}

void TstLiveUse::pipeWire() {
    QFETCH(const QStringList, shown);
    QFETCH(const QStringList, command);
    QFETCH(const MacRiskCategory, category);
    QFETCH(const QString, name);

    MediaServer media;
    media.startPipeWire();
    PipeWireUses source;
    QVERIFY(source.open(soon()));
    QSignalSpy changed(&source, &UseSource::changed);
    std::unique_ptr<Program> shower;
    if (!shown.isEmpty()) {
        shower = std::make_unique<Program>(shown);
        QTRY_VERIFY_WITH_TIMEOUT(changed.count() > 0, patience);
        changed.clear();
    }
    // Who asks for what is not ready yet is sent away, or kept waiting.
    std::unique_ptr<Program> user;
    QElapsedTimer waiting;
    const auto isUsed = [&] {
        if (!user || user->state() == QProcess::NotRunning || waiting.elapsed() > 2000) {
            user = std::make_unique<Program>(command);
            waiting.start();
        }
        return changed.count() > 0 && source.uses(soon()).value_or(noUses) != noUses;
    };
    QTRY_VERIFY_WITH_TIMEOUT(isUsed(), patience);
    QCOMPARE(source.uses(soon()), (QList{SourceUse{category, user->process(), name, {}}}));
    user->signal(SIGKILL);
    QTRY_COMPARE_WITH_TIMEOUT(source.uses(soon()), noUses, patience);
}

void TstLiveUse::addServers() {
    QTest::addColumn<Kind>("kind");
    for (const Kind kind : kindsHere())
        QTest::addRow("%s", kind == Kind::pipeWire ? "PipeWire" : "PulseAudio") << kind;
}

/// One of whom nothing is to be told, and one who listens to the microphone.
void TstLiveUse::hearers() {
    QFETCH(const Kind, kind);

    MediaServer media;
    start(media, kind);
    // The test's own PulseAudio may lie where no server of the system does.
    std::optional<Program> installed;
    if (kind == Kind::pulseAudio)
        installed.emplace(QStringList{u"pipewire"_s});
    const qint32 server = (installed ? *installed : *media.server).process();
    const std::unique_ptr<UseSource> source = sourceOf(kind);
    QVERIFY(source->open(soon()));
    QSignalSpy changed(source.get(), &UseSource::changed);
    // Of what is played, and as a process that is a server's, that is nobody's, and that is none.
    for (const auto &[device, process] : {
             std::pair{u"test-sink.monitor"_s, QString::number(QCoreApplication::applicationPid())},
             std::pair{u"test-mic"_s, QString::number(server)},
             std::pair{u"test-mic"_s, u"2147483647"_s},
             std::pair{u"test-mic"_s, u"-1"_s},
             std::pair{u"test-mic"_s, QString(10'000, u'1')},
         }) {
        Program user(hearing(device, {u"--property=application.process.id="_s + process}));
        // What is heard is on its way, so the server has told everything about who hears it.
        QVERIFY(user.waitForReadyRead(patience));
        QVERIFY2(source->uses(soon()) == noUses, qPrintable(process));

        // The same without the claim, so that it was for the claim.
        const Program honest(hearing(u"test-mic"_s));
        changed.clear();
        QTRY_VERIFY_WITH_TIMEOUT(changed.count() > 0, patience);
        QTRY_COMPARE_WITH_TIMEOUT(source->uses(soon()), usesOf(honest), patience);
        honest.signal(SIGKILL);
        QTRY_COMPARE_WITH_TIMEOUT(source->uses(soon()), noUses, patience);
    }
}

void TstLiveUse::serverThatComesAndGoes() {
    QFETCH(const Kind, kind);

    MediaServer media;
    const std::unique_ptr<UseSource> source = sourceOf(kind);
    QSignalSpy appeared(source.get(), &UseSource::appeared);
    QSignalSpy lost(source.get(), &UseSource::lost);
    for (int round = 0; round < 2; ++round) {
        QElapsedTimer time;
        time.start();
        QVERIFY(!source->open(soon()));
        QVERIFY(!source->isOpen());
        QCOMPARE(source->uses(soon()), std::nullopt);
        QVERIFY(time.elapsed() < 1000);

        start(media, kind);
        QTRY_COMPARE_WITH_TIMEOUT(appeared.count(), round + 1, patience);
        QVERIFY(source->open(soon()));
        const Program user(hearing(u"test-mic"_s));
        QTRY_COMPARE_WITH_TIMEOUT(source->uses(soon()), usesOf(user), patience);

        media.server->signal(SIGKILL);
        QTRY_COMPARE_WITH_TIMEOUT(lost.count(), round + 1, patience);
        QVERIFY(!source->isOpen());
        media.end();
    }
}

void TstLiveUse::silentServer() {
    QFETCH(const Kind, kind);

    MediaServer media;
    start(media, kind);
    const std::unique_ptr<UseSource> source = sourceOf(kind);
    const std::unique_ptr<UseSource> late = sourceOf(kind);
    QSignalSpy changed(source.get(), &UseSource::changed);
    QSignalSpy appeared(late.get(), &UseSource::appeared);
    QVERIFY(source->open(soon()));
    media.server->signal(SIGSTOP);
    QElapsedTimer time;
    time.start();
    QCOMPARE(source->uses(Deadline(100ms)), std::nullopt);
    QVERIFY(!late->open(Deadline(100ms)));
    QVERIFY(time.elapsed() >= 200 && time.elapsed() < 1000);
    QVERIFY(source->isOpen());
    QVERIFY(!late->isOpen());
    media.server->signal(SIGCONT);
    QTRY_VERIFY_WITH_TIMEOUT(changed.count() > 0, patience);
    QTRY_VERIFY_WITH_TIMEOUT(appeared.count() > 0, patience);
    QVERIFY(late->open(soon()));
    QCOMPARE(source->uses(soon()), noUses);

    // One that takes no calls any more.
    const ListeningSocket deaf;
    qputenv("PIPEWIRE_REMOTE", deaf.path());
    qputenv("PULSE_SERVER", "unix:" + deaf.path());
    std::array<std::unique_ptr<UseSource>, 10> many;
    time.start();
    for (std::unique_ptr<UseSource> &one : many) {
        one = sourceOf(kind);
        QVERIFY(!one->open(Deadline(10ms)));
    }
    QVERIFY(time.elapsed() < 2000);
}

/// Many who begin and are gone before anybody could ask who they were.
void TstLiveUse::crowd() {
    QFETCH(const Kind, kind);

    MediaServer media;
    start(media, kind);
    const std::unique_ptr<UseSource> source = sourceOf(kind);
    QVERIFY(source->open(soon()));
    QSignalSpy lost(source.get(), &UseSource::lost);
    connect(source.get(), &UseSource::changed, this, [&] { (void)source->uses(soon()); });
    for (int round = 0; round < 60; ++round) {
        std::list<Program> many;
        for (int i = 0; i < 5; ++i)
            many.emplace_back(hearing(u"test-mic"_s));
        QTest::qWait(round);
    }
    const Program last(hearing(u"test-mic"_s));
    QTRY_COMPARE_WITH_TIMEOUT(source->uses(soon()), usesOf(last), patience);
    QCOMPARE(lost.count(), 0);
}

/// PipeWire tells of these clients itself.
void TstLiveUse::pulseAudioOfPipeWire() {
    MediaServer media;
    media.startPipeWire();
    const Program user(hearing(u"test-mic"_s));
    PipeWireUses pipeWire;
    QVERIFY(pipeWire.open(soon()));
    QTRY_COMPARE_WITH_TIMEOUT(pipeWire.uses(soon()), usesOf(user), patience);
    for (const bool hasNote : {true, false}) {
        if (!hasNote)
            QVERIFY(QFile::remove(media.path(u"pulse/pid"_s)));
        PulseUses source;
        QVERIFY(source.open(soon()));
        QCOMPARE(source.uses(soon()), noUses);
        QVERIFY(!source.isSoundServer());
    }
    if (!kindsHere().contains(Kind::pulseAudio))
        QSKIP("PulseAudio's own server is not there.");

    PulseUses source;
    QSignalSpy appeared(&source, &UseSource::appeared);
    QVERIFY(source.open(soon()));
    media.pulse.reset();
    media.server.reset();
    media.startPulseAudio();
    QTRY_VERIFY_WITH_TIMEOUT(appeared.count() > 0, patience);
    QVERIFY(!source.isOpen());
    QVERIFY(source.open(soon()));
    QVERIFY(source.isSoundServer());
}

/// From the recorder to what kestrinctl tells, while the server goes, comes and is silent.
void TstLiveUse::watching() {
    MediaServer media;
    write(media.path(u"Kestrin/user-defaults.json"_s), "{\"kestrin.mac.enabledModeIDs\": []}");
    media.startPipeWire();
    Program watch({QStringLiteral(KESTRINCTL), u"watch"_s});
    const auto isTold = [&watch](const QByteArray &what) {
        return QTest::qWaitFor(
            [&] {
                return watch.canReadLine() &&
                       watch.readLine().endsWith("  pacat " + what + " the microphone.\n");
            },
            patience);
    };
    const auto isConnected = [&watch] {
        const QByteArray process = QByteArray::number(watch.process());
        return Program({u"pw-dump"_s}).output().contains(R"("pipewire.sec.pid": )" + process);
    };
    const auto call = [](const QString &words) {
        return Program(QStringList{QStringLiteral(KESTRINCTL)} + words.split(u' ')).output();
    };

    QTRY_VERIFY_WITH_TIMEOUT(isConnected(), patience);
    std::optional<Program> recorder(hearing(u"test-mic"_s));
    QVERIFY(isTold("started using"));
    media.server->signal(SIGKILL);
    QVERIFY(isTold("stopped using"));
    media.end();
    media.startPipeWire();
    recorder.emplace(hearing(u"test-mic"_s));
    QVERIFY(isTold("started using"));
    QVERIFY(call(u"status"_s).contains("pacat (Microphone)"));
    media.server->signal(SIGSTOP);
    QElapsedTimer time;
    time.start();
    QVERIFY(!call(u"status"_s).isEmpty());
    QVERIFY2(time.elapsed() < 1000, qPrintable(QString::number(time.elapsed())));
    media.server->signal(SIGCONT);

    // Nobody is asked any more.
    QVERIFY(isConnected());
    QVERIFY(!call(u"live off"_s).isEmpty());
    QTRY_VERIFY_WITH_TIMEOUT(!isConnected(), 1000);
}

/// The server is there, and what one needs to speak with it is not.
void TstLiveUse::withoutLibrary() {
    MediaServer media;
    write(media.path(u"lib/libpipewire-0.3.so.0"_s), "");
    const ListeningSocket server;
    qputenv("PIPEWIRE_REMOTE", server.path());
    Program status(
        {u"env"_s, u"LD_LIBRARY_PATH="_s + media.path(u"lib"_s), QStringLiteral(KESTRINCTL), u"status"_s});
    QVERIFY(status.output().contains(
        "through PipeWire are not seen, because its client library is not installed."));
}

KESTRIN_TEST(TstLiveUse)

} // namespace kestrin::desktop

#include "tst_liveuse.moc"
