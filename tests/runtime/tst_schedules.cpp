// Privacy Mode by time of day: every boundary, other time zones and clock changes.

#include "foundation/TimePhrase.h"
#include "runtime/PrivacyModeFlag.h"
#include "tests/support/MemoryHome.h"
#include "tests/support/Test.h"

#include <QLocale>

#include <ctime>

namespace {

/// One that the test lets jump.
TimeChangeWatchMaker madeKnown(TimeChangeWatch *&watch) {
    return [&watch] {
        auto made = std::make_unique<TimeChangeWatch>();
        watch = made.get();
        return made;
    };
}

QString name(std::optional<bool> state) {
    return !state ? u"absent"_s : *state ? u"on"_s : u"off"_s;
}

} // namespace

class SchedulesTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void cleanup() { moveTo({}); }
    void initTestCase() { QLocale::setDefault(QLocale::c()); } // for the times of day
    void everyMinute();
    void outlook();
    void localWallClock();
    void ticksAndTimeJumps();
    void keptAgainstTheSchedules();
    void pauses();

  private:
    /// To another time zone, or home.
    static void moveTo(const QByteArray &zone) {
        zone.isEmpty() ? qunsetenv("TZ") : qputenv("TZ", zone);
        ::tzset();
    }
};

void SchedulesTest::everyMinute() {
    // Which presets are enabled, and where the state changes in the course of a day.
    const auto row = [](const QString &enabled, const QString &changes) {
        samples::MemoryHome home;
        home.defaults.setStringArray(samples::modesKey, enabled.split(u' ', Qt::SkipEmptyParts));
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
    };
    row(u"focus"_s, u"00:00 off, 21:00 on, 23:00 off"_s);
    row(u"focus sleep"_s, u"00:00 on, 07:00 off, 21:00 on"_s);
    row(u"sleep away manual"_s, u"00:00 on, 07:00 off, 08:00 on, 18:00 off, 23:00 on"_s);
    row(u"manual travel"_s, u"00:00 absent"_s);
    row(u""_s, u"00:00 absent"_s);
}

void SchedulesTest::outlook() {
    // Which presets are enabled, and what is told at what time.
    const auto row = [](const QString &enabled, QTime time, const QString &text) {
        samples::MemoryHome home;
        home.defaults.setStringArray(samples::modesKey, enabled.split(u' '));
        const MacProtectionRuntime runtime(home.defaults, home.surroundings());
        home.now.setTime(time.addSecs(-1));
        QCOMPARE(runtime.scheduleOutlook().text(), text);
    };
    row(u"sleep away manual"_s, QTime(5, 0),
        u"Sleep Mode keeps Privacy Mode on right now. Later today it goes off at 07:00, on at 08:00, off at 18:00 and on at 23:00."_s);
    row(u"sleep away manual"_s, QTime(18, 0, 30),
        u"No schedule is active right now, which keeps Privacy Mode off. Later today it goes on at 23:00."_s);
    row(u"sleep away"_s, QTime(23, 59),
        u"Sleep Mode keeps Privacy Mode on right now. It stays so until midnight."_s);
    row(u"focus sleep"_s, QTime(22, 0),
        u"Focus Mode keeps Privacy Mode on right now. It stays so until midnight."_s);
    row(u"manual travel"_s, QTime(12, 0), u"No schedule switches Privacy Mode. It stays as you set it."_s);
}

void SchedulesTest::localWallClock() {
    samples::MemoryHome home;
    home.defaults.setStringArray(samples::modesKey, {u"sleep"_s});
    const MacProtectionRuntime runtime(home.defaults, home.surroundings());
    // One minute to seven, on the days before and after a night in which the clocks change too.
    const auto row = [&runtime](const QByteArray &zone, const QString &minute) {
        moveTo(zone);
        const QDateTime date = QDateTime::fromString(minute, Qt::ISODate);
        QCOMPARE(runtime.scheduledPrivacyModeState(date.addSecs(59)), true);
        QCOMPARE(runtime.scheduledPrivacyModeState(date.addSecs(60)), false);
    };
    row("Asia/Kathmandu", u"2026-01-01T01:14:00Z"_s);
    row("Europe/Berlin", u"2026-03-28T05:59:00Z"_s);
    row("Europe/Berlin", u"2026-03-29T04:59:00Z"_s);
}

void SchedulesTest::ticksAndTimeJumps() {
    samples::MemoryHome home;
    home.defaults.setStringArray(samples::modesKey, {u"away"_s});
    QList<bool> asked;
    const auto setter = [&](bool on) {
        asked.append(on);
        home.settings->save({on, {}});
        return Outcome();
    };
    MacProtectionSurroundings surroundings = home.surroundings();
    QCOMPARE(surroundings.scheduleInterval, std::chrono::seconds(60));
    TimeChangeWatch *watch = nullptr;
    surroundings.watchTime = madeKnown(watch);
    {
        MacProtectionRuntime runtime(home.defaults, surroundings);
        runtime.start(true, setter);
        // A second start does not evaluate: the flag that it brings stays until the next tick.
        home.now.setTime(QTime(18, 0));
        runtime.start(true, setter);
        QVERIFY(watch);
        Q_EMIT watch->changed();
        // Never in the middle of something else.
        QVERIFY(asked.isEmpty() && home.settings->load().isEnabled);
        QTRY_COMPARE(asked, QList<bool>{false});
    }
    surroundings.scheduleInterval = std::chrono::milliseconds(20);
    MacProtectionRuntime runtime(home.defaults, surroundings);
    runtime.start(false, setter);
    home.now.setTime(QTime(8, 0));
    QTRY_COMPARE(asked, (QList<bool>{false, true}));
}

void SchedulesTest::keptAgainstTheSchedules() {
    // Which presets are enabled, the hour, what is to be kept, and which are enabled then.
    const auto row = [](const QString &enabled, int hour, bool kept, const QString &after) {
        samples::MemoryHome home;
        home.defaults.setStringArray(samples::modesKey, enabled.split(u' '));
        home.now.setTime(QTime(hour, 0));
        MacProtectionRuntime runtime(home.defaults, home.surroundings());
        runtime.disableModesAgainst(kept);
        QCOMPARE(home.defaults.stringArray(samples::modesKey)->join(u' '), after);
        QCOMPARE(runtime.scheduledPrivacyModeState(home.now).value_or(kept), kept);
    };
    row(u"sleep away manual"_s, 12, false, u"sleep manual"_s);
    row(u"sleep away manual"_s, 20, true, u"manual"_s);
    row(u"sleep away"_s, 12, true, u"sleep away"_s);
    row(u"sleep away"_s, 20, false, u"sleep away"_s);
    row(u"travel manual"_s, 12, false, u"travel manual"_s);
}

void SchedulesTest::pauses() {
    // Where somebody pauses, when and for how long, and what is so whenever the clock has been set, or also
    // the program been started again. Then Privacy Mode is on, off, or paused until a time.
    const auto row = [](const QByteArray &zone, const QString &begin, const QString &pause,
                        const QStringList &steps) {
        moveTo(zone);
        samples::MemoryHome home;
        home.defaults.setStringArray(samples::modesKey, {u"sleep"_s, u"away"_s});
        const auto clockShows = [&](const QString &moment) {
            home.now = QDateTime::fromString(moment, Qt::ISODate);
        };
        clockShows(begin);
        TimeChangeWatch *watch = nullptr;
        MacProtectionSurroundings surroundings = home.surroundings();
        surroundings.clock = [&home] { return home.now; };
        surroundings.watchTime = madeKnown(watch);
        std::unique_ptr<MacProtectionRuntime> runtime;
        std::unique_ptr<PrivacyModeFlag> flag;
        const auto start = [&] {
            flag.reset();
            runtime = std::make_unique<MacProtectionRuntime>(home.defaults, surroundings);
            flag = std::make_unique<PrivacyModeFlag>(home.defaults, *runtime);
            flag->startRuntime();
        };
        start();
        // At night it is off, and here on all the same.
        flag->setOn(true);
        const auto end = foundation::endOfPhrase(pause, home.now.toLocalTime());
        QVERIFY(end && flag->pause(*end).isKept());
        for (const QString &step : steps) {
            const QStringList words = step.split(u' ');
            clockShows(words.first());
            if (words.last() == u"again")
                start();
            else
                Q_EMIT watch->changed();
            QCoreApplication::processEvents();
            const auto until = flag->pausedUntil();
            if (words.at(1) == u"until") {
                // What passes meanwhile counts.
                const qint64 early =
                    until ? until->secsTo(QDateTime::fromString(words.at(2), Qt::ISODate)) : -1;
                QVERIFY2(early >= 0 && early < 60, qUtf8Printable(step));
            }
            QVERIFY2(until.has_value() == (words.at(1) == u"until"), qUtf8Printable(step));
            QVERIFY2(flag->isOn() == (words.at(1) == u"on"), qUtf8Printable(step));
            QVERIFY(!flag->isOn() || home.story().last() == u"Privacy Mode is on for this Mac.");
            QCOMPARE(home.settings->settings.isEnabled, flag->isOn());
        }
    };
    // Away ends at six.
    row("UTC", u"2026-03-14T17:30:00Z"_s, u"1h"_s,
        {u"2026-03-14T18:00:00Z until 2026-03-14T18:30:00Z"_s, u"2026-03-14T18:30:00Z off"_s});
    // It is started again.
    row("UTC", u"2026-03-14T12:00:00Z"_s, u"1h"_s,
        {u"2026-03-14T12:30:00Z until 2026-03-14T13:00:00Z again"_s, u"2026-03-14T15:00:00Z on again"_s});
    // The clocks go forward.
    row("Europe/Berlin", u"2026-03-29T00:30:00Z"_s, u"90m"_s,
        {u"2026-03-29T01:59:59Z until 2026-03-29T02:00:00Z"_s, u"2026-03-29T02:00:00Z on"_s});
    // A day of 25 hours.
    row("Europe/Berlin", u"2026-10-24T22:10:00Z"_s, u"until tomorrow"_s,
        {u"2026-10-25T22:59:59Z until 2026-10-25T23:00:00Z"_s, u"2026-10-25T23:00:00Z on"_s});
    // There is no midnight.
    row("America/Sao_Paulo", u"2018-11-03T20:00:00Z"_s, u"until tomorrow"_s,
        {u"2018-11-04T02:59:59Z until 2018-11-04T03:00:00Z"_s, u"2018-11-04T03:00:00Z on again"_s});
    // The clock is set forward.
    row("UTC", u"2026-03-14T12:00:00Z"_s, u"1h"_s, {u"2026-03-14T15:00:00Z on"_s});
    // Set back, when twenty minutes are left.
    row("UTC", u"2026-03-14T12:00:00Z"_s, u"1h"_s,
        {u"2026-03-14T12:40:00Z until 2026-03-14T13:00:00Z"_s,
         u"2026-03-14T12:10:00Z until 2026-03-14T12:30:00Z"_s,
         u"2026-03-14T09:00:00Z until 2026-03-14T09:20:00Z"_s, u"2026-03-14T09:20:00Z on"_s});
    // While nobody knows.
    row("UTC", u"2026-03-14T12:00:00Z"_s, u"1h"_s, {u"2026-03-14T11:00:00Z on again"_s});
    // Corrected by seconds.
    row("UTC", u"2026-03-14T12:00:00Z"_s, u"1h"_s,
        {u"2026-03-14T11:59:30Z until 2026-03-14T13:00:00Z again"_s});
}

KESTRIN_TEST(SchedulesTest)
#include "tst_schedules.moc"
