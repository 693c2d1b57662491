// Privacy Mode by time of day: every boundary, other time zones, clock changes, and what is recorded.

#include "foundation/UniversalTime.h"
#include "runtime/PrivacyModeFlag.h"
#include "tests/support/Home.h"

#include <QTest>

#include <ctime>
#include <tuple>

using namespace Qt::StringLiterals;
using namespace kestrin;
using namespace kestrin::engine;
using namespace kestrin::runtime;

namespace {

const QString modesKey = u"kestrin.mac.enabledModeIDs"_s;

QString name(std::optional<bool> state) {
    return !state ? u"absent"_s : *state ? u"on"_s : u"off"_s;
}

} // namespace

class SchedulesTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void cleanup() { moveTo({}); }
    void everyMinute();
    void localWallClock();
    void setModeStoresAndRecords();
    void enablingAPresetThatIsDueNow();
    void evaluationRecordsOnlyChanges();
    void ticksAndTimeJumps();

  private:
    /// To another time zone, or home.
    static void moveTo(const QByteArray &zone) {
        zone.isEmpty() ? qunsetenv("TZ") : qputenv("TZ", zone);
        ::tzset();
    }
};

void SchedulesTest::everyMinute() {
    // Which presets are enabled, and where the state changes in the course of a day.
    const std::pair<QString, QString> expected[] = {
        {u"sleep"_s, u"00:00 on, 07:00 off, 23:00 on"_s},
        {u"away"_s, u"00:00 off, 08:00 on, 18:00 off"_s},
        {u"focus"_s, u"00:00 off, 21:00 on, 23:00 off"_s},
        {u"focus sleep"_s, u"00:00 on, 07:00 off, 21:00 on"_s},
        {u"sleep away manual"_s, u"00:00 on, 07:00 off, 08:00 on, 18:00 off, 23:00 on"_s},
        {u"manual travel"_s, u"00:00 absent"_s},
        {u""_s, u"00:00 absent"_s},
    };
    for (const auto &[enabled, changes] : expected) {
        samples::Home home;
        home.defaults.setStringArray(modesKey, enabled.split(u' ', Qt::SkipEmptyParts));
        const MacProtectionRuntime runtime(home.defaults, home.surroundings());
        QStringList found;
        QString before;
        for (int minute = 0; minute < 1440; ++minute) {
            const QTime time(minute / 60, minute % 60, minute % 2 ? 59 : 0);
            const QString state =
                name(runtime.scheduledPrivacyModeState(QDateTime(QDate(2026, 1, 15), time)));
            if (state != before)
                found.append(time.toString(u"HH:mm "_s) + state);
            before = state;
        }
        QCOMPARE(found.join(u", "_s), changes);
    }
}

void SchedulesTest::localWallClock() {
    const std::tuple<const char *, QDate, QTime> oneMinuteToSeven[] = {
        {"Asia/Tokyo", {2026, 1, 1}, {21, 59}},
        {"Asia/Kathmandu", {2026, 1, 1}, {1, 14}},
        // Before, and after the nights in which the clocks change.
        {"Europe/Berlin", {2026, 3, 28}, {5, 59}},
        {"Europe/Berlin", {2026, 3, 29}, {4, 59}},
        {"Europe/Berlin", {2026, 10, 25}, {5, 59}},
    };
    samples::Home home;
    home.defaults.setStringArray(modesKey, {u"sleep"_s});
    const MacProtectionRuntime runtime(home.defaults, home.surroundings());
    for (const auto &[zone, date, time] : oneMinuteToSeven) {
        moveTo(zone);
        const QDateTime minute(date, time, foundation::universalTime);
        QCOMPARE(runtime.scheduledPrivacyModeState(minute.addSecs(59)), true);
        QCOMPARE(runtime.scheduledPrivacyModeState(minute.addSecs(60)), false);
    }
}

void SchedulesTest::setModeStoresAndRecords() {
    samples::Home home;
    MacProtectionRuntime runtime(home.defaults, home.surroundings());
    runtime.setMode(u"sleep"_s, true);
    runtime.setMode(u"unknown"_s, true);
    QVERIFY(home.story().isEmpty());
    QCOMPARE(home.defaults.stringArray(modesKey), std::nullopt);
    // At noon "away" is due; without it nothing but "manual" is left.
    runtime.setMode(u"sleep"_s, false);
    QCOMPARE(home.defaults.stringArray(modesKey), (QStringList{u"away"_s, u"manual"_s}));
    runtime.setMode(u"away"_s, false);
    runtime.setMode(u"manual"_s, false);
    QCOMPARE(home.defaults.stringArray(modesKey), QStringList{});
    QCOMPARE(home.story(),
             (QStringList{u"Sleep Mode disabled."_s, u"Away Mode disabled."_s, u"Manual Mode disabled."_s}));
    QCOMPARE(home.log.recent(1).first().kind, MacProtectionEventKind::privacyModeOff);
}

void SchedulesTest::enablingAPresetThatIsDueNow() {
    samples::Home home;
    home.now.setTime(QTime(21, 30));
    home.settings.save({false, {}});
    home.defaults.setStringArray(modesKey, {});
    home.defaults.setBoolean(PrivacyModeFlag::key, false);
    MacProtectionRuntime runtime(home.defaults, home.surroundings());
    PrivacyModeFlag flag(home.defaults, runtime);
    flag.startRuntime();
    runtime.setMode(u"focus"_s, true);
    QCOMPARE(home.story(), (QStringList{u"Focus Mode enabled."_s, u"Schedule turned Privacy Mode on."_s,
                                        u"Privacy Mode is on for this Mac."_s}));
    QVERIFY(flag.isOn() && home.settings.load().isEnabled);
    for (const MacProtectionEvent &event : home.log.recent(8))
        QCOMPARE(event.kind, MacProtectionEventKind::privacyModeOn);
}

void SchedulesTest::evaluationRecordsOnlyChanges() {
    samples::Home home;
    home.defaults.setStringArray(modesKey, {u"away"_s});
    MacProtectionRuntime runtime(home.defaults, home.surroundings());
    const QDate day(2026, 3, 14);
    runtime.evaluateSchedules(QDateTime(day, QTime(12, 0)));
    QVERIFY(home.story().isEmpty());
    // Without a setter the runtime saves the change itself.
    runtime.evaluateSchedules(QDateTime(day, QTime(18, 0)));
    runtime.evaluateSchedules(QDateTime(day, QTime(18, 1)));
    QCOMPARE(home.story(),
             (QStringList{u"Schedule turned Privacy Mode off."_s, u"Privacy Mode is off for this Mac."_s}));
    QVERIFY(!home.settings.load().isEnabled);
    // It is the saved flag that is compared, and the setter that is asked.
    QList<bool> asked;
    runtime.setPrivacyModeSetter([&](bool on) { asked.append(on); });
    runtime.evaluateSchedules(QDateTime(day, QTime(8, 0)));
    QCOMPARE(asked, QList<bool>{true});
    QVERIFY(!home.settings.load().isEnabled);
}

void SchedulesTest::ticksAndTimeJumps() {
    samples::Home home;
    home.defaults.setStringArray(modesKey, {u"away"_s});
    QList<bool> asked;
    const auto setter = [&](bool on) {
        asked.append(on);
        home.settings.save({on, {}});
    };
    MacProtectionSurroundings surroundings = home.surroundings();
    QCOMPARE(surroundings.scheduleInterval, std::chrono::seconds(60));
    TimeChangeWatch *watch = nullptr;
    surroundings.watchTime = [&watch] {
        auto made = std::make_unique<TimeChangeWatch>();
        watch = made.get();
        return made;
    };
    {
        MacProtectionRuntime runtime(home.defaults, surroundings);
        runtime.start(true, setter);
        // A second start does not evaluate: the flag that it brings stays until the next tick.
        home.now.setTime(QTime(18, 0));
        runtime.start(true, setter);
        QVERIFY(watch);
        Q_EMIT watch->changed();
        // Never in the middle of something else.
        QVERIFY(asked.isEmpty() && home.settings.load().isEnabled);
        QTRY_COMPARE(asked, QList<bool>{false});
    }
    surroundings.scheduleInterval = std::chrono::milliseconds(20);
    MacProtectionRuntime runtime(home.defaults, surroundings);
    runtime.start(false, setter);
    home.now.setTime(QTime(8, 0));
    QTRY_COMPARE(asked, (QList<bool>{false, true}));
}

QTEST_GUILESS_MAIN(SchedulesTest)
#include "tst_schedules.moc"
