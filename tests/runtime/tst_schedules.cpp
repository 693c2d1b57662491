// Privacy Mode by time of day: every boundary, other time zones, clock changes, and what is recorded.

#include "engine/workspace/InMemoryWorkspace.h"
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

/// Puts the process into another time zone for as long as it lives.
class TimeZone {
  public:
    explicit TimeZone(const char *zone) : m_before(qgetenv("TZ")), m_wasSet(qEnvironmentVariableIsSet("TZ")) {
        qputenv("TZ", zone);
        ::tzset();
    }
    TimeZone(const TimeZone &) = delete;
    TimeZone &operator=(const TimeZone &) = delete;
    ~TimeZone() {
        if (m_wasSet)
            qputenv("TZ", m_before);
        else
            qunsetenv("TZ");
        ::tzset();
    }

  private:
    QByteArray m_before;
    bool m_wasSet;
};

} // namespace

class SchedulesTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void everyMinute_data();
    void everyMinute();
    void localWallClock_data();
    void localWallClock();
    void setModeStoresAndRecords();
    void enablingAPresetThatIsDueNow();
    void evaluationRecordsOnlyChanges();
    void timer();
    void ticks();
};

void SchedulesTest::everyMinute_data() {
    QTest::addColumn<QStringList>("enabled");
    // Where the state changes in the course of a day: "minute of day: state".
    QTest::addColumn<QStringList>("changes");

    QTest::newRow("sleep") << QStringList{u"sleep"_s}
                           << QStringList{u"00:00 on"_s, u"07:00 off"_s, u"23:00 on"_s};
    QTest::newRow("away") << QStringList{u"away"_s}
                          << QStringList{u"00:00 off"_s, u"08:00 on"_s, u"18:00 off"_s};
    QTest::newRow("focus") << QStringList{u"focus"_s}
                           << QStringList{u"00:00 off"_s, u"21:00 on"_s, u"23:00 off"_s};
    QTest::newRow("focus and sleep") << QStringList{u"focus"_s, u"sleep"_s}
                                     << QStringList{u"00:00 on"_s, u"07:00 off"_s, u"21:00 on"_s};
    QTest::newRow("seed") << QStringList{u"sleep"_s, u"away"_s, u"manual"_s}
                          << QStringList{u"00:00 on"_s, u"07:00 off"_s, u"08:00 on"_s, u"18:00 off"_s,
                                         u"23:00 on"_s};
    QTest::newRow("manual ones") << QStringList{u"manual"_s, u"travel"_s} << QStringList{u"00:00 absent"_s};
    QTest::newRow("none") << QStringList{} << QStringList{u"00:00 absent"_s};
}

void SchedulesTest::everyMinute() {
    QFETCH(QStringList, enabled);
    Desk desk;
    desk.defaults.setStringArray(modesKey, enabled);
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
    QTEST(changes, "changes");
}

void SchedulesTest::localWallClock_data() {
    QTest::addColumn<QByteArray>("zone");
    QTest::addColumn<QDateTime>("utc");
    QTest::addColumn<QString>("sleep");
    const auto utc = [](int month, int day, int hour, int minute) {
        return QDateTime(QDate(2026, month, day), QTime(hour, minute), Qt::UTC);
    };
    QTest::newRow("Tokyo 06:59") << QByteArray("Asia/Tokyo") << utc(1, 1, 21, 59) << u"on"_s;
    QTest::newRow("Tokyo 07:00") << QByteArray("Asia/Tokyo") << utc(1, 1, 22, 0) << u"off"_s;
    QTest::newRow("Kathmandu 22:59") << QByteArray("Asia/Kathmandu") << utc(1, 1, 17, 14) << u"off"_s;
    QTest::newRow("Kathmandu 23:00") << QByteArray("Asia/Kathmandu") << utc(1, 1, 17, 15) << u"on"_s;
    // Berlin, the night of 29 March: one hour less until seven.
    QTest::newRow("spring, 06:59") << QByteArray("Europe/Berlin") << utc(3, 29, 4, 59) << u"on"_s;
    QTest::newRow("spring, 07:00") << QByteArray("Europe/Berlin") << utc(3, 29, 5, 0) << u"off"_s;
    QTest::newRow("day before, 06:59") << QByteArray("Europe/Berlin") << utc(3, 28, 5, 59) << u"on"_s;
    // And the night of 25 October: one hour more.
    QTest::newRow("autumn, 06:59") << QByteArray("Europe/Berlin") << utc(10, 25, 5, 59) << u"on"_s;
    QTest::newRow("autumn, 07:00") << QByteArray("Europe/Berlin") << utc(10, 25, 6, 0) << u"off"_s;
}

void SchedulesTest::localWallClock() {
    QFETCH(QByteArray, zone);
    QFETCH(QDateTime, utc);
    const TimeZone timeZone(zone.constData());
    Desk desk;
    desk.defaults.setStringArray(modesKey, {u"sleep"_s});
    const MacProtectionRuntime runtime(desk.defaults, desk.surroundings());
    QTEST(name(runtime.scheduledPrivacyModeState(utc)), "sleep");
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

void SchedulesTest::timer() {
    Desk desk;
    desk.defaults.setStringArray(modesKey, {u"away"_s});
    desk.now.setTime(QTime(19, 0));
    MacProtectionRuntime runtime(desk.defaults, desk.surroundings());
    QList<bool> asked;
    const auto setter = [&](bool on) {
        asked.append(on);
        runtime.updatePrivacyMode(on, true);
    };
    runtime.start(true, setter);
    QCOMPARE(asked, QList<bool>{false});
    // A second start does not evaluate: the flag that it brings stays until the next tick.
    runtime.start(true, setter);
    QCOMPARE(asked.size(), 1);
    QVERIFY(desk.settings->settings.isEnabled);
    runtime.startScheduleTimer();
    QCOMPARE(asked.size(), 1);
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
    runtime.start(true, [&](bool on) {
        asked.append(on);
        runtime.updatePrivacyMode(on, true);
    });
    QVERIFY(asked.isEmpty());
    desk.now.setTime(QTime(18, 0));
    QTRY_COMPARE(asked, QList<bool>{false});
    desk.now.setTime(QTime(8, 0));
    QTRY_COMPARE(asked, (QList<bool>{false, true}));
}

QTEST_GUILESS_MAIN(SchedulesTest)
#include "tst_schedules.moc"
