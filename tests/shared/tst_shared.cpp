// The records and texts shared with the companions, and the watch messages.

#include "shared/KestrinSeedData.h"
#include "shared/KestrinWatchBridge.h"

#include <QTest>

#include <limits>

using namespace Qt::StringLiterals;
using namespace kestrin;

class SharedTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void rawValues();
    void seedListsAreConstant();
    void modePresetsRoundTrip();
    void commandMessage();
    void stateMessage();
    void unusableCommands();
    void typedReading_data();
    void typedReading();
};

void SharedTest::rawValues() {
    QCOMPARE(fromRawValue<RiskKind>(u"AI"), RiskKind::ai);
    QCOMPARE(fromRawValue<RiskKind>(u"ai"), std::nullopt);
    QCOMPARE(fromRawValue<RiskKind>(u"mic/camera"), RiskKind::both);
    QCOMPARE(rawValue(ProtectionTone::protected_), u"protected"_s);
    QStringList kinds;
    for (const RiskKind kind : allCases<RiskKind>())
        kinds.append(rawValue(kind));
    QCOMPARE(kinds, (QStringList{u"mic"_s, u"camera"_s, u"AI"_s, u"browser"_s, u"mic/camera"_s}));
}

void SharedTest::seedListsAreConstant() {
    QList<ModePreset> copy = KestrinSeedData::modes();
    copy.first().enabled = false;
    QStringList enabled;
    for (const ModePreset &mode : KestrinSeedData::modes()) {
        if (mode.enabled)
            enabled.append(mode.id);
    }
    QCOMPARE(enabled, (QStringList{u"sleep"_s, u"away"_s, u"manual"_s}));
    QVERIFY(KestrinSeedData::protectedApps().isEmpty());
    QCOMPARE(KestrinSeedData::devices().size(), 4);
    const QDateTime built = KestrinSeedData::activity().first().date;
    for (const ActivityEvent &event : KestrinSeedData::activity())
        QCOMPARE(event.date, built);
}

void SharedTest::modePresetsRoundTrip() {
    const ModePreset focus = KestrinSeedData::modes().at(2);
    QCOMPARE(decodeJson<ModePreset>(encodeJson(focus)), focus);
    const ProtectionDevice watch = KestrinSeedData::devices().at(3);
    QCOMPARE(decodeJson<ProtectionDevice>(encodeJson(watch)), watch);
    QCOMPARE(decodeJson<ProtectionDevice>(encodeJson(watch).replace("\"link\"", "\"Link\"")), std::nullopt);
}

void SharedTest::commandMessage() {
    using Bridge = KestrinWatchBridge;
    const QVariantMap off = Bridge::commandPayload(Bridge::Command::setPrivacyMode, false);
    QCOMPARE(off.keys(), (QStringList{u"command"_s, u"privacyModeOn"_s, u"timestamp"_s}));
    QCOMPARE(off.value(u"privacyModeOn"_s), QVariant(false));
    QCOMPARE(Bridge::command(off), Bridge::Command::setPrivacyMode);

    const QVariantMap check = Bridge::commandPayload(Bridge::Command::quickCheck);
    QCOMPARE(check.keys(), (QStringList{u"command"_s, u"timestamp"_s}));
    QVERIFY(check.value(u"timestamp"_s).toDouble() >= off.value(u"timestamp"_s).toDouble());
}

void SharedTest::stateMessage() {
    const QVariantMap state = KestrinWatchBridge::statePayload(
        true, false, 12, std::numeric_limits<qint64>::max(), u"a"_s, u"b"_s, true, false);
    QCOMPARE(state.size(), 9);
    QCOMPARE(KestrinWatchBridge::integer(u"checkCount"_s, state, 0), std::numeric_limits<qint64>::max());
    QCOMPARE(KestrinWatchBridge::boolean(u"canTogglePrivacyMode"_s, state, true), false);
    QCOMPARE(KestrinWatchBridge::string(u"statusDetail"_s, state, {}), u"b"_s);
    const double now = static_cast<double>(QDateTime::currentMSecsSinceEpoch()) / 1000.0;
    QVERIFY(std::abs(state.value(u"timestamp"_s).toDouble() - now) < 60);
}

void SharedTest::unusableCommands() {
    const QList<QVariantMap> messages{
        {},
        {{u"command"_s, u"RequestState"_s}},
        {{u"command"_s, u" requestState"_s}},
        {{u"command"_s, 1}},
        {{u"command"_s, QStringList{u"requestState"_s}}},
    };
    for (const QVariantMap &message : messages)
        QCOMPARE(KestrinWatchBridge::command(message), std::nullopt);
}

void SharedTest::typedReading_data() {
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<bool>("boolean");   // default true
    QTest::addColumn<qint64>("integer"); // default -7
    QTest::addColumn<QString>("string"); // default "-"

    QTest::newRow("missing") << QVariant() << true << qint64(-7) << u"-"_s;
    QTest::newRow("false") << QVariant(false) << false << qint64(-7) << u"-"_s;
    QTest::newRow("number 0") << QVariant(0) << false << qint64(0) << u"-"_s;
    QTest::newRow("number 1.0") << QVariant(1.0) << true << qint64(1) << u"-"_s;
    QTest::newRow("number 2") << QVariant(2) << true << qint64(2) << u"-"_s;
    QTest::newRow("0.5") << QVariant(0.5) << true << qint64(-7) << u"-"_s;
    QTest::newRow("nan") << QVariant(qQNaN()) << true << qint64(-7) << u"-"_s;
    QTest::newRow("2^63") << QVariant(0x1p63) << true << qint64(-7) << u"-"_s;
    QTest::newRow("-2^63") << QVariant(-0x1p63) << true << std::numeric_limits<qint64>::min() << u"-"_s;
    QTest::newRow("unsigned") << QVariant(std::numeric_limits<quint64>::max()) << true << qint64(-7)
                              << u"-"_s;
    QTest::newRow("digits") << QVariant(u"0"_s) << true << qint64(-7) << u"0"_s;
    QTest::newRow("list") << QVariant(QVariantList{0}) << true << qint64(-7) << u"-"_s;
}

void SharedTest::typedReading() {
    QFETCH(QVariant, value);
    const QString key = u"key"_s;
    const QVariantMap map = value.isValid() ? QVariantMap{{key, value}} : QVariantMap{};
    QTEST(KestrinWatchBridge::boolean(key, map, true), "boolean");
    QTEST(KestrinWatchBridge::integer(key, map, -7), "integer");
    QTEST(KestrinWatchBridge::string(key, map, u"-"_s), "string");
}

QTEST_GUILESS_MAIN(SharedTest)
#include "tst_shared.moc"
