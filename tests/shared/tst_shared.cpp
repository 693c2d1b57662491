// The raw values shared with the companions, and the watch messages.

#include "shared/KestrinSeedData.h"
#include "shared/KestrinWatchBridge.h"

#include <QTest>

#include <limits>

using namespace Qt::StringLiterals;
using namespace kestrin;
using Bridge = KestrinWatchBridge;

class SharedTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void records();
    void messages();
    void typedReading();
};

void SharedTest::records() {
    QStringList kinds;
    for (const RiskKind kind : allCases<RiskKind>())
        kinds.append(rawValue(kind));
    QCOMPARE(kinds, (QStringList{u"mic"_s, u"camera"_s, u"AI"_s, u"browser"_s, u"mic/camera"_s}));
    QCOMPARE(fromRawValue<RiskKind>(u"ai"), std::nullopt);

    const ModePreset focus = KestrinSeedData::modes().at(2);
    QCOMPARE(decodeJson<ModePreset>(encodeJson(focus)), focus);
    const ProtectionDevice watch = KestrinSeedData::devices().at(3);
    QCOMPARE(decodeJson<ProtectionDevice>(encodeJson(watch)), watch);
}

void SharedTest::messages() {
    const QVariantMap off = Bridge::commandPayload(Bridge::Command::setPrivacyMode, false);
    QCOMPARE(off.keys(), (QStringList{u"command"_s, u"privacyModeOn"_s, u"timestamp"_s}));
    QCOMPARE(off.value(u"privacyModeOn"_s), QVariant(false));
    QCOMPARE(Bridge::command(off), Bridge::Command::setPrivacyMode);
    QCOMPARE(Bridge::commandPayload(Bridge::Command::quickCheck).keys(),
             (QStringList{u"command"_s, u"timestamp"_s}));
    for (const QVariant &unusable : QVariantList{{}, u"RequestState"_s, u" requestState"_s, 1})
        QCOMPARE(Bridge::command({{u"command"_s, unusable}}), std::nullopt);

    const QVariantMap state = Bridge::statePayload(true, false, 12, 3, u"a"_s, u"b"_s, true, false);
    QCOMPARE(state.size(), 9);
    QCOMPARE(Bridge::integer(u"checkCount"_s, state, 0), 3);
    QCOMPARE(Bridge::boolean(u"canTogglePrivacyMode"_s, state, true), false);
    QCOMPARE(Bridge::string(u"statusDetail"_s, state, {}), u"b"_s);
    const double now = static_cast<double>(QDateTime::currentMSecsSinceEpoch()) / 1000.0;
    QVERIFY(std::abs(state.value(u"timestamp"_s).toDouble() - now) < 60);
}

void SharedTest::typedReading() {
    const auto read = [](const QVariant &value) { // the defaults are 1, -7 and -
        const QVariantMap map{{u"key"_s, value}};
        return u"%1 %2 %3"_s.arg(Bridge::boolean(u"key"_s, map, true))
            .arg(Bridge::integer(u"key"_s, map, -7))
            .arg(Bridge::string(u"key"_s, map, u"-"_s));
    };
    QCOMPARE(read({}), u"1 -7 -"_s);
    QCOMPARE(read(false), u"0 -7 -"_s);
    QCOMPARE(read(0), u"0 0 -"_s);
    QCOMPARE(read(1.0), u"1 1 -"_s);
    QCOMPARE(read(2), u"1 2 -"_s);
    QCOMPARE(read(0.5), u"1 -7 -"_s);
    QCOMPARE(read(qQNaN()), u"1 -7 -"_s);
    QCOMPARE(read(0x1p63), u"1 -7 -"_s);
    QCOMPARE(read(-0x1p63), u"1 -9223372036854775808 -"_s);
    QCOMPARE(read(std::numeric_limits<quint64>::max()), u"1 -7 -"_s);
    QCOMPARE(read(u"0"_s), u"1 -7 0"_s);
    QCOMPARE(read(QVariantList{0}), u"1 -7 -"_s);
}

QTEST_GUILESS_MAIN(SharedTest)
#include "tst_shared.moc"
