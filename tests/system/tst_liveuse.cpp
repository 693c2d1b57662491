// Who uses microphone, camera and screen, as real servers of sound and video tell.
#include "desktop/live/PipeWireUses.h"
#include "tests/support/MediaServer.h"
#include "tests/support/StoppedServer.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>

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

/// The uses at the time when somebody uses something.
QList<SourceUse> usesBegun(UseSource &source) {
    QList<SourceUse> uses;
    (void)QTest::qWaitFor(
        [&] {
            uses = source.uses(soon()).value_or(QList<SourceUse>());
            return !uses.isEmpty();
        },
        patience);
    return uses;
}

bool endsSoon(UseSource &source) {
    return QTest::qWaitFor(
        [&] {
            const auto uses = source.uses(soon());
            return uses && uses->isEmpty();
        },
        patience);
}

/// Somebody who shows pictures.
QStringList showing(const QString &properties) {
    return u"gst-launch-1.0 -q videotestsrc is-live=true ! video/x-raw,width=64,height=48,framerate=5/1 ! "
           u"pipewiresink mode=provide stream-properties=p,node.name=shown,"_s.append(properties)
               .split(u' ');
}

/// A stream of PulseAudio's, who writes what he hears.
QStringList hearing(const QString &device, const QStringList &more = {}) {
    return QStringList{u"parec"_s, u"--raw"_s, u"-d"_s, device} + more;
}

} // namespace

class TstLiveUse : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void pipeWire_data();
    void pipeWire();
    void nobodyOfPipeWire_data();
    void nobodyOfPipeWire();
    void serverThatComesAndGoes();
    void silentServer();
};

void TstLiveUse::pipeWire_data() {
    QTest::addColumn<QStringList>("shown");
    QTest::addColumn<QStringList>("command");
    QTest::addColumn<int>("category");
    QTest::addColumn<QString>("name");
    using enum MacRiskCategory;
    const auto row = [](const char *title, const QStringList &shown, const QStringList &command,
                        MacRiskCategory category, const QString &name) {
        QTest::addRow("%s", title) << shown << command << static_cast<int>(category) << name;
    };
    const QStringList watching =
        u"gst-launch-1.0 -q pipewiresrc target-object=shown ! video/x-raw ! fakesink"_s.split(u' ');
    row("a client of its own", {}, u"pw-record --target test-mic heard.wav"_s.split(u' '), microphone,
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
    QFETCH(const int, category);
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
    Program user(command);
    QTRY_VERIFY_WITH_TIMEOUT(changed.count() > 0, patience);
    const QList<SourceUse> uses = usesBegun(source);
    QCOMPARE(uses.size(), 1);
    QCOMPARE(static_cast<int>(uses.first().category), category);
    QCOMPARE(uses.first().process, user.process());
    QCOMPARE(uses.first().claimedName, name);
    user.signal(SIGKILL);
    QVERIFY(endsSoon(source));
}

/// What is heard is on its way, so the server has told everything about who hears it.
void TstLiveUse::nobodyOfPipeWire_data() {
    QTest::addColumn<QString>("device");
    QTest::addColumn<QString>("process");
    QTest::addRow("who hears what is played") << u"test-sink.monitor"_s << QString();
    QTest::addRow("the process of a server") << u"test-mic"_s << u"server"_s;
    QTest::addRow("a process that there is not") << u"test-mic"_s << u"2147483647"_s;
    QTest::addRow("a negative process") << u"test-mic"_s << u"-1"_s;
    QTest::addRow("no number") << u"test-mic"_s << QString(10'000, u'1');
}

void TstLiveUse::nobodyOfPipeWire() {
    QFETCH(const QString, device);
    QFETCH(QString, process);

    MediaServer media;
    media.startPipeWire();
    PipeWireUses source;
    QVERIFY(source.open(soon()));
    QStringList claim;
    if (process == "server"_L1)
        process = QString::number(media.session->process());
    if (!process.isEmpty())
        claim = QStringList{u"--property=application.process.id="_s + process};
    Program user(hearing(device, claim));
    QVERIFY(user.waitForReadyRead(patience));
    QCOMPARE(source.uses(soon()), QList<SourceUse>());
    // The same without the claim, so that it was for the claim.
    Program honest(hearing(u"test-mic"_s));
    const QList<SourceUse> uses = usesBegun(source);
    QCOMPARE(uses.size(), 1);
    QCOMPARE(uses.first().process, honest.process());
}

void TstLiveUse::serverThatComesAndGoes() {
    MediaServer media;
    PipeWireUses source;
    QSignalSpy appeared(&source, &UseSource::appeared);
    QSignalSpy lost(&source, &UseSource::lost);
    for (int round = 0; round < 2; ++round) {
        QElapsedTimer time;
        time.start();
        QVERIFY(!source.open(soon()));
        QVERIFY(!source.isOpen());
        QCOMPARE(source.uses(soon()), std::nullopt);
        QVERIFY(time.elapsed() < 1000);

        media.startPipeWire();
        QTRY_COMPARE_WITH_TIMEOUT(appeared.count(), round + 1, patience);
        QVERIFY(source.open(soon()));
        const Program user(hearing(u"test-mic"_s));
        QCOMPARE(usesBegun(source).size(), 1);

        media.server->signal(SIGKILL);
        QTRY_COMPARE_WITH_TIMEOUT(lost.count(), round + 1, patience);
        QVERIFY(!source.isOpen());
        media.end();
    }
}

void TstLiveUse::silentServer() {
    MediaServer media;
    media.startPipeWire();
    PipeWireUses source;
    PipeWireUses late;
    QSignalSpy changed(&source, &UseSource::changed);
    QSignalSpy appeared(&late, &UseSource::appeared);
    QVERIFY(source.open(soon()));
    media.server->signal(SIGSTOP);
    QElapsedTimer time;
    time.start();
    QCOMPARE(source.uses(Deadline(100ms)), std::nullopt);
    QVERIFY(!late.open(Deadline(100ms)));
    QVERIFY(time.elapsed() >= 200 && time.elapsed() < 1000);
    QVERIFY(source.isOpen());
    QVERIFY(!late.isOpen());
    media.server->signal(SIGCONT);
    QTRY_COMPARE_WITH_TIMEOUT(changed.count(), 1, patience);
    QTRY_COMPARE_WITH_TIMEOUT(appeared.count(), 1, patience);
    QVERIFY(late.open(soon()));
    QCOMPARE(source.uses(soon()), QList<SourceUse>());

    // One that takes no calls any more.
    const StoppedServer deaf;
    qputenv("PIPEWIRE_REMOTE", deaf.path());
    std::array<PipeWireUses, 10> many;
    for (PipeWireUses &one : many)
        QVERIFY(!one.open(Deadline(10ms)));
    QVERIFY(time.elapsed() < 3000);
}

} // namespace kestrin::desktop

QTEST_GUILESS_MAIN(kestrin::desktop::TstLiveUse)
#include "tst_liveuse.moc"
