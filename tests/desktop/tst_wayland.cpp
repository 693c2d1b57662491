// What compositors tell of windows, also those that say nonsense, too much, or nothing any more. What honest
// ones tell is tested on real desktops.

#include "desktop/wayland/PlasmaWindows.h"
#include "desktop/wayland/WlrToplevels.h"
#include "tests/support/FakeCompositor.h"
#include "tests/support/Test.h"

#include <QElapsedTimer>

#include <wayland-util.h>
#include <wlr-foreign-toplevel-management-server-protocol.h>

using samples::FakeCompositor;

namespace {

wl_argument text(const char *value) {
    wl_argument argument{};
    argument.s = value;
    return argument;
}

wl_argument number(quint32 value) {
    wl_argument argument{};
    argument.u = value;
    return argument;
}

/// A folder for a compositor's socket, a source that talks to it, and what the source tells.
struct Conversation {
    QTemporaryDir folder;
    QByteArray path = QFile::encodeName(folder.filePath(u"wayland-0"_s));
    std::unique_ptr<FakeCompositor> compositor = std::make_unique<FakeCompositor>(path);
    WlrToplevels source{path};
    QSignalSpy changed{&source, &WindowSource::changed};
    QSignalSpy lost{&source, &WindowSource::lost};

    /// Afterwards the compositor knows whom to tell.
    bool open() { return source.open(Deadline(desktopPatience)) && windows(); }
    std::optional<QList<SourceWindow>> windows() { return source.windows(Deadline(desktopPatience)); }
    QStringList appIds() {
        const std::optional<QList<SourceWindow>> all = windows();
        if (!all)
            return {u"no answer"_s};
        QStringList ids;
        for (const SourceWindow &window : *all)
            ids.append(window.claims.className);
        return ids;
    }
    bool close(qsizetype window) {
        return source.close({windows().value().at(window)}, Deadline(desktopPatience));
    }
};

} // namespace

class WaylandTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void events();
    void windowsComeAndGo();
    void silence();
    void endings_data();
    void endings();
    void flood();
};

void WaylandTest::events() {
    using Read = WindowNews (*)(std::string_view, const wl_argument *, SourceWindow &);
    constexpr Read plasma = PlasmaWindows::read;
    constexpr Read wlr = WlrToplevels::read;
    const QByteArray longId(4000, 'a');
    const auto window = [](qint32 process, const QString &name, const QString &instance, bool isRegular) {
        return SourceWindow{0, process, {instance, name, {}, {}, {}}, isRegular};
    };
    struct Case {
        Read read;
        std::string_view event;
        wl_argument argument;
        WindowNews news;
        SourceWindow expected;
    };
    const Case cases[] = {
        {plasma, "app_id_changed", text("zoom"), WindowNews::fact, window(0, u"zoom"_s, {}, true)},
        {plasma, "app_id_changed", text("\xFFx"), WindowNews::fact, window(0, u"\uFFFDx"_s, {}, true)},
        {plasma, "app_id_changed", text(nullptr), WindowNews::fact, window(0, {}, {}, true)},
        {plasma, "app_id_changed", text(longId.constData()), WindowNews::fact,
         window(0, QString(1024, u'a'), {}, true)},
        {plasma, "resource_name_changed", text("xterm"), WindowNews::fact, window(0, {}, u"xterm"_s, true)},
        {plasma, "pid_changed", number(12), WindowNews::fact, window(12, {}, {}, true)},
        {plasma, "pid_changed", number(0xFFFFFFFF), WindowNews::fact, window(0, {}, {}, true)},
        {plasma, "state_changed", number(1 << 12 | 1), WindowNews::fact, window(0, {}, {}, false)},
        {plasma, "state_changed", number(1 << 18), WindowNews::fact, window(0, {}, {}, true)},
        {plasma, "title_changed", text("secret"), WindowNews::nothing, window(0, {}, {}, true)},
        {plasma, "initial_state", {}, WindowNews::complete, window(0, {}, {}, true)},
        {plasma, "unmapped", {}, WindowNews::gone, window(0, {}, {}, true)},
        {wlr, "app_id", text("zoom"), WindowNews::pending, window(0, u"zoom"_s, {}, true)},
        {wlr, "title", text("secret"), WindowNews::nothing, window(0, {}, {}, true)},
        {wlr, "done", {}, WindowNews::complete, window(0, {}, {}, true)},
        {wlr, "closed", {}, WindowNews::gone, window(0, {}, {}, true)},
    };
    for (const Case &row : cases) {
        SourceWindow read;
        QVERIFY2(row.read(row.event, &row.argument, read) == row.news, row.event.data());
        QVERIFY2(read == row.expected, row.event.data());
    }
}

void WaylandTest::windowsComeAndGo() {
    Conversation talk;
    QVERIFY(!talk.windows());
    QVERIFY(talk.open() && talk.open());
    QCOMPARE(talk.appIds(), QStringList());
    talk.compositor->announce("first");
    talk.compositor->announce("unfinished", false);
    talk.compositor->announce("second");
    QTRY_COMPARE(talk.changed.size(), 1);
    QCOMPARE(talk.appIds(), (QStringList{u"first"_s, u"second"_s}));

    // An id counts when the window is complete again. What is repeated, and what changes nothing that we want
    // to know, is not told.
    talk.changed.clear();
    talk.compositor->tell(0, [](wl_resource *window) {
        zwlr_foreign_toplevel_handle_v1_send_app_id(window, "renamed");
        zwlr_foreign_toplevel_handle_v1_send_title(window, "title");
    });
    QCOMPARE(talk.appIds(), (QStringList{u"first"_s, u"second"_s}));
    talk.compositor->tell(2, [](wl_resource *window) {
        for (int i = 0; i < 50; ++i)
            zwlr_foreign_toplevel_handle_v1_send_done(window);
    });
    QCOMPARE(talk.appIds(), (QStringList{u"first"_s, u"second"_s}));
    talk.compositor->tell(0, zwlr_foreign_toplevel_handle_v1_send_done);
    QTRY_COMPARE(talk.changed.size(), 1);
    QCOMPARE(talk.appIds(), (QStringList{u"renamed"_s, u"second"_s}));

    QVERIFY(talk.close(1));
    QCOMPARE(talk.compositor->closed(), QList<qsizetype>{2});
    const SourceWindow gone = talk.windows().value().at(0);
    talk.compositor->tell(0, zwlr_foreign_toplevel_handle_v1_send_closed);
    QTRY_COMPARE(talk.appIds(), QStringList{u"second"_s});
    QVERIFY(!talk.source.close({gone}, Deadline(desktopPatience)));
    QCOMPARE(talk.compositor->objects(), 2);
}

void WaylandTest::silence() {
    Conversation talk;
    QVERIFY(talk.open());
    talk.compositor->announce("first");
    QCOMPARE(talk.appIds(), QStringList{u"first"_s});
    talk.compositor->setSilent(true);
    WlrToplevels other(talk.path);
    QElapsedTimer timer;
    timer.start();
    QVERIFY(!talk.source.windows(Deadline(100ms)));
    QVERIFY(!talk.source.close({{1, 0, {}, true}}, Deadline(100ms)));
    QVERIFY(!other.open(Deadline(100ms)));
    QVERIFY(timer.elapsed() < 2000);
    // The same conversation goes on, and whoever was not answered hears of it.
    talk.changed.clear();
    talk.compositor->setSilent(false);
    QTRY_COMPARE(talk.changed.size(), 1);
    QCOMPARE(talk.appIds(), QStringList{u"first"_s});
    QVERIFY(talk.lost.isEmpty());
}

void WaylandTest::endings_data() {
    QTest::addColumn<std::function<void(Conversation &)>>("end");
    using End = std::function<void(Conversation &)>;
    QTest::newRow("death") << End([](Conversation &talk) { talk.compositor.reset(); });
    QTest::newRow("nonsense") << End([](Conversation &talk) { talk.compositor->talkNonsense(); });
    QTest::newRow("end of the list") << End([](Conversation &talk) { talk.compositor->endManager(); });
}

void WaylandTest::endings() {
    QFETCH(const std::function<void(Conversation &)>, end);
    for (const bool isAsking : {false, true}) {
        Conversation talk;
        QVERIFY(talk.open());
        talk.compositor->announce("first");
        QCOMPARE(talk.appIds(), QStringList{u"first"_s});
        end(talk);
        // Whoever asks meanwhile gets no answer, and whoever listens hears of it all the same.
        if (isAsking)
            QTRY_VERIFY(!talk.windows());
        QTRY_COMPARE(talk.lost.size(), 1);
        QVERIFY(!talk.windows());
        talk.compositor.reset();
        QVERIFY(!talk.open());
        talk.compositor = std::make_unique<FakeCompositor>(talk.path);
        QVERIFY(talk.open());
        talk.compositor->announce("again");
        QCOMPARE(talk.appIds(), QStringList{u"again"_s});
    }
}

void WaylandTest::flood() {
    Conversation talk;
    QVERIFY(talk.open());
    talk.compositor->flood(2500, QByteArray(900, 'x'));
    QTRY_COMPARE(talk.windows().value_or(QList<SourceWindow>()).size(), 2000);
    // Those beyond are given back, and room that is made is used.
    QTRY_COMPARE(talk.compositor->objects(), 2000);
    talk.compositor->tell(7, zwlr_foreign_toplevel_handle_v1_send_closed);
    QTRY_COMPARE(talk.compositor->objects(), 1999);
    talk.compositor->announce("last");
    QCOMPARE(talk.appIds().last(), u"last"_s);
}

KESTRIN_TEST(WaylandTest)
#include "tst_wayland.moc"
