// Privacy Mode by time of day: every boundary, other time zones, clock changes, and what is recorded.

#include "engine/workspace/InMemoryWorkspace.h"
#include "foundation/TimeChangeWatch.h"
#include "runtime/MacProtectionRuntime.h"
#include "runtime/PrivacyModeFlag.h"
#include "tests/support/Samples.h"

#include <QTest>

#include <ctime>

using namespace Qt::StringLiterals;
using namespace kestrin;

namespace {

const QString modesKey = u"kestrin.mac.enabledModeIDs"_s;

/// A runtime wholly in memory, at a time of the test's choice.
struct Desk {
    InMemoryWorkspace workspace;
    InMemoryUserDefaults defaults;
    QDateTime now = QDateTime(QDate(2026, 3, 14), QTime(12, 0));
    std::shared_ptr<InMemoryPrivacyModeSettingsStore> settings =
        std::make_shared<InMemoryPrivacyModeSettingsStore>(PrivacyModeSettings{true, {u"zoom"_s}});
    std::shared_ptr<InMemoryMacActivityLogStore> log = std::make_shared<InMemoryMacActivityLogStore>();

    MacProtectionSurroundings surroundings() {
        return {u"/nonexistent"_s, &workspace, [this] { return now; }, settings, log};
    }
    QStringList story() {
        QStringList texts = samples::messages(log->recent(100));
        std::reverse(texts.begin(), texts.end());
        return texts;
    }
};

QString name(std::optional<bool> state) {
    return !state ? u"absent"_s : *state ? u"on"_s : u"off"_s;
}

} // namespace

class SchedulesTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void cleanup() { moveTo({}); }
    void everyMinute_data();
    void everyMinute();
    void localWallClock_data();
    void localWallClock();
    void setModeStoresAndRecords();
    void enablingAPresetThatIsDueNow();
    void evaluationRecordsOnlyChanges();
    void ticks();
    void timeJumps();

  private:
    /// To another time zone, or home.
    static void moveTo(const QByteArray &zone) {
        zone.isEmpty() ? qunsetenv("TZ") : qputenv("TZ", zone);
        ::tzset();
    }
};

void SchedulesTest::everyMinute_data() {
    QTest::addColumn<QString>("enabled");
    QTest::addColumn<QString>("changes"); // where the state changes in the course of a day
    const auto row = [](const QString &enabled, const QString &changes) {
        QTest::newRow(qUtf8Printable(enabled)) << enabled << changes;
    };
    row(u"sleep"_s, u"00:00 on, 07:00 off, 23:00 on"_s);
    row(u"away"_s, u"00:00 off, 08:00 on, 18:00 off"_s);
    row(u"focus"_s, u"00:00 off, 21:00 on, 23:00 off"_s);
    row(u"focus sleep"_s, u"00:00 on, 07:00 off, 21:00 on"_s);
    row(u"sleep away manual"_s, u"00:00 on, 07:00 off, 08:00 on, 18:00 off, 23:00 on"_s);
    row(u"manual travel"_s, u"00:00 absent"_s);
    row(u""_s, u"00:00 absent"_s);
}

void SchedulesTest::everyMinute() {
    QFETCH(QString, enabled);
    Desk desk;
    desk.defaults.setStringArray(modesKey, enabled.split(u' ', Qt::SkipEmptyParts));
    const MacProtectionRuntime runtime(desk.defaults, desk.surroundings());
    QStringList changes;
    QString before;
    for (int minute = 0; minute < 1440; ++minute) {
        const QTime time(minute / 60, minute % 60, minute % 2 ? 59 : 0);
        const QString state = name(runtime.scheduledPrivacyModeState(QDateTime(QDate(2026, 1, 15), time)));
        if (state != before)
            changes.append(time.toString(u"HH:mm "_s) + state);
        before = state;
    }
    QTEST(changes.join(u", "_s), "changes");
}

void SchedulesTest::localWallClock_data() {
    QTest::addColumn<QByteArray>("zone");
    QTest::addColumn<QDateTime>("lastMinute"); // 06:59 there
    const auto row = [](const char *zone, const QDate &date, const QTime &utc) {
        QTest::addRow("%s, %s", zone, qPrintable(date.toString(Qt::ISODate)))
            << QByteArray(zone) << QDateTime(date, utc, Qt::UTC);
    };
    row("Asia/Tokyo", QDate(2026, 1, 1), QTime(21, 59));
    row("Asia/Kathmandu", QDate(2026, 1, 1), QTime(1, 14));
    // Before, and after the nights in which the clocks change.
    row("Europe/Berlin", QDate(2026, 3, 28), QTime(5, 59));
    row("Europe/Berlin", QDate(2026, 3, 29), QTime(4, 59));
    row("Europe/Berlin", QDate(2026, 10, 25), QTime(5, 59));
}

void SchedulesTest::localWallClock() {
    QFETCH(QByteArray, zone);
    QFETCH(QDateTime, lastMinute);
    moveTo(zone);
    Desk desk;
    desk.defaults.setStringArray(modesKey, {u"sleep"_s});
    const MacProtectionRuntime runtime(desk.defaults, desk.surroundings());
    QCOMPARE(runtime.scheduledPrivacyModeState(lastMinute), true);
    QCOMPARE(runtime.scheduledPrivacyModeState(lastMinute.addSecs(59)), true);
    QCOMPARE(runtime.scheduledPrivacyModeState(lastMinute.addSecs(60)), false);
}

void SchedulesTest::setModeStoresAndRecords() {
    Desk desk;
    MacProtectionRuntime runtime(desk.defaults, desk.surroundings());
    runtime.setMode(u"sleep"_s, true);
    runtime.setMode(u"unknown"_s, true);
    QVERIFY(desk.story().isEmpty());
    QCOMPARE(desk.defaults.stringArray(modesKey), std::nullopt);
    // At noon "away" is due; without it nothing but "manual" is left.
    runtime.setMode(u"sleep"_s, false);
    QCOMPARE(desk.defaults.stringArray(modesKey), (QStringList{u"away"_s, u"manual"_s}));
    runtime.setMode(u"away"_s, false);
    runtime.setMode(u"manual"_s, false);
    QCOMPARE(desk.defaults.stringArray(modesKey), QStringList{});
    QCOMPARE(desk.story(),
             (QStringList{u"Sleep Mode disabled."_s, u"Away Mode disabled."_s, u"Manual Mode disabled."_s}));
    QCOMPARE(desk.log->recent(1).first().kind, MacProtectionEventKind::privacyModeOff);
    QCOMPARE(MacProtectionRuntime(desk.defaults, desk.surroundings()).enabledScheduleCount(), 0);
}

void SchedulesTest::enablingAPresetThatIsDueNow() {
    Desk desk;
    desk.now.setTime(QTime(21, 30));
    desk.settings->settings.isEnabled = false;
    desk.defaults.setStringArray(modesKey, {});
    desk.defaults.setBoolean(PrivacyModeFlag::key, false);
    MacProtectionRuntime runtime(desk.defaults, desk.surroundings());
    PrivacyModeFlag flag(desk.defaults, runtime);
    flag.startRuntime();
    runtime.setMode(u"focus"_s, true);
    QCOMPARE(desk.story(), (QStringList{u"Focus Mode enabled."_s, u"Schedule turned Privacy Mode on."_s,
                                        u"Privacy Mode is on for this Mac."_s}));
    QVERIFY(flag.isOn());
    QVERIFY(desk.settings->settings.isEnabled);
    for (const MacProtectionEvent &event : desk.log->recent(8))
        QCOMPARE(event.kind, MacProtectionEventKind::privacyModeOn);
}

void SchedulesTest::evaluationRecordsOnlyChanges() {
    Desk desk;
    desk.defaults.setStringArray(modesKey, {u"away"_s});
    MacProtectionRuntime runtime(desk.defaults, desk.surroundings());
    const QDate day(2026, 3, 14);
    runtime.evaluateSchedules(QDateTime(day, QTime(12, 0)));
    QVERIFY(desk.story().isEmpty());
    // Without a setter the runtime saves the change itself.
    runtime.evaluateSchedules(QDateTime(day, QTime(18, 0)));
    runtime.evaluateSchedules(QDateTime(day, QTime(18, 1)));
    QCOMPARE(desk.story(),
             (QStringList{u"Schedule turned Privacy Mode off."_s, u"Privacy Mode is off for this Mac."_s}));
    QVERIFY(!desk.settings->settings.isEnabled);
    // It is the saved flag that is compared, and the setter that is asked.
    QList<bool> asked;
    runtime.setPrivacyModeSetter([&](bool on) { asked.append(on); });
    runtime.evaluateSchedules(QDateTime(day, QTime(8, 0)));
    QCOMPARE(asked, QList<bool>{true});
    QVERIFY(!desk.settings->settings.isEnabled);
}

void SchedulesTest::ticks() {
    Desk desk;
    desk.defaults.setStringArray(modesKey, {u"away"_s});
    desk.now.setTime(QTime(17, 59));
    MacProtectionSurroundings surroundings = desk.surroundings();
    QCOMPARE(surroundings.scheduleInterval, std::chrono::seconds(60));
    surroundings.scheduleInterval = std::chrono::milliseconds(20);
    MacProtectionRuntime runtime(desk.defaults, surroundings);
    QList<bool> asked;
    const auto setter = [&](bool on) {
        asked.append(on);
        runtime.updatePrivacyMode(on, true);
    };
    runtime.start(true, setter);
    QVERIFY(asked.isEmpty());
    // A second start does not evaluate: the flag that it brings stays until the next tick.
    desk.now.setTime(QTime(18, 0));
    runtime.start(true, setter);
    QVERIFY(asked.isEmpty() && desk.settings->settings.isEnabled);
    QTRY_COMPARE(asked, QList<bool>{false});
    desk.now.setTime(QTime(8, 0));
    QTRY_COMPARE(asked, (QList<bool>{false, true}));
}

void SchedulesTest::timeJumps() {
    Desk desk;
    desk.defaults.setStringArray(modesKey, {u"away"_s});
    MacProtectionRuntime runtime(desk.defaults, desk.surroundings()); // with a minute between ticks
    QList<bool> asked;
    runtime.start(true, [&](bool on) { asked.append(on); });
    auto *watch = runtime.findChild<TimeChangeWatch *>();
    QVERIFY(watch);
    desk.now.setTime(QTime(18, 0));
    Q_EMIT watch->changed();
    QVERIFY(asked.isEmpty()); // never in the middle of something else
    QTRY_COMPARE(asked, QList<bool>{false});
}

QTEST_GUILESS_MAIN(SchedulesTest)
#include "tst_schedules.moc"
