// The window over an in-memory desktop: what the pages show in which state, and what each control does.

#include "app/Kestrin/MacConfiguration.h"
#include "design/KestrinTone.h"
#include "tests/support/WindowHome.h"

#include <QAccessible>
#include <QClipboard>
#include <QDesktopServices>
#include <QGuiApplication>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace kestrin;

namespace {

void collect(QQuickItem *item, const QByteArray &type, QList<QQuickItem *> &found) {
    if (!item->isVisible())
        return;
    const QByteArray name = item->metaObject()->className();
    if (name == type || name.startsWith(type + "_QML"))
        found.append(item);
    const QList<QQuickItem *> children = item->childItems();
    for (QQuickItem *const child : children)
        collect(child, type, found);
}

/// Takes links instead of a browser.
class Browser : public QObject {
    Q_OBJECT

  public:
    Browser() { QDesktopServices::setUrlHandler(u"https"_s, this, "open"); }
    ~Browser() override { QDesktopServices::unsetUrlHandler(u"https"_s); }
    QList<QUrl> opened;

  public Q_SLOTS:
    void open(const QUrl &url) { opened.append(url); }
};

/// A window with hands and eyes.
struct Desk : samples::WindowHome {
    using WindowHome::WindowHome;

    void show(MacSection section) {
        if (!shown)
            open();
        select(section);
        QVERIFY(QTest::qWaitForWindowExposed(&window()));
        settle();
    }
    /// Draws, and before that places everything.
    void settle() const { window().grabWindow(); }

    /// The visible items of a QML type, in the order they were made.
    QList<QQuickItem *> all(const char *type) const {
        QList<QQuickItem *> found;
        collect(window().contentItem(), type, found);
        return found;
    }
    QQuickItem *one(const char *type, const char *property, const QString &value) const {
        const QList<QQuickItem *> candidates = all(type);
        for (QQuickItem *const item : candidates) {
            if (item->property(property).toString() == value)
                return item;
        }
        qWarning("There is no %s with %s \"%s\".", type, property, qPrintable(value));
        return nullptr;
    }
    bool says(const QString &text) const {
        const QList<QQuickItem *> texts = all("KestrinText");
        return std::any_of(texts.begin(), texts.end(),
                           [&](QQuickItem *item) { return item->property("text").toString() == text; });
    }
    QStringList values(const char *type, const char *property) const {
        QStringList list;
        const QList<QQuickItem *> items = all(type);
        for (QQuickItem *const item : items)
            list.append(item->property(property).toString());
        return list;
    }
    int toneOf(const char *type, const char *property, const QString &value) const {
        QQuickItem *const item = one(type, property, value);
        return item ? item->property("tone").toInt() : -1;
    }
    void click(QQuickItem *item) const {
        QVERIFY(item);
        settle();
        QTest::mouseClick(&window(), Qt::LeftButton, {},
                          item->mapToScene({item->width() / 2, item->height() / 2}).toPoint());
    }
    void press(const char *type, const QString &title) const { click(one(type, "title", title)); }
    QQuickItem *toggle(const QString &name) const {
        const QList<QQuickItem *> toggles = all("KestrinToggle");
        for (QQuickItem *const item : toggles) {
            QAccessibleInterface *const spoken = QAccessible::queryAccessibleInterface(item);
            if (spoken && spoken->text(QAccessible::Name) == name)
                return item;
        }
        qWarning("There is no switch \"%s\".", qPrintable(name));
        return nullptr;
    }
    void flip(const QString &name) const { click(toggle(name)); }
    qsizetype recorded(const QString &message) const {
        return samples::messages(log().recent(1000)).count(message);
    }
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) const {
        QTest::keyClick(&window(), key, modifiers);
    }
    void run(const QStringList &names) {
        qint32 pid = 100;
        for (const QString &name : names)
            workspace.add(samples::running(name, pid++));
    }
};

constexpr int tone(KestrinTone value) {
    return static_cast<int>(value);
}

const QString checkedOn = u"Privacy Mode is on. Evaluating Mac protected apps."_s;
const QString checkedOff = u"Privacy Mode is off. No Mac app actions were taken."_s;
const QString switchedOff = u"Privacy Mode is off for this Mac."_s;

} // namespace

class WindowTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase() { QAccessible::setActive(true); }
    void firstLaunch();
    void closing();
    void home();
    void homeRunsACheck();
    void devices();
    void appsCount();
    void appsInEveryState();
    void appsSelection();
    void appsFollowTheFlag();
    void schedule();
    void activity();
    void access();
    void links();
    void connectPage();
    void sidebar();
    void oddNames();
    void pagesScroll();
};

void WindowTest::firstLaunch() {
    Desk desk;
    desk.open();
    QCOMPARE(desk.section(), MacSection::Home);
    QCOMPARE(desk.window().title(), u"Kestrin"_s);
    QCOMPARE(desk.window().size(), QSize(1180, 760));
    QCOMPARE(desk.window().minimumSize(), QSize(1040, 680));
    QVERIFY(desk.says(u"You are protected"_s));
    QVERIFY(desk.says(u"Control your privacy with one tap."_s));
    QVERIFY(desk.runtime().isMonitoring());
    QCOMPARE(desk.workspace.subscriberCount(), 1);
    const PrivacyModeSettings saved = desk.runtime().settingsStore().load();
    QVERIFY(saved.isEnabled);
    QCOMPARE(saved.protectedDefinitionIDs.size(), 12);
    // Opening the window checks nothing and records nothing.
    QVERIFY(desk.log().recent(10).isEmpty());
}

void WindowTest::closing() {
    Desk desk;
    desk.show(MacSection::Apps);
    desk.shown.reset();
    QCOMPARE(desk.workspace.subscriberCount(), 0);
}

void WindowTest::home() {
    Desk desk;
    desk.show(MacSection::Home);
    QVERIFY(desk.says(u"ON"_s));
    QCOMPARE(desk.values("MacDeviceSummaryRow", "name"),
             (QStringList{u"MacBook Pro"_s, u"iPhone"_s, u"Apple Watch"_s}));
    desk.flip(u"Privacy Mode"_s);
    QVERIFY(desk.says(u"Protection is off"_s));
    QVERIFY(desk.says(u"OFF"_s));
    QVERIFY(desk.says(u"Privacy Mode paused on this Mac"_s));
    QCOMPARE(desk.toneOf("MacDeviceSummaryRow", "status", u"Off"_s), tone(KestrinTone::Attention));
    QCOMPARE(desk.recorded(switchedOff), 1);
    // The button only switches on.
    desk.press("KestrinPrimaryButton", u"Turn on Privacy Mode"_s);
    QVERIFY(desk.says(u"You are protected"_s));
    QCOMPARE(desk.section(), MacSection::Home);
    QVERIFY(!desk.runtime().lastChecked());
    desk.press("KestrinSecondaryButton", u"Manage devices"_s);
    QCOMPARE(desk.section(), MacSection::Devices);
}

void WindowTest::homeRunsACheck() {
    Desk desk;
    desk.show(MacSection::Home);
    desk.press("KestrinPrimaryButton", u"Run Mac Check"_s);
    QCOMPARE(desk.section(), MacSection::Apps);
    // One by the button, one because the page Apps appears.
    QCOMPARE(desk.recorded(checkedOn), 2);
}

void WindowTest::devices() {
    Desk desk;
    desk.show(MacSection::Devices);
    const QList<QQuickItem *> tiles = desk.all("MacDeviceSummaryRow");
    QCOMPARE(tiles.size(), 3);
    QCOMPARE(tiles.at(0)->y(), tiles.at(1)->y());
    QCOMPARE(tiles.at(1)->x(), tiles.at(0)->x() + tiles.at(0)->width() + 12);
    QCOMPARE(tiles.at(2)->x(), tiles.at(0)->x());
    QCOMPARE(tiles.at(2)->width(), tiles.at(0)->width());
    desk.press("KestrinPrimaryButton", u"Open Install & Connect"_s);
    QCOMPARE(desk.section(), MacSection::Connect);
    desk.select(MacSection::Devices);
    desk.press("KestrinSecondaryButton", u"Review Access"_s);
    QCOMPARE(desk.section(), MacSection::Access);
}

void WindowTest::appsCount() {
    Desk desk;
    desk.run({u"Zoom"_s, u"FaceTime"_s, u"Safari"_s, u"Google Chrome"_s, u"Photo Booth"_s, u"Rewind"_s,
              u"Editor"_s});
    desk.show(MacSection::Apps);
    QCOMPARE(desk.recorded(checkedOn), 1);
    QCOMPARE(desk.values("KestrinMetricTile", "value"), (QStringList{u"7"_s, u"6"_s, u"4"_s}));
    QCOMPARE(desk.values("MacLiveRiskMatchRow", "name"),
             (QStringList{u"Zoom"_s, u"FaceTime"_s, u"Safari"_s, u"Google Chrome"_s, u"Photo Booth"_s}));
    // Four between five matches, eleven between twelve definitions.
    QCOMPARE(desk.all("KestrinDivider").size(), 4 + 11);
    QCOMPARE(desk.toneOf("KestrinMetricTile", "title", u"Protected app matches"_s),
             tone(KestrinTone::Attention));
    QCOMPARE(desk.toneOf("KestrinMetricTile", "title", u"Actions previewed"_s), tone(KestrinTone::Risk));
    desk.press("KestrinSecondaryButton", u"Run Live Check"_s);
    QCOMPARE(desk.recorded(checkedOn), 2);
}

void WindowTest::appsInEveryState() {
    Desk desk;
    desk.show(MacSection::Apps);
    QVERIFY(desk.says(u"No selected Mac protected apps are running right now."_s));
    QVERIFY(desk.says(u"Reads visible running Mac apps and previews selected protected app actions without "
                      "closing apps."_s));
    QCOMPARE(desk.toneOf("KestrinStatusPill", "title", u"Preview"_s), tone(KestrinTone::Link));
    desk.shown->state().setEnforceActions(true);
    QVERIFY(
        desk.says(u"Reads visible running Mac apps and sends quit requests for selected protected apps."_s));
    QCOMPARE(desk.toneOf("KestrinStatusPill", "title", u"Enforcing"_s), tone(KestrinTone::Risk));
    QVERIFY(desk.one("KestrinMetricTile", "title", u"Actions applied"_s));
    QVERIFY(desk.one("KestrinPrimaryButton", "title", u"Apply Now"_s));
    desk.shown->state().setPrivacyModeOn(false);
    // A preview finds matches also while Privacy Mode is off; the notice wins.
    desk.workspace.add(samples::running(u"Zoom"_s, 10));
    desk.runtime().refreshInventoryPreview();
    QCOMPARE(desk.runtime().matches().size(), 1);
    QVERIFY(desk.all("MacLiveRiskMatchRow").isEmpty());
    QVERIFY(desk.says(u"Privacy Mode is currently off, so no Mac app actions are run."_s));
    QVERIFY(desk.says(u"Privacy Mode is off. Turn it on from Home to run Mac protection checks."_s));
    QCOMPARE(desk.values("KestrinMetricTile", "value"), (QStringList{u"1"_s, u"1"_s, u"1"_s}));
}

void WindowTest::appsSelection() {
    Desk desk;
    desk.show(MacSection::Apps);
    desk.window().resize(1180, 1400);
    QVERIFY(desk.one("KestrinStatusPill", "title", u"12 selected"_s));
    QQuickItem *const zoom = desk.toggle(u"Protect Zoom"_s);
    desk.click(zoom);
    QVERIFY(!desk.runtime().protectedDefinitionIDs().contains(u"zoom"_s));
    QVERIFY(desk.says(u"11 Mac protected apps selected"_s));
    // The row is still the same one, and so is the keyboard's place on it.
    QCOMPARE(desk.toggle(u"Protect Zoom"_s), zoom);
    QVERIFY(!zoom->property("on").toBool());
    for (const RiskAppDefinition &definition : RiskAppCatalog::defaultDefinitions())
        desk.runtime().setProtectedDefinition(definition.id, false);
    QVERIFY(desk.one("KestrinStatusPill", "title", u"0 selected"_s));
    QVERIFY(desk.says(u"0 Mac protected apps selected"_s));
    desk.press("KestrinSecondaryButton", u"Apply Recommended"_s);
    QCOMPARE(desk.runtime().protectedDefinitionIDs().size(), 12);
    QVERIFY(zoom->property("on").toBool());
}

void WindowTest::appsFollowTheFlag() {
    Desk desk;
    desk.show(MacSection::Apps);
    desk.shown->state().setPrivacyModeOn(false);
    // Told to the runtime twice, recorded once, and checked.
    QCOMPARE(desk.recorded(switchedOff), 1);
    QCOMPARE(desk.recorded(checkedOff), 1);
    desk.select(MacSection::Home);
    desk.shown->state().setPrivacyModeOn(true);
    desk.shown->state().setPrivacyModeOn(false);
    QCOMPARE(desk.recorded(switchedOff), 2);
    QCOMPARE(desk.recorded(checkedOff), 1);
    // A schedule switches in the same way.
    desk.select(MacSection::Apps);
    QCOMPARE(desk.recorded(checkedOff), 2);
    desk.shown->state().setPreset(u"away"_s, true);
    QVERIFY(desk.shown->state().privacyModeOn());
    QCOMPARE(desk.recorded(u"Schedule turned Privacy Mode on."_s), 1);
    QCOMPARE(desk.recorded(checkedOn), 2);
}

void WindowTest::schedule() {
    Desk desk;
    desk.show(MacSection::Schedule);
    QCOMPARE(
        desk.values("MacScheduleCard", "name"),
        (QStringList{u"Sleep Mode"_s, u"Away Mode"_s, u"Focus Mode"_s, u"Travel Mode"_s, u"Manual Mode"_s}));
    QCOMPARE(desk.toneOf("KestrinStatusPill", "title", u"0 enabled"_s), tone(KestrinTone::Attention));
    QQuickItem *const travel = desk.toggle(u"Travel Mode"_s);
    desk.click(travel);
    QCOMPARE(desk.runtime().enabledScheduleCount(), 1);
    QCOMPARE(desk.toneOf("KestrinStatusPill", "title", u"1 enabled"_s), tone(KestrinTone::Protected));
    QCOMPARE(desk.toggle(u"Travel Mode"_s), travel);
    const QList<QQuickItem *> cards = desk.all("MacScheduleCard");
    for (QQuickItem *const card : cards)
        QVERIFY(card->height() >= 92 && std::abs(card->width() - cards.first()->width()) <= 1);
    QCOMPARE(cards.at(4)->x(), cards.at(0)->x());
}

void WindowTest::activity() {
    Desk desk;
    desk.show(MacSection::Activity);
    QVERIFY(
        desk.says(u"No Mac engine events yet. Run a Mac Check or change Privacy Mode to create activity."_s));
    QCOMPARE(desk.toneOf("KestrinMetricTile", "title", u"Mac actions"_s), tone(KestrinTone::Neutral));
    QCOMPARE(desk.values("KestrinMetricTile", "value"), (QStringList{u"12"_s, u"0"_s, u"0"_s}));
    for (int i = 0; i < 5; ++i) {
        desk.runtime().applyRecommendedRiskApps();
        desk.runtime().setProtectedDefinition(u"zoom"_s, false);
    }
    QCOMPARE(desk.all("MacEngineEventRow").size(), 8);
    QCOMPARE(desk.all("KestrinDivider").size(), 7);
    QCOMPARE(desk.values("MacEngineEventRow", "title").first(2),
             (QStringList{u"Zoom"_s, u"Protected app matched"_s}));
    QVERIFY(!desk.says(
        u"No Mac engine events yet. Run a Mac Check or change Privacy Mode to create activity."_s));
    desk.runtime().setEnforceActions(false);
    QCOMPARE(desk.toneOf("KestrinMetricTile", "title", u"Mac actions"_s), tone(KestrinTone::Link));
    // A message is cut after its second line.
    desk.runtime().logStore().append(MacProtectionEvent::create(desk.now, MacProtectionEventKind::dryRun,
                                                                u"word "_s.repeated(400), u""_s));
    QTRY_COMPARE_WITH_TIMEOUT(desk.values("MacEngineEventRow", "title").first(), QString(), 1000);
    QVERIFY(desk.all("MacEngineEventRow").first()->height() < 90);
}

void WindowTest::access() {
    Desk desk;
    desk.show(MacSection::Access);
    QCOMPARE(desk.values("MacSettingRow", "title"),
             (QStringList{u"Account"_s, u"Selected Mac apps"_s, u"Schedules"_s, u"Activity log"_s,
                          u"Privacy guide"_s, u"Help"_s, u"Mac app actions"_s, u"Relaunch monitor"_s,
                          u"Running apps scanned"_s, u"Protected app matches"_s, u"iPhone connection"_s}));
    QCOMPARE(desk.values("MacSettingRow", "detail").first(3),
             (QStringList{u"Not required"_s, u"12 apps"_s, u"0 enabled"_s}));
    QCOMPARE(desk.toneOf("MacSettingRow", "title", u"Schedules"_s), tone(KestrinTone::Attention));
    QCOMPARE(desk.toneOf("MacSettingRow", "title", u"Mac app actions"_s), tone(KestrinTone::Link));
    desk.flip(u"Keep selected apps closed"_s);
    QVERIFY(desk.runtime().enforceActions());
    QCOMPARE(desk.toneOf("MacSettingRow", "title", u"Mac app actions"_s), tone(KestrinTone::Risk));
    QCOMPARE(desk.one("MacSettingRow", "title", u"Mac app actions"_s)->property("detail"), u"Enforcing"_s);
    for (const QString &still : {u"Account"_s, u"Mac app actions"_s, u"Relaunch monitor"_s,
                                 u"Running apps scanned"_s, u"Protected app matches"_s}) {
        desk.press("MacSettingRow", still);
        QCOMPARE(desk.section(), MacSection::Access);
    }
    const QList<std::pair<QString, MacSection>> ways{{u"Selected Mac apps"_s, MacSection::Apps},
                                                     {u"Schedules"_s, MacSection::Schedule},
                                                     {u"Activity log"_s, MacSection::Activity},
                                                     {u"iPhone connection"_s, MacSection::Connect}};
    for (const auto &[title, section] : ways) {
        desk.select(MacSection::Access);
        desk.press("MacSettingRow", title);
        QCOMPARE(desk.section(), section);
    }
}

void WindowTest::links() {
    Desk desk;
    Browser browser;
    desk.show(MacSection::Access);
    desk.press("MacSettingRow", u"Privacy guide"_s);
    desk.press("MacSettingRow", u"Help"_s);
    QCOMPARE(browser.opened, (QList<QUrl>{MacConfiguration::privacyURL(), MacConfiguration::supportURL()}));
}

void WindowTest::connectPage() {
    Desk desk;
    desk.run({u"Zoom"_s, u"Editor"_s});
    desk.show(MacSection::Connect);
    QCOMPARE(desk.values("MacSettingRow", "detail"),
             (QStringList{u"Preview"_s, u"12"_s, u"2"_s, u"Preview"_s}));
    QGuiApplication::clipboard()->setText(u"before"_s);
    desk.press("KestrinSecondaryButton", u"Copy Diagnostics"_s);
    QCOMPARE(QGuiApplication::clipboard()->text(),
             u"Kestrin Mac diagnostics\nRelaunch monitor: Preview\nMac app actions: Preview\nSelected "
             "protected apps: 12\nRunning apps scanned: 2\nProtected app matches: 1"_s);
    QVERIFY(desk.one("KestrinSecondaryButton", "title", u"Diagnostics Copied"_s));
    desk.press("KestrinPrimaryButton", u"Run Mac Check"_s);
    QCOMPARE(desk.section(), MacSection::Connect);
    QCOMPARE(desk.recorded(checkedOn), 1);
    desk.select(MacSection::Home);
    desk.select(MacSection::Connect);
    QVERIFY(desk.one("KestrinSecondaryButton", "title", u"Copy Diagnostics"_s));
}

void WindowTest::sidebar() {
    Desk desk;
    desk.show(MacSection::Home);
    QCOMPARE(desk.values("MacSidebarRow", "title"),
             (QStringList{u"Home"_s, u"Devices"_s, u"Apps"_s, u"Schedule"_s, u"Activity"_s, u"Access"_s,
                          u"Install & Connect"_s}));
    QQuickItem *const activity = desk.one("MacSidebarRow", "title", u"Activity"_s);
    desk.click(activity);
    QCOMPARE(desk.section(), MacSection::Activity);
    // Nothing selected shows Home.
    QTest::mouseClick(&desk.window(), Qt::LeftButton, Qt::ControlModifier,
                      activity->mapToScene({10, 10}).toPoint());
    QCOMPARE(desk.section(), MacSection::None);
    QVERIFY(desk.says(u"You are protected"_s));
    desk.shown->state().setEnforceActions(true);
    QVERIFY(desk.says(u"Enforcing"_s));
}

void WindowTest::oddNames() {
    Desk desk;
    // The engine matches by identifier; the name is whatever the application says.
    const QString longName = u"A name that does not end "_s.repeated(12);
    const QString rightToLeft = u"\u05d6\u05d5\u05dd \u05dc\u05e4\u05d2\u05d9\u05e9\u05d5\u05ea"_s;
    qint32 pid = 10;
    for (const QString &name : {longName, rightToLeft})
        desk.workspace.add(samples::running(name, pid++, u"us.zoom.xos"_s));
    desk.show(MacSection::Apps);
    const QList<QQuickItem *> rows = desk.all("MacLiveRiskMatchRow");
    QCOMPARE(rows.size(), 2);
    QVERIFY(rows.at(0)->height() > rows.at(1)->height());
    QCOMPARE(rows.at(1)->y(), rows.at(0)->height());
    for (QQuickItem *const row : rows) {
        QList<QQuickItem *> texts;
        QList<QQuickItem *> pills;
        collect(row, "KestrinText", texts);
        collect(row, "KestrinStatusPill", pills);
        const double edge = pills.first()->mapToScene({}).x();
        QVERIFY(texts.first()->mapToScene({texts.first()->width(), 0}).x() <= edge);
        QVERIFY(edge + pills.first()->width() < 1180 - 28);
    }
}

void WindowTest::pagesScroll() {
    Desk desk;
    desk.show(MacSection::Apps);
    const auto y = [&] { return desk.all("MacLiveCheckCard").first()->mapToScene({}).y(); };
    const double top = y();
    QQuickItem *const last = desk.one("KestrinPrimaryButton", "title", u"Run Preview"_s);
    QVERIFY(last->mapToScene({}).y() > 760);
    desk.key(Qt::Key_PageDown);
    QVERIFY(y() < top - 300);
    desk.key(Qt::Key_Home, Qt::ControlModifier);
    QCOMPARE(y(), top);
    QTest::mouseMove(&desk.window(), {600, 400});
    QWheelEvent wheel({600, 400}, {600, 400}, {}, {0, -120}, {}, {}, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&desk.window(), &wheel);
    QCOMPARE(y(), top - 60);
    // The keyboard brings along what it reaches.
    last->forceActiveFocus(Qt::TabFocusReason);
    QVERIFY(last->mapToScene({0, last->height()}).y() <= 760);
}

int main(int argc, char **argv) {
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    QGuiApplication::setApplicationDisplayName(u"Kestrin"_s);
    QGuiApplication application(argc, argv);
    QGuiApplication::setQuitOnLastWindowClosed(false);
    WindowTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_window.moc"
