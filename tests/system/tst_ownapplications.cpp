// An application of the user's own, from being added until it is removed: kestrinctl and its watch over real
// windows.

#include "tests/support/SampleApp.h"
#include "tests/support/TestClass.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace kestrin;
using samples::SampleApp;

class OwnApplicationsTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase();
    void keptClosedUntilRemoved_data();
    void keptClosedUntilRemoved();

  private:
    std::unique_ptr<samples::Program> m_watch;
};

namespace {

QByteArray call(const QStringList &words) {
    return samples::Program(QStringList{QStringLiteral(KESTRINCTL)} + words).output();
}

bool sees(qint32 pid) {
    const QJsonArray apps = QJsonDocument::fromJson(call({u"apps"_s, u"--json"_s})).array();
    return std::any_of(apps.cbegin(), apps.cend(),
                       [&](const QJsonValue &app) { return app[u"processIdentifier"_s].toInt() == pid; });
}

} // namespace

void OwnApplicationsTest::initTestCase() {
    samples::installEntry(u"org.example.Notes"_s, u"Own Notes"_s);
    // Some desktops tell only whom their user has allowed.
    if (const QByteArray kind = qgetenv("KESTRIN_DESKTOP_KIND"); kind == "kwin" || kind.startsWith("gnome"))
        QVERIFY(!call({u"desktop"_s, u"enable"_s}).isEmpty());
    call({u"schedule"_s, u"disable"_s, u"sleep"_s, u"away"_s});
    call({u"on"_s});
    call({u"enforce"_s, u"on"_s});
    m_watch = std::make_unique<samples::Program>(QStringList{QStringLiteral(KESTRINCTL), u"watch"_s});
    QTRY_VERIFY(call({u"status"_s, u"--json"_s}).contains(R"("monitorLabel": "Enforcing")"));
}

void OwnApplicationsTest::keptClosedUntilRemoved_data() {
    QTest::addColumn<QString>("options");
    QTest::newRow("X11") << u"--class x/org.example.Notes"_s;
    if (!qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
        QTest::newRow("Wayland") << u"--wayland --class x/org.example.Notes"_s;
}

void OwnApplicationsTest::keptClosedUntilRemoved() {
    QFETCH(QString, options);
    const SampleApp first(options);
    QTRY_COMPARE(first.said(u"mapped 1"_s), 1);
    QTRY_VERIFY(sees(first.pid()));
    QVERIFY(call({u"catalog"_s, u"add"_s, u"--running"_s, u"own notes"_s})
                .startsWith("Own Notes is in the catalog as own-notes, and protected.\n"));
    // As it was with the others, choosing asks nobody; a check does.
    QVERIFY(first.isRunning());
    QVERIFY(call({u"check"_s}).contains("Asked Own Notes to quit."));
    QTRY_COMPARE(first.said(u"asked 1"_s), 1);
    QTRY_VERIFY(!first.isRunning());
    // The watch has been running all the time.
    const SampleApp again(options);
    QTRY_COMPARE(again.said(u"asked 1"_s), 1);
    QTRY_VERIFY(!again.isRunning());
    QVERIFY(QTest::qWaitFor([this] {
        return m_watch->canReadLine() &&
               m_watch->readLine().contains("Own Notes relaunched while Privacy Mode is on.");
    }));
    call({u"catalog"_s, u"remove"_s, u"own-notes"_s});
    const SampleApp left(options);
    QTRY_VERIFY(sees(left.pid()));
    // Whoever comes after it is asked, so the watch has seen this one too.
    const SampleApp zoom(QString(options).replace(u"org.example.Notes"_s, u"zoom"_s));
    QTRY_COMPARE(zoom.said(u"asked 1"_s), 1);
    QVERIFY(left.isRunning() && left.said(u"asked 1"_s) == 0);
}

KESTRIN_TEST(OwnApplicationsTest)
#include "tst_ownapplications.moc"
