// What the rows of the lists say, and which of them stay when a list becomes another one.

#include "app/Kestrin/PageRows.h"
#include "app/Kestrin/RecordListModel.h"
#include "design/SymbolTable.h"
#include "tests/support/Samples.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace kestrin;

namespace {

using enum MacRiskCategory;

RiskAppDefinition definition(const QList<MacRiskCategory> &categories, RiskAppAction action = {}) {
    return {u"sample"_s, u"Sample"_s, {}, {}, categories, action};
}

QString idsOf(const RecordListModel &model) {
    QStringList ids;
    const int role = model.roleNames().key("identifier");
    for (int row = 0; row < model.rowCount(); ++row)
        ids.append(model.data(model.index(row), role).toString());
    return ids.join(u' ');
}

QList<PresetRow> presets(const QString &ids) {
    QList<PresetRow> rows;
    const QStringList parts = ids.split(u' ', Qt::SkipEmptyParts);
    for (const QString &id : parts)
        rows.append({id, id, {}, {}, {}, false});
    return rows;
}

} // namespace

class RowsTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void mostTellingCategoryDecides();
    void allowedMatch();
    void events();
    void listChanges();
};

void RowsTest::mostTellingCategoryDecides() {
    const QList<MacRiskCategory> all{camera, microphone, browser, aiTool, screenCapture, videoCall};
    QStringList icons;
    for (qsizetype count = 0; count <= all.size(); ++count) {
        icons.append(DefinitionRow::from(definition(all.first(count)), true).icon);
        QVERIFY2(findSymbol(icons.last()), qPrintable(icons.last()));
    }
    QCOMPARE(icons, (QStringList{u"mic.fill"_s, u"camera.fill"_s, u"camera.fill"_s, u"globe"_s, u"sparkles"_s,
                                 u"rectangle.on.rectangle"_s, u"video.fill"_s}));
    QCOMPARE(DefinitionRow::from(definition(all), true).categories,
             u"Camera / Microphone / Browser / AI tool / Screen capture / Video call"_s);
}

// No application of the catalog is one.
void RowsTest::allowedMatch() {
    const RiskAppMatch allowed{samples::app(u"Sample Beta"_s), definition({}, RiskAppAction::allow)};
    const MatchRow row = MatchRow::from(allowed);
    QCOMPARE(row.name, u"Sample Beta"_s);
    QCOMPARE(row.action, u"Allow"_s);
    QCOMPARE(row.icon, u"eye.fill"_s);
    QCOMPARE(row.tone, static_cast<int>(KestrinTone::Neutral));
    QCOMPARE(actionCountOf({allowed}), 0);
}

void RowsTest::events() {
    using Kind = MacProtectionEventKind;
    const auto row = [](Kind kind, const std::optional<QString> &name = {}) {
        const QDateTime morning(QDate(2026, 3, 14), QTime(9, 26, 53), Qt::LocalTime);
        return EventRow::from(MacProtectionEvent::create(morning, kind, u"A sentence."_s, name));
    };
    QStringList titles;
    for (const Kind kind : {Kind::privacyModeOn, Kind::privacyModeOff, Kind::riskAppMatched,
                            Kind::relaunchDetected, Kind::quitRequested, Kind::dryRun, Kind::actionFailed}) {
        titles.append(row(kind).title);
        QVERIFY2(findSymbol(row(kind).icon), qPrintable(row(kind).icon));
    }
    QCOMPARE(titles,
             (QStringList{u"Privacy Mode On"_s, u"Privacy Mode Off"_s, u"Protected app matched"_s,
                          u"Relaunch detected"_s, u"Quit requested"_s, u"Preview"_s, u"Action failed"_s}));
    QCOMPARE(row(Kind::dryRun, u""_s).title, u""_s);
    QVERIFY(row(Kind::dryRun).time.contains(u"26") && !row(Kind::dryRun).time.contains(u"53"));
}

void RowsTest::listChanges() {
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
        RecordListModel model(PresetRow::staticMetaObject);
        const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        model.setRecords(presets(before));
        const QSignalSpy inserted(&model, &RecordListModel::rowsInserted);
        const QSignalSpy removed(&model, &RecordListModel::rowsRemoved);
        const QSignalSpy changed(&model, &RecordListModel::dataChanged);
        QList<PresetRow> rows = presets(after);
        model.setRecords(rows);
        QCOMPARE(idsOf(model), after);
        QCOMPARE(inserted.size(), insertions);
        QCOMPARE(removed.size(), removals);
        QCOMPARE(changed.size(), 0);
        if (rows.isEmpty())
            continue;
        rows.last().on = true;
        model.setRecords(rows);
        QCOMPARE(changed.size(), 1);
        QCOMPARE(changed.first().first().toModelIndex().row(), rows.size() - 1);
    }
}

QTEST_GUILESS_MAIN(RowsTest)
#include "tst_rows.moc"
