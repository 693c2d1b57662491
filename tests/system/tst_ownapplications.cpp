// An application of the user's own is kept closed: kestrinctl and its watch over real windows.

#include "tests/support/SampleApp.h"
#include "tests/support/TestClass.h"

using namespace Qt::StringLiterals;
using namespace kestrin;
using samples::SampleApp;

class OwnApplicationsTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase();
    void keptClosed_data();
    void keptClosed();

  private:
    std::unique_ptr<samples::Program> m_watch;
};

namespace {

QByteArray call(const QStringList &words) {
    return samples::Program(QStringList{QStringLiteral(KESTRINCTL)} + words).output();
}

bool sees(qint32 pid) {
    return call({u"apps"_s}).contains('\n' + QByteArray::number(pid) + ' ');
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

void OwnApplicationsTest::keptClosed_data() {
    QTest::addColumn<QString>("options");
    QTest::newRow("X11") << u"--class x/org.example.Notes"_s;
    if (!qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
        QTest::newRow("Wayland") << u"--wayland --class x/org.example.Notes"_s;
}

void OwnApplicationsTest::keptClosed() {
    QFETCH(QString, options);
    const SampleApp first(options);
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
    call({u"catalog"_s, u"remove"_s, u"own-notes"_s});
}

KESTRIN_TEST(OwnApplicationsTest)
#include "tst_ownapplications.moc"
