// Jumps of the local time, with the real clock and real zones.

#include "desktop/clock/SystemTimeChangeWatch.h"
#include "foundation/PrivateFile.h"
#include "tests/support/Test.h"
#include "tests/support/Witness.h"

#include <sched.h>
#include <sys/mount.h>

class TimeChangeTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void zones();
    void clock();
};

void TimeChangeTest::zones() {
    const QString known = u"/usr/share/zoneinfo/"_s;
    const QTemporaryDir folder;
    const QString link = folder.filePath(u"localtime"_s);
    const QString zone = folder.filePath(u"zones/mine"_s);
    samples::write(zone, samples::contents(known + u"Asia/Kathmandu"_s));
    QVERIFY(QFile::link(known + u"Europe/Berlin"_s, link));
    qunsetenv("TZ");
    // For this process the folder takes the place of /etc.
    const bool isEtc = ::unshare(CLONE_NEWNS) == 0 &&
                       ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
                       ::mount(qPrintable(folder.path()), "/etc", nullptr, MS_BIND, nullptr) == 0;
    SystemTimeChangeWatch watch(nullptr, link);
    QList<QTime> told; // when it is noon in Greenwich
    connect(&watch, &TimeChangeWatch::changed, this,
            [&] { told.append(QDateTime::fromSecsSinceEpoch(1'767'268'800).time()); });

    // In two steps. There is nothing to tell about the first.
    QVERIFY(QFile::remove(link));
    QVERIFY(samples::everythingIsTold());
    QCOMPARE(told.size(), 0);
    QVERIFY(QFile::link(known + u"Asia/Tokyo"_s, link));
    QTRY_COMPARE(told.size(), 1);
    const QString other = folder.filePath(u"other"_s);
    QVERIFY(QFile::link(zone, other) && std::rename(qPrintable(other), qPrintable(link)) == 0);
    QTRY_COMPARE(told.size(), 2);
    // The rules of the zone itself become other ones.
    QVERIFY(replacePrivateFile(zone, {samples::contents(known + u"America/Lima"_s).toStdString()}));
    QTRY_COMPARE(told.size(), 3);
    if (!isEtc)
        QSKIP("Without CAP_SYS_ADMIN the test cannot make these the zones of the machine.");
    QCOMPARE(told, (QList<QTime>{QTime(21, 0), QTime(17, 45), QTime(7, 0)}));
}

void TimeChangeTest::clock() {
    SystemTimeChangeWatch watch;
    int told = 0;
    connect(&watch, &TimeChangeWatch::changed, this, [&] { ++told; });
    QCoreApplication::processEvents();
    QCOMPARE(told, 0);
    for (int times = 1; times <= 2; ++times) {
        timespec now{};
        ::clock_gettime(CLOCK_REALTIME, &now);
        if (::clock_settime(CLOCK_REALTIME, &now) != 0)
            QSKIP("Setting the clock needs CAP_SYS_TIME.");
        QTRY_VERIFY(told >= times);
    }
}

KESTRIN_TEST(TimeChangeTest)
#include "tst_timechange.moc"
