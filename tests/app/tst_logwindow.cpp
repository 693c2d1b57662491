// The log's window over a log of years: what is shown of it, what stays in place when it grows, what can be
// done with it by keys, and what another program reads of an export.

#include "foundation/UniversalTime.h"
#include "runtime/LogText.h"
#include "tests/support/Files.h"
#include "tests/support/Items.h"
#include "tests/support/TestClass.h"
#include "tests/support/WindowHome.h"

#include <QAbstractItemModelTester>
#include <QClipboard>
#include <QGuiApplication>
#include <QProcess>
#include <QRegularExpression>

using namespace Qt::StringLiterals;
using namespace kestrin;
using namespace kestrin::foundation;
using namespace kestrin::engine;
using namespace kestrin::runtime;
using namespace kestrin::app;

namespace {

using Kind = MacProtectionEventKind;

/// The newest first, one in ten minutes; five applications, one of which has a hostile name, and events of
/// none.
QList<MacProtectionEvent> eventsOfYears(const QDateTime &now, int count) {
    const QStringList names{u"Zoom"_s, u"zoom rooms"_s, u"=Evil, \"Ltd\"\u202e"_s, u""_s, u"Otter AI"_s};
    QList<MacProtectionEvent> events;
    for (int i = 0; i < count; ++i) {
        MacProtectionEvent event = MacProtectionEvent::create(
            now.addSecs(-600LL * (i + 1)), static_cast<Kind>(i % 7), u"Event %1."_s.arg(count - i),
            names.at(i % names.size()), u"id.%1"_s.arg(i % 3));
        if (i % 11 == 0)
            event.appName = event.bundleIdentifier = std::nullopt;
        events.append(event);
    }
    return events;
}

/// The window of a log, with hands and eyes.
struct LogDesk : samples::WindowHome {
    explicit LogDesk(const QList<MacProtectionEvent> &events) {
        if (!events.isEmpty())
            samples::write(support() + u"/activity-log.json"_s, encodeJson(events));
        open();
        openLog();
        logWindow().requestActivate();
        static_cast<void>(QTest::qWaitForWindowActive(&logWindow()));
    }

    QQuickWindow &logWindow() const { return shown->log->window(); }
    MacLog &whole() const { return shown->log->log(); }
    LogLines &lines() const { return *whole().property("lines").value<LogLines *>(); }
    void press(const QList<QKeyCombination> &keys) const { samples::pressKeys(logWindow(), keys); }
    void type(const QByteArray &text) const { samples::typeText(logWindow(), text); }
    /// From the search to the list.
    void goToList() const { press({Qt::Key_Tab, Qt::Key_Tab, Qt::Key_Tab}); }

    /// What is said in the window below the search, and how far down.
    QStringList seen(const QByteArray &type, const char *property) const {
        logWindow().grabWindow();
        QStringList found;
        for (const QQuickItem *const item : samples::itemsOf(type, logWindow().contentItem())) {
            const double y = item->mapToScene({}).y();
            if (y > 70 && y < logWindow().height())
                found.append(u"%1 %2"_s.arg(y, 6, 'f', 1).arg(item->property(property).toString()));
        }
        found.sort();
        return found;
    }
    QStringList seenLines() const { return seen("MacLogRow", "message"); }
    bool says(const QString &text) const {
        const QRegularExpression atAnyHeight(u"^ *[0-9.]+ "_s + QRegularExpression::escape(text) + u'$');
        return !seen("KestrinText", "text").filter(atAnyHeight).isEmpty();
    }
};

} // namespace

class LogWindowTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    // Also what QML complains of.
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }
    void theIndexFindsWhatIsAskedFor();
    void followsWithoutLosingThePlace();
    void keys();
    void emptyAndDamaged();
    void exports();
};

void LogWindowTest::theIndexFindsWhatIsAskedFor() {
    const QDateTime now(QDate(2026, 3, 14), QTime(12, 0), universalTime);
    QList<MacProtectionEvent> events = eventsOfYears(now, 2000);
    for (MacProtectionEvent &event : events) {
        if (event.kind == Kind::riskAppMatched && event.appName == u"Zoom"_s)
            event.message = u"Zoom started using the camera."_s;
    }
    InMemoryMacActivityLogStore log(events);
    const std::optional<LogIndex> index = LogIndex::of(log);
    QVERIFY(index && index->size() == events.size());
    const QList<LogQuery> queries{
        {},
        {.since = now.addDays(-3), .until = now.addDays(-1)},
        {.kinds = {LogKind::dryRun, LogKind::actionFailed}},
        {.kinds = {LogKind::deviceUse}},
        {.kinds = {LogKind::riskAppMatched}},
        {.names = {u"Zoom"_s}},
        {.names = {u""_s, u"Otter AI"_s}, .text = u"EVENT 1"_s},
        {.apps = {u"zoom"_s}, .text = u"7"_s},
        {.text = u"id.2"_s},
        {.kinds = {LogKind::privacyModeOn}, .names = {u"=Evil, \"Ltd\"\u202e"_s}, .text = u"evil"_s},
        {.text = u"nowhere"_s},
    };
    for (const LogQuery &query : queries) {
        QList<MacProtectionEvent> found;
        for (const quint32 number : index->find(query))
            found.prepend(index->at(number));
        QCOMPARE(found, query.firstOf(events, events.size()));
    }
    QVERIFY(!index->find({.kinds = {LogKind::deviceUse}}).empty());
    QCOMPARE(index->names().size(), 5);
}

void LogWindowTest::followsWithoutLosingThePlace() {
    const QDateTime now(QDate(2026, 3, 14), QTime(12, 0));
    LogDesk desk(eventsOfYears(now, 100'000));
    const QAbstractItemModelTester tester(&desk.lines(),
                                          QAbstractItemModelTester::FailureReportingMode::QtTest);
    QCOMPARE(desk.whole().property("total").toInt(), 100'000);
    QVERIFY(desk.says(u"Today, Saturday, 14 March 2026"_s));
    desk.goToList();
    desk.press({Qt::Key_End});
    QVERIFY(desk.seenLines().last().endsWith(u" Event 1."_s));
    for (int i = 0; i < 5; ++i)
        desk.press({Qt::Key_PageUp});
    const QStringList read = desk.seenLines();
    QVERIFY(read.size() > 5);
    const int day = desk.lines().count() - 100'000;

    // By another process, a few at first, then more than one looks at, the last of them on the next day.
    for (int i = 0; i < 3; ++i)
        desk.log.append(MacProtectionEvent::create(now, Kind::dryRun, u"New %1."_s.arg(i), u"Signal"_s));
    QTRY_COMPARE_WITH_TIMEOUT(desk.whole().property("total").toInt(), 100'003, 20'000);
    QCOMPARE(desk.seenLines(), read);
    QVERIFY(desk.says(u"3 new events"_s));
    QList<MacProtectionEvent> events = desk.log.recent(200'000);
    for (int i = 3; i < 30; ++i)
        events.prepend(
            MacProtectionEvent::create(i < 29 ? now : now.addDays(1), Kind::dryRun, u"New %1."_s.arg(i)));
    samples::write(desk.log.file(), encodeJson(events));
    QTRY_COMPARE_WITH_TIMEOUT(desk.whole().property("total").toInt(), 100'030, 20'000);
    QCOMPARE(desk.seenLines(), read);
    QVERIFY(desk.says(u"30 new events"_s));
    QCOMPARE(desk.lines().count() - 100'030, day + 1);
    QCOMPARE(desk.whole().property("appNames").toStringList().size(), 6);

    // Who has read the newest goes on to do so.
    desk.press({Qt::Key_Home});
    QVERIFY(!desk.says(u"30 new events"_s));
    QVERIFY(desk.seenLines().at(1).endsWith(u" New 29."_s));
    desk.log.append(MacProtectionEvent::create(now.addDays(1), Kind::dryRun, u"The newest."_s));
    QTRY_COMPARE_WITH_TIMEOUT(desk.whole().property("total").toInt(), 100'031, 20'000);
    QVERIFY(desk.seenLines().at(1).endsWith(u" The newest."_s));
    QVERIFY(!desk.says(u"1 new event"_s));
}

void LogWindowTest::keys() {
    LogDesk desk(eventsOfYears(QDateTime(QDate(2026, 3, 14), QTime(12, 0)), 500));
    const auto copied = [] { return QGuiApplication::clipboard()->text(); };
    desk.type("event 4");
    // 4, 40 to 49 and 400 to 499.
    QVERIFY(desk.says(u"111 of 500 events, 81.9 kB"_s));
    desk.press({Qt::Key_Down, Qt::CTRL | Qt::Key_C});
    QCOMPARE(copied(), u"2026-03-14 11:40:00  Event 499."_s);
    desk.press({Qt::SHIFT | Qt::Key_Down, Qt::SHIFT | Qt::Key_PageDown, Qt::SHIFT | Qt::Key_PageUp,
                Qt::SHIFT | Qt::Key_Up, Qt::SHIFT | Qt::Key_Up});
    QCOMPARE(desk.lines().selectedCount(), 1);
    desk.press({Qt::SHIFT | Qt::Key_Down, Qt::CTRL | Qt::Key_C});
    QCOMPARE(copied(), u"2026-03-14 11:40:00  Event 499.\n2026-03-14 11:30:00  Event 498.\n"_s);
    desk.press({Qt::CTRL | Qt::Key_A});
    QCOMPARE(desk.lines().selectedCount(), 111);

    // The filters, by their lists.
    desk.press({Qt::Key_Backtab, Qt::Key_Return, Qt::Key_End, Qt::Key_Space, Qt::Key_Escape});
    QVERIFY(desk.logWindow().isVisible());
    QCOMPARE(desk.whole().property("apps").value<QList<int>>(), QList<int>{4});
    desk.press({Qt::Key_Backtab, Qt::Key_Down, Qt::Key_Down, Qt::Key_Return, Qt::Key_Escape});
    QCOMPARE(desk.whole().property("kinds").value<QList<int>>(), QList<int>{0});
    desk.press({Qt::CTRL | Qt::Key_F});
    desk.type("nobody");
    QVERIFY(desk.says(u"No event is like that."_s) && desk.seenLines().isEmpty());
    desk.press({Qt::Key_Escape});
    QVERIFY(desk.logWindow().isVisible() && !desk.seenLines().isEmpty());
    desk.type("nobody");
    desk.press({Qt::Key_Tab, Qt::Key_Tab, Qt::Key_Tab, Qt::Key_Space});
    QVERIFY(!desk.whole().isFiltered() && desk.says(u"Event 500."_s));
    desk.press({Qt::Key_Escape});
    QVERIFY(!desk.logWindow().isVisible());
}

void LogWindowTest::emptyAndDamaged() {
    LogDesk desk({});
    QVERIFY(desk.says(u"Nothing has happened yet. What Kestrin notices and does will stand here."_s));
    desk.log.append(samples::event(u"The first."_s));
    QTRY_VERIFY(desk.says(u"The first."_s));
    const QString file = desk.log.file();
    // Whoever puts a log away begins a new one.
    QVERIFY(QFile::rename(file, file + u".old"_s));
    QTRY_VERIFY(desk.says(u"Nothing has happened yet. What Kestrin notices and does will stand here."_s));
    samples::write(file, "[{");
    QTRY_VERIFY(desk.says(
        file + u" does not read as it should; the next change sets it aside, unless you mend it first."_s));
    QVERIFY(QFile::remove(file) && QFile::rename(file + u".old"_s, file));
    QTRY_VERIFY(desk.says(u"The first."_s));
    // As large as it was.
    desk.logWindow().resize(780, 600);
    desk.shown->log.reset();
    desk.openLog();
    QCOMPARE(desk.logWindow().size(), QSize(780, 600));
}

void LogWindowTest::exports() {
    QList<MacProtectionEvent> events = eventsOfYears(QDateTime(QDate(2026, 3, 14), QTime(12, 0)), 3000);
    qsizetype i = 0;
    for (const QString &hostile : {u"=HYPERLINK(\"x\")"_s, u" +1"_s, u"-1"_s, u"@SUM(A1)"_s,
                                   u"a \"b\", c;\td"_s, u"two\r\nlines"_s, u"\u202eback"_s, u"\uff1d1"_s}) {
        events[i].message = hostile;
        events[i++].appName = hostile;
    }
    const LogDesk desk(events);
    QStringList files{desk.log.file()};
    for (int format = 0; format < 4; ++format) {
        files.append(desk.folder.filePath(u"export.%1"_s.arg(format)));
        samples::write(files.last(), "old");
        QCOMPARE(desk.whole().exportTo(files.last(), format, false), QString());
        QVERIFY(samples::isOwnersAlone(files.last()));
    }
    QProcess python;
    python.start(u"python3"_s, QStringList{QStringLiteral(KESTRIN_READ_EXPORTS)} + files);
    QVERIFY(python.waitForFinished());
    QCOMPARE(QString::fromUtf8(python.readAllStandardError()), QString());

    // Whole, or not at all, and nothing is left beside what is in the way.
    const QString folder = desk.folder.filePath(u"folder"_s);
    QVERIFY(QDir().mkpath(folder));
    const QStringList before = QDir(desk.folder.path()).entryList(QDir::AllEntries | QDir::Hidden);
    QVERIFY(desk.whole().exportTo(folder, 3, false).startsWith(folder + u" cannot be written: "_s));
    QCOMPARE(QDir(desk.folder.path()).entryList(QDir::AllEntries | QDir::Hidden), before);
    const QString nowhere = desk.folder.filePath(u"nowhere"_s);
    QCOMPARE(desk.whole().exportTo(nowhere + u"/x.csv"_s, 3, false),
             u"There is no folder "_s + nowhere + u"; choose another one."_s);

    // From the dialog, only what is selected.
    const QString chosen = desk.folder.filePath(u"chosen.csv"_s);
    desk.goToList();
    desk.press({Qt::SHIFT | Qt::Key_Down, Qt::Key_Tab, Qt::Key_Tab, Qt::Key_Return});
    QVERIFY(desk.says(u"Only you will be able to read the file."_s));
    desk.press({Qt::CTRL | Qt::Key_A});
    desk.type(chosen.toUtf8());
    desk.press({Qt::Key_Return});
    QVERIFY(desk.says(u"Saved as "_s + chosen));
    QCOMPARE(samples::contents(chosen).count('\n'), 3);
}

KESTRIN_TEST(LogWindowTest)

#include "tst_logwindow.moc"
