// Which quit requests the desktop shows.

#include "app/Kestrin/QuitNotices.h"
#include "foundation/Clock.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace kestrin;
using namespace std::chrono_literals;
using Kind = MacProtectionEventKind;

class QuitNoticesTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void onceInTenSeconds();
};

void QuitNoticesTest::onceInTenSeconds() {
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

QTEST_GUILESS_MAIN(QuitNoticesTest)
#include "tst_quitnotices.moc"
