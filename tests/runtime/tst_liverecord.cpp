// What the runtime makes of uses of microphone, camera and screen: who is told, and when.

#include "engine/live/InMemoryDeviceUses.h"
#include "runtime/LiveUse.h"
#include "tests/support/MemoryHome.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace kestrin;
using namespace kestrin::engine;
using namespace kestrin::runtime;
using enum MacRiskCategory;

namespace {

DeviceUse use(const QString &name, MacRiskCategory category, qint32 process) {
    return {category, process, name, std::nullopt, QDateTime(QDate(2026, 3, 14), QTime(11, 0))};
}

const DeviceUse zoomListens = use(u"Zoom"_s, microphone, 10);
const DeviceUse zoomWatches = use(u"Zoom"_s, camera, 10);

struct LiveHome : samples::MemoryHome {
    InMemoryDeviceUses uses;
    MacProtectionRuntime runtime{defaults, surroundings()};
    LiveUse live{defaults, uses, runtime};
    QSignalSpy began{&live, &LiveUse::began};

    /// Everybody has been told.
    static void settle() { QCoreApplication::processEvents(); }
};

} // namespace

class LiveRecordTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void following();
};

void LiveRecordTest::following() {
    LiveHome home;
    QSignalSpy switched(&home.live, &LiveUse::switched);
    QSignalSpy changed(&home.live, &LiveUse::usesChanged);
    QSignalSpy sightChanged(&home.live, &LiveUse::sightChanged);
    home.uses.begin(zoomListens);
    home.live.start();
    // The start takes no time.
    QVERIFY(!home.uses.isWatched());
    home.settle();
    QCOMPARE(home.live.uses(), QList{zoomListens});
    QCOMPARE(changed.count(), 1);
    QCOMPARE(home.began.count(), 0);
    home.uses.begin(zoomWatches);
    home.uses.end(zoomListens);
    const Sight partly{Sight::Extent::partial, u"Somebody is silent."_s, {}, {}};
    home.uses.setSight(partly);
    home.settle();
    QCOMPARE(home.live.uses(), QList{zoomWatches});
    QCOMPARE(home.live.sight(), partly);
    QCOMPARE(changed.count(), 2);
    QCOMPARE(sightChanged.count(), 1);
    QCOMPARE(home.began.count(), 1);
    QCOMPARE(home.began.first().first().value<DeviceUse>(), zoomWatches);

    // As another process stores it.
    home.defaults.setBoolean(LiveUse::key, false);
    QVERIFY(!home.uses.isWatched());
    QVERIFY(home.live.uses().isEmpty());
    QVERIFY(home.live.sight().isFull());
    QCOMPARE(switched.count(), 1);
    QVERIFY(home.live.setOn(true).isKept());
    QCOMPARE(home.live.uses(), QList{zoomWatches});
    QCOMPARE(switched.count(), 2);
    QCOMPARE(changed.count(), 4);
    QCOMPARE(home.began.count(), 1);
}

QTEST_GUILESS_MAIN(LiveRecordTest)
#include "tst_liverecord.moc"
