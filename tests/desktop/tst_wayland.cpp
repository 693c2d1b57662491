// What compositors tell of windows, also those that say nonsense, too much, or nothing any more. What honest
// ones tell is tested on real desktops.

#include "desktop/wayland/PlasmaWindows.h"
#include "desktop/wayland/WlrToplevels.h"
#include "tests/support/FakeCompositor.h"
#include "tests/support/Test.h"

#include <QDeadlineTimer>

#include <wayland-util.h>
#include <wlr-foreign-toplevel-management-server-protocol.h>

using samples::FakeCompositor;

namespace {

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
    /// Once connected, of a window that is announced.
    bool hearsOf(const QByteArray &appId) {
        if (!open())
            return false;
        compositor->announce(appId);
        return appIds() == QStringList{QString::fromLatin1(appId)};
    }
};

} // namespace

class WaylandTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void events();
    void windowsComeAndGo();
    void silence();
    void endings();
    void flood();
};

void WaylandTest::events() {
    constexpr auto plasma = PlasmaWindows::read;
    constexpr auto wlr = WlrToplevels::read;
    const QByteArray longId(4000, 'a');
    const auto named = [](const QString &name, const QString &instance = {}) {
        return SourceWindow{0, 0, {instance, name, {}, {}, {}}, true};
    };
    const auto row = [](auto *read, std::string_view event, const wl_argument &argument, WindowNews news,
                        const SourceWindow &expected = {}) {
        SourceWindow window;
        QVERIFY2(read(event, &argument, window) == news, event.data());
        QVERIFY2(window == expected, event.data());
    };
    row(plasma, "app_id_changed", {.s = "zoom"}, WindowNews::fact, named(u"zoom"_s));
    row(plasma, "app_id_changed", {.s = "\xFFx"}, WindowNews::fact, named(u"\uFFFDx"_s));
    row(plasma, "app_id_changed", {.s = nullptr}, WindowNews::fact);
    row(plasma, "app_id_changed", {.s = longId.data()}, WindowNews::fact, named(QString(1024, u'a')));
    row(plasma, "resource_name_changed", {.s = "xterm"}, WindowNews::fact, named({}, u"xterm"_s));
    row(plasma, "pid_changed", {.u = 12}, WindowNews::fact, {0, 12, {}, true});
    row(plasma, "pid_changed", {.u = 0xFFFFFFFF}, WindowNews::fact);
    row(plasma, "state_changed", {.u = 1 << 12 | 1}, WindowNews::fact, {0, 0, {}, false});
    row(plasma, "state_changed", {.u = 1 << 18}, WindowNews::fact);
    row(plasma, "title_changed", {.s = "secret"}, WindowNews::nothing);
    row(plasma, "initial_state", {}, WindowNews::complete);
    row(plasma, "unmapped", {}, WindowNews::gone);
    row(wlr, "app_id", {.s = "zoom"}, WindowNews::pending, named(u"zoom"_s));
    row(wlr, "title", {.s = "secret"}, WindowNews::nothing);
    row(wlr, "done", {}, WindowNews::complete);
    row(wlr, "closed", {}, WindowNews::gone);
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

    QVERIFY(talk.source.close({talk.windows().value().at(1)}, Deadline(desktopPatience)));
    QCOMPARE(talk.compositor->closed(), QList<qsizetype>{2});
    const SourceWindow gone = talk.windows().value().at(0);
    talk.compositor->tell(0, zwlr_foreign_toplevel_handle_v1_send_closed);
    QTRY_COMPARE(talk.appIds(), QStringList{u"second"_s});
    QVERIFY(!talk.source.close({gone}, Deadline(desktopPatience)));
    QCOMPARE(talk.compositor->objects(), 2);
}

void WaylandTest::silence() {
    Conversation talk;
    QVERIFY(talk.hearsOf("first"));
    talk.compositor->setSilent(true);
    const QDeadlineTimer quickly(2000);
    QVERIFY(!talk.source.windows(Deadline(100ms)));
    QVERIFY(!talk.source.close({{1, 0, {}, true}}, Deadline(100ms)));
    QVERIFY(!WlrToplevels(talk.path).open(Deadline(100ms)));
    QVERIFY(!quickly.hasExpired());
    // The same conversation goes on, and whoever was not answered hears of it.
    talk.changed.clear();
    talk.compositor->setSilent(false);
    QTRY_COMPARE(talk.changed.size(), 1);
    QCOMPARE(talk.appIds(), QStringList{u"first"_s});
    QVERIFY(talk.lost.isEmpty());
}

void WaylandTest::endings() {
    const auto row = [](const std::function<void(Conversation &)> &end) {
        for (const bool isAsking : {false, true}) {
            Conversation talk;
            QVERIFY(talk.hearsOf("first"));
            end(talk);
            // Whoever asks meanwhile gets no answer, and whoever listens hears of it all the same.
            if (isAsking)
                QTRY_VERIFY(!talk.windows());
            QTRY_COMPARE(talk.lost.size(), 1);
            QVERIFY(!talk.windows());
            talk.compositor.reset();
            QVERIFY(!talk.open());
            talk.compositor = std::make_unique<FakeCompositor>(talk.path);
            QVERIFY(talk.hearsOf("again"));
        }
    };
    // Death, nonsense, and the end of the list.
    row([](Conversation &talk) { talk.compositor.reset(); });
    row([](Conversation &talk) { talk.compositor->talkNonsense(); });
    row([](Conversation &talk) { talk.compositor->endManager(); });
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
