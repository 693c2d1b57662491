// What the rows of the lists say, and which of them stay when a list becomes another one.

#include "app/Kestrin/MacConfiguration.h"
#include "app/Kestrin/MacSection.h"
#include "app/Kestrin/PageRows.h"
#include "app/Kestrin/RecordListModel.h"
#include "design/SymbolTable.h"
#include "foundation/Clock.h"
#include "tests/support/Samples.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace kestrin;

namespace {

using Kind = MacProtectionEventKind;
using enum MacRiskCategory;

constexpr int tone(KestrinTone value) {
    return static_cast<int>(value);
}

RiskAppDefinition definition(const QList<MacRiskCategory> &categories, RiskAppAction action) {
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
    void definitionIcons_data();
    void definitionIcons();
    void actions_data();
    void actions();
    void events_data();
    void events();
    void eventTitles();
    void devices();
    void actionCount();
    void symbolsExist();
    void links();
    void listChanges_data();
    void listChanges();
};

void RowsTest::definitionIcons_data() {
    QTest::addColumn<QList<MacRiskCategory>>("categories");
    QTest::addColumn<QString>("icon");
    QTest::addColumn<QString>("line");
    const auto row = [](const char *name, const QList<MacRiskCategory> &categories, const QString &icon,
                        const QString &line) { QTest::newRow(name) << categories << icon << line; };
    row("everything", {microphone, camera, browser, aiTool, screenCapture, videoCall}, u"video.fill"_s,
        u"Microphone / Camera / Browser / AI tool / Screen capture / Video call"_s);
    row("without calls", {camera, browser, aiTool, screenCapture}, u"rectangle.on.rectangle"_s,
        u"Camera / Browser / AI tool / Screen capture"_s);
    row("AI and browser", {browser, aiTool}, u"sparkles"_s, u"Browser / AI tool"_s);
    row("browser and camera", {camera, browser}, u"globe"_s, u"Camera / Browser"_s);
    row("camera first", {camera, microphone}, u"camera.fill"_s, u"Camera / Microphone"_s);
    row("microphone", {microphone}, u"mic.fill"_s, u"Microphone"_s);
    row("none", {}, u"mic.fill"_s, u""_s);
}

void RowsTest::definitionIcons() {
    QFETCH(const QList<MacRiskCategory>, categories);
    const DefinitionRow row = DefinitionRow::from(definition(categories, RiskAppAction::quit), true);
    QTEST(row.icon, "icon");
    QTEST(row.categories, "line");
    QVERIFY(row.selected);
}

void RowsTest::actions_data() {
    QTest::addColumn<RiskAppAction>("action");
    QTest::addColumn<QString>("label");
    QTest::addColumn<int>("shownTone");
    QTest::addColumn<QString>("matchIcon");
    QTest::newRow("allow") << RiskAppAction::allow << u"Allow"_s << tone(KestrinTone::Neutral)
                           << u"eye.fill"_s;
    QTest::newRow("quit") << RiskAppAction::quit << u"Quit"_s << tone(KestrinTone::Attention)
                          << u"xmark.circle.fill"_s;
    QTest::newRow("keep closed") << RiskAppAction::keepClosed << u"Keep closed"_s << tone(KestrinTone::Risk)
                                 << u"lock.fill"_s;
}

void RowsTest::actions() {
    QFETCH(const RiskAppAction, action);
    const RiskAppDefinition sample = definition({browser}, action);
    const DefinitionRow row = DefinitionRow::from(sample, false);
    QTEST(row.action, "label");
    QTEST(row.tone, "shownTone");
    const MatchRow match = MatchRow::from({samples::app(u"Sample Beta"_s, 7), sample});
    QCOMPARE(match.name, u"Sample Beta"_s);
    QCOMPARE(match.id, u"sample-7"_s);
    QTEST(match.action, "label");
    QTEST(match.tone, "shownTone");
    QTEST(match.icon, "matchIcon");
}

void RowsTest::events_data() {
    QTest::addColumn<Kind>("kind");
    QTest::addColumn<QString>("icon");
    QTest::addColumn<int>("shownTone");
    QTest::addColumn<QString>("title");
    const auto row = [](const char *name, Kind kind, const QString &icon, KestrinTone shown,
                        const QString &title) {
        QTest::newRow(name) << kind << icon << tone(shown) << title;
    };
    row("on", Kind::privacyModeOn, u"checkmark.shield.fill"_s, KestrinTone::Protected, u"Privacy Mode On"_s);
    row("off", Kind::privacyModeOff, u"pause.circle.fill"_s, KestrinTone::Attention, u"Privacy Mode Off"_s);
    row("match", Kind::riskAppMatched, u"scope"_s, KestrinTone::Protected, u"Protected app matched"_s);
    row("relaunch", Kind::relaunchDetected, u"arrow.clockwise.circle.fill"_s, KestrinTone::Link,
        u"Relaunch detected"_s);
    row("quit", Kind::quitRequested, u"xmark.circle.fill"_s, KestrinTone::Risk, u"Quit requested"_s);
    row("preview", Kind::dryRun, u"eye.fill"_s, KestrinTone::Link, u"Preview"_s);
    row("failure", Kind::actionFailed, u"exclamationmark.triangle.fill"_s, KestrinTone::Attention,
        u"Action failed"_s);
}

void RowsTest::events() {
    QFETCH(const Kind, kind);
    const EventRow row = EventRow::from(MacProtectionEvent::create(systemTime(), kind, u"A sentence."_s));
    QTEST(row.icon, "icon");
    QTEST(row.tone, "shownTone");
    QTEST(row.title, "title");
    QCOMPARE(row.message, u"A sentence."_s);
}

void RowsTest::eventTitles() {
    const QDateTime morning(QDate(2026, 3, 14), QTime(9, 26, 53), Qt::LocalTime);
    const auto titled = [&](const std::optional<QString> &name) {
        return EventRow::from(MacProtectionEvent::create(morning, Kind::dryRun, u"A sentence."_s, name));
    };
    QCOMPARE(titled(u"Zoom"_s).title, u"Zoom"_s);
    QCOMPARE(titled(u""_s).title, u""_s);
    QVERIFY(titled(u"Zoom"_s).time.contains(u"26"));
    QVERIFY(!titled(u"Zoom"_s).time.contains(u"53"));
}

void RowsTest::devices() {
    const DeviceRow row = DeviceRow::from({u"watch"_s, u"Apple Watch"_s, u"Detail"_s, u"applewatch"_s,
                                           u"Companion"_s, ProtectionTone::neutral});
    const DeviceRow expected{u"watch"_s,      u"Apple Watch"_s, u"Detail"_s,
                             u"applewatch"_s, u"Companion"_s,   tone(KestrinTone::Neutral)};
    QCOMPARE(row, expected);
}

void RowsTest::actionCount() {
    QList<RiskAppMatch> matches;
    for (const RiskAppAction action : {RiskAppAction::allow, RiskAppAction::quit, RiskAppAction::keepClosed})
        matches.append({samples::app(u"Sample"_s), definition({}, action)});
    QCOMPARE(actionCountOf(matches), 2);
}

void RowsTest::symbolsExist() {
    for (const SectionRow &row : sectionRows())
        QVERIFY2(findSymbol(row.icon), qPrintable(row.icon));
    for (const RiskAppDefinition &each : RiskAppCatalog::defaultDefinitions())
        QVERIFY2(findSymbol(DefinitionRow::from(each, true).icon), qPrintable(each.id));
}

void RowsTest::links() {
    QCOMPARE(MacConfiguration::privacyURL().path(), u"/privacy"_s);
    QCOMPARE(MacConfiguration::supportURL().path(), u"/support"_s);
    QCOMPARE(MacConfiguration::supportURL().scheme(), u"https"_s);
}

void RowsTest::listChanges_data() {
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");
    QTest::addColumn<int>("insertions");
    QTest::addColumn<int>("removals");
    const auto row = [](const QString &before, const QString &after, int insertions, int removals) {
        QTest::addRow("%s -> %s", qPrintable(before), qPrintable(after))
            << before << after << insertions << removals;
    };
    row(u"a b c"_s, u"a b c"_s, 0, 0);
    row(u"a b c"_s, u"n a b"_s, 1, 1);
    row(u"a b c"_s, u"c a b"_s, 0, 0);
    row(u"a b c"_s, u"b"_s, 0, 2);
    row(u""_s, u"a b"_s, 2, 0);
    row(u"a b"_s, u""_s, 0, 2);
    row(u"a a b"_s, u"b a"_s, 0, 1);
    row(u"a b"_s, u"b b a"_s, 1, 0);
}

void RowsTest::listChanges() {
    QFETCH(const QString, before);
    QFETCH(const QString, after);
    RecordListModel model(PresetRow::staticMetaObject);
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    model.setRecords(presets(before));
    QCOMPARE(idsOf(model), before);
    QSignalSpy inserted(&model, &RecordListModel::rowsInserted);
    QSignalSpy removed(&model, &RecordListModel::rowsRemoved);
    QSignalSpy changed(&model, &RecordListModel::dataChanged);
    model.setRecords(presets(after));
    QCOMPARE(idsOf(model), after);
    QTEST(static_cast<int>(inserted.size()), "insertions");
    QTEST(static_cast<int>(removed.size()), "removals");
    QCOMPARE(changed.size(), 0);
    QList<PresetRow> switched = presets(after);
    if (switched.isEmpty())
        return;
    switched.last().on = true;
    model.setRecords(switched);
    QCOMPARE(changed.size(), 1);
    QCOMPARE(changed.first().first().toModelIndex().row(), switched.size() - 1);
}

QTEST_GUILESS_MAIN(RowsTest)
#include "tst_rows.moc"
