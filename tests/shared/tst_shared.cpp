// The watch messages, as the companions send and read them.

#include "shared/KestrinWatchBridge.h"
#include "tests/support/Test.h"

using namespace kestrin::shared;
using Bridge = KestrinWatchBridge;

class SharedTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void messages();
    void typedReading();
};

void SharedTest::messages() {
    const QVariantMap off = Bridge::commandPayload(Bridge::Command::setPrivacyMode, false);
    QCOMPARE(off.keys(), (QStringList{u"command"_s, u"privacyModeOn"_s, u"timestamp"_s}));
    QCOMPARE(off.value(u"privacyModeOn"_s), QVariant(false));
    QCOMPARE(Bridge::command(off), Bridge::Command::setPrivacyMode);
    QCOMPARE(Bridge::commandPayload(Bridge::Command::quickCheck).keys(),
             (QStringList{u"command"_s, u"timestamp"_s}));
    for (const QVariant &unusable : QVariantList{{}, u"RequestState"_s, QByteArray("requestState"), 1})
        QCOMPARE(Bridge::command({{u"command"_s, unusable}}), std::nullopt);

    QVariantMap state = Bridge::statePayload(true, false, 12, 3, u"a"_s, u"b"_s, true, false);
    const double now = static_cast<double>(QDateTime::currentMSecsSinceEpoch()) / 1000.0;
    QVERIFY(std::abs(state.take(u"timestamp"_s).toDouble() - now) < 60);
    QCOMPARE(state, (QVariantMap{{u"privacyModeOn"_s, true},
                                 {u"canTogglePrivacyMode"_s, false},
                                 {u"protectedAppCount"_s, Q_INT64_C(12)},
                                 {u"checkCount"_s, Q_INT64_C(3)},
                                 {u"statusTitle"_s, u"a"_s},
                                 {u"statusDetail"_s, u"b"_s},
                                 {u"requiresSetup"_s, true},
                                 {u"hapticFeedbackEnabled"_s, false}}));
}

void SharedTest::typedReading() {
    const auto read = [](const QVariant &value) { // the defaults are 1, -7 and -
        const QVariantMap map{{u"key"_s, value}};
        return u"%1 %2 %3"_s.arg(Bridge::boolean(u"key"_s, map, true))
            .arg(Bridge::integer(u"key"_s, map, -7))
            .arg(Bridge::string(u"key"_s, map, u"-"_s));
    };
    QCOMPARE(read(false), u"0 -7 -"_s);
    QCOMPARE(read(0), u"0 0 -"_s);
    QCOMPARE(read(1.0F), u"1 1 -"_s);
    QCOMPARE(read(2U), u"1 2 -"_s);
    QCOMPARE(read(-0x1p63), u"1 -9223372036854775808 -"_s);
    QCOMPARE(read(u"0"_s), u"1 -7 0"_s);
    for (const QVariant &other : QVariantList{
             {}, 0.5, qQNaN(), qInf(), 0x1p63, Q_UINT64_C(1) << 63, QByteArray("0"), QVariantList{0}})
        QCOMPARE(read(other), u"1 -7 -"_s);
}

KESTRIN_TEST(SharedTest)
#include "tst_shared.moc"
