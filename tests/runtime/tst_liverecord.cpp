// What the runtime makes of uses of microphone, camera and screen: who is told, and when.

#include "engine/live/InMemoryDeviceUses.h"
#include "runtime/LiveUse.h"
#include "runtime/PrivacyModeFlag.h"
#include "tests/support/MemoryHome.h"
#include "tests/support/Test.h"

#include <QElapsedTimer>

using enum MacRiskCategory;

namespace {

DeviceUse use(const QString &name, MacRiskCategory category, qint32 process) {
    return {category, process, name, std::nullopt, QDateTime(QDate(2026, 3, 14), QTime(11, 0))};
}

const DeviceUse zoomListens = use(u"Zoom"_s, microphone, 10);
const DeviceUse zoomWatches = use(u"Zoom"_s, camera, 10);

struct LiveHome : samples::MemoryHome {
    InMemoryDeviceUses uses;
    MacProtectionRuntime runtime{defaults, surroundings()};
    LiveUse live;
    QSignalSpy began{&live, &LiveUse::began};

    explicit LiveHome(const UseRecord::Limits &limits = {}) : live(defaults, uses, runtime, nullptr, limits) {
        defaults.setStringArray(u"kestrin.mac.enabledModeIDs"_s, {});
    }

    /// Everybody has been told.
    static void settle() { QCoreApplication::processEvents(); }
};

} // namespace

class LiveRecordTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void following();
    void recorded();
    void flapping();
    void inventedNames();
};

void LiveRecordTest::following() {
    LiveHome home;
    QSignalSpy switched(&home.live, &LiveUse::switched);
    QSignalSpy changed(&home.live, &LiveUse::usesChanged);
    QSignalSpy sightChanged(&home.live, &LiveUse::sightChanged);
    home.uses.begin(zoomListens);
    home.live.start();
    // The start takes no time.
    QVERIFY(!home.uses.isWatched());
    home.settle();
    QCOMPARE(home.live.uses(), QList{zoomListens});
    QVERIFY(changed.count() == 1 && home.began.isEmpty());
    home.uses.begin(zoomWatches);
    home.uses.end(zoomListens);
    const Sight partly{Sight::Extent::partial, u"Somebody is silent."_s, {}, {}};
    home.uses.setSight(partly);
    home.settle();
    QCOMPARE(home.live.uses(), QList{zoomWatches});
    QCOMPARE(home.live.sight(), partly);
    QVERIFY(changed.count() == 2 && sightChanged.count() == 1 && home.began.count() == 1);
    QCOMPARE(home.began.first().first().value<DeviceUse>(), zoomWatches);

    // As another process stores it.
    home.defaults.setBoolean(LiveUse::key, false);
    QVERIFY(!home.uses.isWatched() && home.live.uses().isEmpty() && home.live.sight().isFull());
    QCOMPARE(switched.count(), 1);
    QVERIFY(home.live.setOn(true).isKept());
    QCOMPARE(home.live.uses(), QList{zoomWatches});
    QVERIFY(switched.count() == 2 && changed.count() == 4 && home.began.count() == 1);
}

void LiveRecordTest::recorded() {
    const QString started = u"Zoom started using the microphone."_s;
    const QString stopped = u"Zoom stopped using the microphone."_s;
    const QString goesOn = u"Zoom is using the microphone."_s;
    const QString on = u"Privacy Mode is on for this Mac."_s;
    const QString off = u"Privacy Mode is off for this Mac."_s;
    const QString told = u"Kestrin tells who uses microphone, camera or screen."_s;
    const QString untold = u"Kestrin no longer tells who uses microphone, camera or screen."_s;
    // In one of its processes, in two, before the start, over two starts, between them; and while Privacy
    // Mode is off or becomes so, here or by another process, or nobody is told.
    const auto row = [&](const QString &steps, const QStringList &story) {
        LiveHome home;
        PrivacyModeFlag flag(home.defaults, home.runtime);
        flag.startRuntime();
        DeviceUse second = zoomListens;
        second.processIdentifier = 11;
        const auto isSaved = [&home](bool isOn) {
            home.settings->settings.isEnabled = isOn;
            Q_EMIT home.runtime.summariesChanged();
        };
        const QHash<QString, std::function<void()>> doings{
            {u"start"_s, [&] { home.live.start(); }},
            {u"stop"_s, [&] { home.live.stop(); }},
            {u"begin"_s, [&] { home.uses.begin(zoomListens); }},
            {u"end"_s, [&] { home.uses.end(zoomListens); }},
            {u"second"_s, [&] { home.uses.begin(second); }},
            {u"second-end"_s, [&] { home.uses.end(second); }},
            {u"on"_s, [&] { flag.setOn(true); }},
            {u"off"_s, [&] { flag.setOn(false); }},
            {u"other-on"_s, [&] { isSaved(true); }},
            {u"other-off"_s, [&] { isSaved(false); }},
            {u"tell"_s, [&] { QVERIFY(home.live.setOn(true)); }},
            {u"untell"_s, [&] { QVERIFY(home.live.setOn(false)); }},
        };
        for (const QString &step : steps.split(u' ')) {
            doings.value(step)();
            home.settle();
        }
        QVERIFY2(home.story() == story, qPrintable(steps + u": "_s + home.story().join(u' ')));
        // Notices are for those who have just begun.
        QCOMPARE(home.began.count(), story.count(started));
        for (const MacProtectionEvent &event : home.log->recent(100)) {
            if (event.message.startsWith(u"Zoom"))
                QVERIFY(event.kind == MacProtectionEventKind::riskAppMatched && event.appName == u"Zoom"_s);
        }
    };
    row(u"start begin end"_s, {started, stopped});
    row(u"start begin second end second-end"_s, {started, stopped});
    row(u"begin start end"_s, {goesOn, stopped});
    row(u"start begin stop start end"_s, {started, goesOn, stopped});
    row(u"start begin stop end start"_s, {started});
    row(u"off start begin end"_s, {off});
    row(u"off start begin on end"_s, {off, on, goesOn, stopped});
    row(u"start begin off end begin on end"_s, {started, off, on, goesOn, stopped});
    row(u"start begin other-off end other-on begin"_s, {started, started});
    row(u"start untell begin tell end"_s, {untold, told, goesOn, stopped});
    row(u"start begin untell end tell begin"_s, {started, untold, told, started});
}

/// One application that cannot make up its mind, and one that is told of all the same.
void LiveRecordTest::flapping() {
    constexpr auto pause = 100ms;
    LiveHome home({.each = {4, pause}, .all = {100, 1ms}});
    QElapsedTimer time;
    time.start();
    home.live.start();
    home.settle();
    for (int round = 0; round < 500; ++round) {
        home.uses.begin(zoomListens);
        home.settle();
        home.uses.end(zoomListens);
        home.settle();
    }
    home.uses.begin(zoomListens);
    home.uses.begin(zoomWatches);
    home.settle();
    const qsizetype flapped = home.story().size() - 1;
    const qsizetype most = 4 + std::chrono::milliseconds(time.elapsed()) / pause + 1;
    QVERIFY2(flapped >= 4 && flapped <= most, qPrintable(QString::number(flapped)));
    QCOMPARE(home.story().last(), u"Zoom started using the camera."_s);
    // What is held back comes by itself, as it is then.
    QTRY_COMPARE(home.story().last(), u"Zoom is using the microphone."_s);
    QCOMPARE(home.began.last().first().value<DeviceUse>(), zoomListens);
    // And at the end at once.
    home.uses.end(zoomListens);
    home.settle();
    home.live.stop();
    QCOMPARE(home.story().last(), u"Zoom stopped using the microphone."_s);
}

/// A new name each time, for hours. The clock is the test's.
void LiveRecordTest::inventedNames() {
    const UseRecord::Limits limits;
    UseRecord record(limits);
    UseRecord::Time now;
    record.begin({}, now);
    int told = 0;
    std::chrono::milliseconds zoomWaited{-1};
    QStringList zoom;
    const auto end = now + 2h;
    const auto zoomBegins = now + 1h;
    for (int number = 0; now < end; ++number, now += 100ms) {
        QList<DeviceUse> uses{use(QString::number(number), microphone, 1),
                              use(u"new "_s + QString::number(number / 50), camera, 1)};
        if (now >= zoomBegins)
            uses.append(zoomListens);
        record.follow(uses, now);
        while (const auto entry = record.takeDue(now)) {
            ++told;
            if (entry->use == zoomListens) {
                zoom.append(entry->sentence());
                zoomWaited = std::chrono::duration_cast<std::chrono::milliseconds>(now - zoomBegins);
            }
        }
    }
    const int most = limits.all.atOnce + static_cast<int>(2h / limits.all.pause) + 1;
    QVERIFY2(told > most / 2 && told <= most, qPrintable(QString::number(told)));
    QCOMPARE(zoom, QStringList{u"Zoom is using the microphone."_s});
    QVERIFY2(zoomWaited < 30s, qPrintable(QString::number(zoomWaited.count())));
    record.follow({}, now);
    QStringList rest;
    for (const UseRecord::Entry &entry : record.takeRest(now))
        rest.append(entry.sentence());
    QVERIFY(rest.contains(u"Zoom stopped using the microphone."_s));
    QVERIFY(!record.due());
}

KESTRIN_TEST(LiveRecordTest)
#include "tst_liverecord.moc"
