// How often an application that shows itself again counts as launched.

#include "desktop/applications/LaunchLimit.h"

#include <QTest>

using namespace kestrin::desktop;
using namespace std::chrono_literals;

class LaunchLimitTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void onceInFiveSecondsAndNothingSlipsThrough();
    void aNewProcessIsAlwaysLaunched();
};

void LaunchLimitTest::onceInFiveSecondsAndNothingSlipsThrough() {
    const LaunchLimit::Time start;
    LaunchLimit limit;
    int launches = 0;
    // It comes and goes for a minute.
    for (auto time = 0ms; time < 60s; time += 100ms) {
        if (limit.admits(7, 1, start + time))
            ++launches;
        QVERIFY(limit.takeDue(start + time).isEmpty());
    }
    QCOMPARE(launches, 12);
    QCOMPARE(limit.nextDue(), start + 60s);
    QVERIFY(limit.takeDue(start + 60s - 1ms).isEmpty());
    QCOMPARE(limit.takeDue(start + 60s), QList<qint32>{7});
    QVERIFY(!limit.nextDue());
    QVERIFY(limit.admits(7, 1, start + 60s));
}

void LaunchLimitTest::aNewProcessIsAlwaysLaunched() {
    const LaunchLimit::Time start;
    LaunchLimit limit;
    for (quint64 began = 1; began <= 3; ++began) {
        QVERIFY(limit.admits(7, began, start));
        QVERIFY(!limit.admits(7, began, start + 1ms));
    }
    QVERIFY(limit.admits(8, 3, start + 1s));
    // Who is due first need not be held back first.
    QVERIFY(!limit.admits(8, 3, start + 2s));
    QCOMPARE(limit.nextDue(), start + 5s);
    QCOMPARE(limit.takeDue(start + 5s), QList<qint32>{7});
    QCOMPARE(limit.nextDue(), start + 6s);
}

QTEST_GUILESS_MAIN(LaunchLimitTest)
#include "tst_launchlimit.moc"
