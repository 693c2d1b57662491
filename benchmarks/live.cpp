// What it costs "kestrinctl watch" to follow who uses the microphone, beside a watch for which that is
// switched off, and how soon it is in the log, beside what a recorder itself takes to hear something.

#include "benchmarks/Bench.h"
#include "benchmarks/Child.h"
#include "benchmarks/Run.h"
#include "benchmarks/StreamLinks.h"
#include "engine/JSONMacActivityLogStore.h"
#include "foundation/FileWatch.h"
#include "runtime/UseRecord.h"
#include "tests/support/Files.h"
#include "tests/support/MediaServer.h"

#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QTimer>

#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using namespace kestrin;
using namespace kestrin::engine;

namespace {

/// What only one watch uses.
struct Home {
    QString folder;

    Home(const samples::MediaServer &media, const QString &name) : folder(media.path(name)) {
        samples::write(folder + u"/Kestrin/user-defaults.json"_s, "{\"kestrin.mac.enabledModeIDs\": []}");
    }
    void enter() const {
        qputenv("XDG_DATA_HOME", QFile::encodeName(folder));
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(folder));
    }
    QString log() const { return folder + u"/Kestrin/activity-log.json"_s; }
};

/// A watch in a home, which follows what there is to follow.
struct Watch {
    Home home;
    bench::Child process;

    explicit Watch(Home where, bool live = true) : home(std::move(where)), process(started(home, live)) {
        // What a start leaves behind is no idling.
        ::sleep(2);
    }

  private:
    static bench::Arguments started(const Home &home, bool live) {
        home.enter();
        if (!live)
            bench::run({bench::built("cli/kestrinctl"), "live", "off"});
        return {bench::built("cli/kestrinctl"), "watch"};
    }
};

void measureIdle(const samples::MediaServer &media, bench::Report &report, int seconds) {
    const Watch without(Home(media, u"off"_s), false);
    const Watch with(Home(media, u"on"_s));
    const auto beforeWithout = without.process.wakeUps();
    const auto beforeWith = with.process.wakeUps();
    ::sleep(static_cast<unsigned>(seconds));
    const double perMinute = 60.0 / seconds;
    report.limit("Wake-ups a minute of an idle watch with live use", "",
                 {static_cast<double>(with.process.wakeUpsSince(beforeWith)) * perMinute,
                  static_cast<double>(without.process.wakeUpsSince(beforeWithout)) * perMinute},
                 5);
    const double memory = without.process.residentMemory();
    report.limit("Resident memory that live use adds to a watch", "MB",
                 {with.process.residentMemory() - memory, memory}, 4);
}

/// A program of its own name, for every name is told of so often only.
QString recorderCalled(const samples::MediaServer &media, const QString &program, int number) {
    const QString path = media.path(u"recorder-"_s + QString::number(number));
    QFile::copy(program, path);
    return path;
}

/// Returns when the newest event is about this application and ends so.
void awaitEvent(const Home &home, const QString &application, const QString &sentence) {
    JSONMacActivityLogStore log(QUrl::fromLocalFile(home.log()));
    const foundation::FileWatch watch(home.log());
    QEventLoop loop;
    QObject::connect(&watch, &foundation::FileWatch::changed, &loop, &QEventLoop::quit);
    QTimer::singleShot(10s, &loop, [] { bench::giveUp("the log does not tell of a recorder."); });
    for (;;) {
        const QList<MacProtectionEvent> newest = log.recent(1);
        if (!newest.isEmpty() && newest.first().message == application + sentence)
            return;
        loop.exec();
    }
}

void measureBegin(const samples::MediaServer &media, bench::Report &report, int blocks) {
    // As often as one watch tells of at once, and of each application.
    const runtime::UseRecord::Limits limits;
    const int times = limits.each.atOnce / 2;
    const int names = limits.all.atOnce / limits.each.atOnce - 1;
    std::vector<double> heard;
    std::vector<double> logged;
    for (int block = 0; block < blocks; ++block) {
        const Watch watch(Home(media, u"begin-"_s + QString::number(block)));
        for (int time = 0; time < times; ++time) {
            for (int number = 0; number < names; ++number) {
                const QString path = recorderCalled(media, u"/usr/bin/pacat"_s, number);
                const QString name = QFileInfo(path).fileName();
                const QStringList command{path,    u"--record"_s, u"--raw"_s, u"--latency-msec=20"_s,
                                          u"-d"_s, u"test-mic"_s};
                std::unique_ptr<samples::Program> recorder;
                logged.push_back(bench::milliseconds([&] {
                    recorder = std::make_unique<samples::Program>(command);
                    awaitEvent(watch.home, name, u" started using the microphone."_s);
                }));
                recorder.reset();
                awaitEvent(watch.home, name, u" stopped using the microphone."_s);
            }
        }
    }
    const QString path = recorderCalled(media, u"/usr/bin/pacat"_s, 0);
    heard.reserve(logged.size());
    for (std::size_t number = 0; number < logged.size(); ++number)
        heard.push_back(bench::milliseconds([&] {
            samples::Program recorder(
                {path, u"--record"_s, u"--raw"_s, u"--latency-msec=20"_s, u"-d"_s, u"test-mic"_s});
            recorder.waitForReadyRead();
        }));
    report.limit("A recorder's start to the event on the disk, 99th of " + std::to_string(logged.size()),
                 "ms", {bench::percentile(logged, 0.99), bench::percentile(heard, 0.99)}, 100);
    report.note("The same, median", "ms", {bench::median(logged), bench::median(heard)});
}

/// How many of them the log's last word is wrong about.
int wrongLastWords(const Home &home, const QStringList &names, const std::vector<bool> &areLinked,
                   int &events) {
    JSONMacActivityLogStore log(QUrl::fromLocalFile(home.log()));
    const QList<MacProtectionEvent> all = log.recent(100'000);
    events = static_cast<int>(all.size());
    QHash<QString, bool> lastWords;
    for (const MacProtectionEvent &event : all) {
        if (event.appName && !lastWords.contains(*event.appName))
            lastWords.insert(*event.appName, !event.message.contains(u"stopped"));
    }
    int wrong = 0;
    for (qsizetype number = 0; number < names.size(); ++number)
        wrong += lastWords.value(names.at(number)) == areLinked.at(static_cast<std::size_t>(number)) ? 0 : 1;
    return wrong;
}

/// Each of fifty begins and ends ten times a second; in the end every other one goes on.
void measureFlapping(const samples::MediaServer &media, bench::Report &report, int seconds) {
    constexpr int many = 50;
    QStringList names;
    std::vector<std::string> nodes;
    std::vector<std::unique_ptr<samples::Program>> recorders;
    for (int number = 0; number < many; ++number) {
        const QString path = recorderCalled(media, u"/usr/bin/pw-cat"_s, 100 + number);
        names.append(QFileInfo(path).fileName());
        nodes.push_back(names.last().toStdString());
        recorders.push_back(std::make_unique<samples::Program>(
            QStringList{path, u"--record"_s, u"--target"_s, u"0"_s, path + u".wav"_s}));
    }
    bench::StreamLinks links("test-mic", nodes);
    Home home(media, u"flapping"_s);
    auto watch = std::make_unique<Watch>(home);
    std::vector<bool> areLinked(many);
    int changes = 0;
    const double before = watch->process.processorTime();
    const double serverBefore = bench::processorTimeOf(media.server->process());
    for (int step = 0; step < seconds * 20; ++step) {
        for (std::size_t number = 0; number < many; ++number) {
            areLinked[number] = (step + static_cast<int>(number)) % 2 == 0;
            links.setLinked(number, areLinked[number]);
            ++changes;
        }
        links.runFor(50ms);
    }
    const double share = 0.1 / seconds;
    report.limit("Processor while 50 streams start and stop 10 times a second", "%",
                 {(watch->process.processorTime() - before) * share,
                  (bench::processorTimeOf(media.server->process()) - serverBefore) * share},
                 15);
    links.runFor(500ms);
    watch.reset();
    int events = 0;
    const int wrong = wrongLastWords(home, names, areLinked, events);
    const runtime::UseRecord::Limits limits;
    const auto allowed = limits.all.atOnce + many + std::chrono::seconds(seconds + 5) / limits.all.pause;
    report.limit("Events of that in the log, beside the changes", "",
                 {static_cast<double>(events), static_cast<double>(changes)}, static_cast<double>(allowed));
    report.limit("Applications about which the log is wrong at the end", "",
                 {static_cast<double>(wrong), many}, 0);
}

} // namespace

int main(int argc, char **argv) {
    const bench::Run run(argc, argv);
    const QCoreApplication application(argc, argv);
    samples::MediaServer media;
    media.startPipeWire();
    bench::Report report;
    measureIdle(media, report, run.choose(15, 120));
    measureBegin(media, report, run.choose(1, 5));
    measureFlapping(media, report, run.choose(5, 20));
    return report.exitCode();
}
