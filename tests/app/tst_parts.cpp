// What of the program needs no window: which rows stay when a list becomes another one, and which quit
// requests the desktop shows.

#include "app/Kestrin/program/QuitNotices.h"
#include "app/Kestrin/rows/RecordListModel.h"
#include "foundation/Clock.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace kestrin;
using namespace kestrin::foundation;
using namespace kestrin::engine;
using namespace kestrin::app;
using namespace std::chrono_literals;

namespace {

QString idsOf(const RecordListModel &model) {
    QStringList ids;
    const int role = model.roleNames().key("identifier");
    for (int row = 0; row < model.rowCount(); ++row)
        ids.append(model.data(model.index(row), role).toString());
    return ids.join(u' ');
}

QList<PageRow> rowsOf(const QString &ids) {
    QList<PageRow> rows;
    const QStringList parts = ids.split(u' ', Qt::SkipEmptyParts);
    for (const QString &id : parts)
        rows.append({.id = id});
    return rows;
}

} // namespace

class PartsTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void listChanges();
    void noticesOnceInTenSeconds();
    void namesFromOutside();
};

void PartsTest::listChanges() {
    struct Case {
        QString before;
        QString after;
        int insertions;
        int removals;
    };
    for (const auto &[before, after, insertions, removals] : {
             Case{u"a b c"_s, u"n a b"_s, 1, 1},
             Case{u"a b c"_s, u"c a b"_s, 0, 0},
             Case{u"a b c"_s, u"b"_s, 0, 2},
             Case{u""_s, u"a b"_s, 2, 0},
             Case{u"a b"_s, u""_s, 0, 2},
             Case{u"a a b"_s, u"b a"_s, 0, 1},
             Case{u"a b"_s, u"b b a"_s, 1, 0},
         }) {
        RecordListModel model;
        const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        model.setRows(rowsOf(before));
        const QSignalSpy inserted(&model, &RecordListModel::rowsInserted);
        const QSignalSpy removed(&model, &RecordListModel::rowsRemoved);
        const QSignalSpy changed(&model, &RecordListModel::dataChanged);
        QList<PageRow> rows = rowsOf(after);
        model.setRows(rows);
        QCOMPARE(idsOf(model), after);
        QCOMPARE(inserted.size(), insertions);
        QCOMPARE(removed.size(), removals);
        QCOMPARE(changed.size(), 0);
        if (rows.isEmpty())
            continue;
        rows.last().on = true;
        model.setRows(rows);
        QCOMPARE(changed.size(), 1);
        QCOMPARE(changed.first().first().toModelIndex().row(), rows.size() - 1);
    }
}

void PartsTest::noticesOnceInTenSeconds() {
    using Kind = MacProtectionEventKind;
    QuitNotices notices;
    const QuitNotices::Time start{};
    const auto isDue = [&](Kind kind, const std::optional<QString> &name, std::chrono::milliseconds after) {
        return notices.isDue(MacProtectionEvent::create(systemTime(), kind, u"x"_s, name), start + after);
    };
    QVERIFY(isDue(Kind::quitRequested, u"Zoom"_s, 0s));
    QVERIFY(isDue(Kind::quitRequested, u"Otter AI"_s, 1s));
    QVERIFY(!isDue(Kind::quitRequested, u"Zoom"_s, 9999ms));
    // Counted from the one that was shown.
    QVERIFY(isDue(Kind::quitRequested, u"Zoom"_s, 10s));
    QVERIFY(!isDue(Kind::quitRequested, u"Otter AI"_s, 10s));
    // Enforcing was switched on; somebody could not be asked; nobody was.
    QVERIFY(!isDue(Kind::quitRequested, {}, 60s));
    QVERIFY(!isDue(Kind::actionFailed, u"Zoom"_s, 60s));
    QVERIFY(!isDue(Kind::dryRun, u"Zoom"_s, 60s));
}

void PartsTest::namesFromOutside() {
    struct Case {
        QString name;
        QString shown;
    };
    for (const Case &each : {Case{u"Zoom"_s, u"Zoom"_s}, Case{{}, {}},
                             Case{u"A\u202egpj\n\0."_s, u"A\\u202egpj\\u000a\\u0000."_s},
                             // Kept apart, and only with controls of our own.
                             Case{u"\u05d6\u05d5\u05dd!"_s, u"\u2068\u05d6\u05d5\u05dd!\u2069"_s},
                             Case{u"\u05d6\u2069!"_s, u"\u2068\u05d6\\u2069!\u2069"_s}}) {
        const auto event = MacProtectionEvent::create(systemTime(), MacProtectionEventKind::quitRequested,
                                                      each.name + u" was asked\n."_s, each.name);
        const PageRow row = rowOf(event);
        QCOMPARE(row.title, each.shown);
        QCOMPARE(row.subtitle, each.shown + u" was asked\\u000a."_s);
    }
}

QTEST_GUILESS_MAIN(PartsTest)
#include "tst_parts.moc"
