// The window over an in-memory desktop: what the pages count and list, and what each control does. How they
// look in which state is seen by pictures.cpp. And what stands behind it: which rows stay when a list becomes
// another one, and which quit requests the desktop shows.

#include "app/Kestrin/program/QuitNotices.h"
#include "app/Kestrin/program/UseNotices.h"
#include "app/Kestrin/rows/RecordListModel.h"
#include "app/Kestrin/rows/UseTexts.h"
#include "design/DesktopPreferences.h"
#include "design/FittedText.h"
#include "design/KestrinAppearance.h"
#include "design/KestrinTone.h"
#include "foundation/Clock.h"
#include "tests/support/Files.h"
#include "tests/support/Items.h"
#include "tests/support/TestClass.h"
#include "tests/support/WindowHome.h"

#include <QAbstractItemModelTester>
#include <QDesktopServices>
#include <QGuiApplication>
#include <QRegularExpression>
#include <QSignalSpy>

#include <tuple>

using namespace Qt::StringLiterals;
using namespace kestrin;
using namespace kestrin::foundation;
using namespace kestrin::engine;
using namespace kestrin::design;
using namespace kestrin::app;
using namespace std::chrono_literals;

namespace {

/// An open window, with hands and eyes.
struct Desk : samples::WindowHome {
    explicit Desk(MacSection section) {
        open();
        show(section);
    }
    void show(MacSection section) const {
        select(section);
        QVERIFY(QTest::qWaitForWindowExposed(&window()));
        settle();
        settle(); // with what a page does once it is seen
    }
    /// Draws, and before that places everything.
    void settle() const { window().grabWindow(); }
    MacProtectionState &state() const { return shown->protection.state; }
    void run(const QString &name) { workspace.add(samples::running(name, nextPid++)); }

    QList<QQuickItem *> all(const char *type) const { return samples::itemsOf(type, window().contentItem()); }
    QQuickItem *one(const char *type, const QString &title) const {
        for (QQuickItem *const item : all(type)) {
            if (item->property("title").toString() == title)
                return item;
        }
        qWarning("There is no %s \"%s\".", type, qPrintable(title));
        return nullptr;
    }
    QString titles(const char *type) const { return values(type, "title").join(u", "_s); }
    QStringList values(const char *type, const char *property) const {
        QStringList list;
        for (const QQuickItem *const item : all(type))
            list.append(item->property(property).toString());
        return list;
    }
    bool says(const QString &text) const {
        settle();
        return values("KestrinText", "text").contains(text);
    }
    void click(QQuickItem *item, Qt::KeyboardModifiers modifiers = {}) const {
        QVERIFY(item);
        settle();
        QTest::mouseClick(&window(), Qt::LeftButton, modifiers,
                          item->mapToScene({item->width() / 2, item->height() / 2}).toPoint());
    }
    void press(const char *type, const QString &title) const { click(one(type, title)); }
    void key(const QList<QKeyCombination> &keys) const { samples::pressKeys(window(), keys); }
    void seeUncut() const {
        const QList<QQuickItem *> texts = all("QQuickText");
        QVERIFY(!texts.isEmpty());
        for (const QQuickItem *const text : texts)
            QVERIFY2(!text->property("truncated").toBool(), qPrintable(text->property("text").toString()));
        for (const char *const type : {"KestrinPrimaryButton", "KestrinSecondaryButton"}) {
            for (const QQuickItem *const button : all(type)) {
                const QQuickItem *const label = button->findChild<FittedText *>();
                QVERIFY(button->width() - label->mapToItem(button, {label->width(), 0}).x() >= 6);
            }
        }
    }
    void begin(const DeviceUse &use) {
        deviceUses.begin(use);
        QCoreApplication::processEvents();
    }
    void end(const DeviceUse &use) {
        deviceUses.end(use);
        QCoreApplication::processEvents();
    }
    void restart(const DeviceUse &use) {
        end(use);
        begin(use);
    }
    qsizetype recorded(const QString &message) const {
        return samples::messages(runtime().logStore().recent(1000)).count(message);
    }

    qint32 nextPid = 100;
};

const QString checkedOn = u"Privacy Mode is on. Evaluating Mac protected apps."_s;
const QString checkedOff = u"Privacy Mode is off. No Mac app actions were taken."_s;
const QString switchedOff = u"Privacy Mode is off for this Mac."_s;

constexpr auto mic = MacRiskCategory::microphone;
constexpr auto camera = MacRiskCategory::camera;
constexpr auto screen = MacRiskCategory::screenCapture;

DeviceUse useOf(const QString &name, MacRiskCategory category, qint32 process = 77) {
    return {category, process, name, {}, systemTime()};
}

QList<PageRow> rowsOf(const QString &ids) {
    QList<PageRow> rows;
    for (const QString &id : ids.split(u' ', Qt::SkipEmptyParts))
        rows.append({.id = id});
    return rows;
}

} // namespace

class WindowTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    // Instead of a browser.
    void takeLink(const QUrl &url) { m_links.append(url.path()); }

    // Also what QML complains of, such as a symbol that does not exist.
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }
    void home();
    void nothingIsCut();
    void quietLine();
    void whoUsesWhat();
    void appsAreCountedAndListed();
    void addingAnApp();
    void protectingWhatWasSeen();
    void removingAnApp();
    void hundredsOfApps();
    void schedules();
    void activity();
    void access();
    void oddNames();
    void listChanges();
    void noticesOnceInTenSeconds();
    void noticesOfUses();
    void namesFromOutside();

  private:
    QStringList m_links;
};

void WindowTest::home() {
    Desk desk(MacSection::Home);
    // Opening the window checks nothing and records nothing.
    QVERIFY(desk.runtime().logStore().recent(10).isEmpty());
    desk.click(desk.all("KestrinToggle").first());
    // The button only switches on.
    desk.press("KestrinPrimaryButton", u"Turn on Privacy Mode"_s);
    QVERIFY(desk.says(u"ON"_s));
    QCOMPARE(desk.section(), MacSection::Home);
    QVERIFY(!desk.runtime().lastChecked());
    desk.press("KestrinPrimaryButton", u"Run Mac Check"_s);
    QCOMPARE(desk.section(), MacSection::Apps);
    // One by the button, one because the page Apps appears.
    QCOMPARE(desk.recorded(checkedOn), 2);
    desk.click(desk.one("MacSidebarRow", u"Apps"_s), Qt::ControlModifier);
    QCOMPARE(desk.section(), MacSection::None);
    QVERIFY(desk.says(u"You are protected"_s));
}

// Where there is the least room, and texts are as large as they can be.
void WindowTest::nothingIsCut() {
    auto large = std::make_unique<InMemoryDesktopPreferences>();
    large->say({}, {}, {}, 2);
    KestrinAppearance::shared().follow(std::move(large));
    const auto usual = qScopeGuard([] { KestrinAppearance::shared().follow(nullptr); });
    Desk desk(MacSection::Home);
    desk.window().resize(1040, 680);
    for (int section = 0; section < 7; ++section) {
        desk.show(static_cast<MacSection>(section));
        desk.seeUncut();
    }
    desk.runtime().setModes({u"sleep"_s, u"away"_s, u"focus"_s, u"travel"_s, u"manual"_s}, true);
    desk.commands.setTray(true);
    desk.shown->window.explainFirstStart(desk.commands);
    for (int step = 0; step < 3; ++step) {
        desk.settle();
        desk.seeUncut();
        QQuickItem *const next = desk.all("KestrinPrimaryButton").constLast();
        for (const QQuickItem *const item : desk.all(step == 1 ? "MacScheduleCard" : "MacOption"))
            QVERIFY(item->mapToScene({0, item->height()}).y() + 8 <= next->mapToScene({0, 0}).y());
        desk.click(next);
    }
    QVERIFY(desk.all("MacFirstStartDialog").isEmpty());
}

void WindowTest::quietLine() {
    Desk desk(MacSection::Home);
    const Sight partial{Sight::Extent::partial, u"Some run unseen."_s, u"Look."_s, Sight::Help::read};
    const auto look = [&desk](const Sight &sight) {
        desk.workspace.setSight(sight);
        desk.runtime().refreshSight();
        desk.settle();
    };
    QVERIFY(desk.all("MacQuietLine").isEmpty());
    look(partial);
    for (const MacSection section : {MacSection::Home, MacSection::Connect}) {
        desk.show(section);
        QVERIFY(desk.says(u"Some run unseen. Look."_s));
    }
    QSignalSpy wanted(&desk.state(), &MacProtectionState::sightHelpWanted);
    desk.press("KestrinSecondaryButton", u"Read How"_s);
    QCOMPARE(wanted.count(), 1);
    look({});
    QVERIFY(desk.all("MacQuietLine").isEmpty());

    // Only where nothing more important is to be said.
    const QString nothingSelected =
        u"Nothing is selected, so everything is protected. Select applications on the Apps "
        "page to protect only those."_s;
    const QStringList all = desk.runtime().sortedProtectedDefinitionIDs();
    desk.runtime().setProtectedDefinitions(all, false);
    QVERIFY(desk.says(nothingSelected));
    look({Sight::Extent::none, u"Nothing is seen."_s, u"Look."_s, Sight::Help::none});
    QVERIFY(!desk.says(nothingSelected) && desk.says(u"Nothing is seen. Look."_s));
    look({});
    desk.runtime().setProtectedDefinitions(all.first(1), true);
    desk.settle();
    QVERIFY(desk.all("MacQuietLine").isEmpty());

    const auto isPaused = [&desk](const QString &until) {
        return desk.says(
            u"Privacy Mode is paused until %1. It comes back on by itself, and schedules rest until then."_s
                .arg(until));
    };
    desk.state().pauseUntilTomorrow();
    look(partial);
    QVERIFY(isPaused(u"tomorrow"_s));
    desk.press("KestrinSecondaryButton", u"Resume"_s);
    QVERIFY(desk.state().privacyModeOn());
    QVERIFY(desk.says(u"Some run unseen. Look."_s));
    // It is there from the beginning too.
    desk.state().pauseForAnHour();
    desk.open();
    QVERIFY(isPaused(u"13:00"_s));
}

void WindowTest::whoUsesWhat() {
    const QString shortened = QString(39, u'x') + u'…';
    QList<DeviceUse> many;
    for (const QString &name : {u"A"_s, u"B"_s, u"C"_s, u"D"_s, u"E"_s, u"F"_s, u"G"_s})
        many.append(useOf(name, name == u"G" ? screen : mic));
    const std::tuple<QList<DeviceUse>, QStringList, QString> cases[] = {
        {{}, {}, {}},
        // Whatever came first, and however many processes it has.
        {{useOf(u"Zoom"_s, screen), useOf(u"Fox"_s, mic), useOf(u"Zoom"_s, mic, 78), useOf(u"Zoom"_s, mic),
          useOf(u"Zoom"_s, camera)},
         {u"Zoom: microphone, camera, screen"_s, u"Fox: microphone"_s},
         u"Zoom uses the microphone, the camera and the screen. Fox uses the microphone."_s},
        {{useOf(QString(300, u'x'), camera), useOf(u"a\nb\u202e"_s, mic)},
         {shortened + u": camera"_s, u"a\\u000ab\\u202e: microphone"_s},
         shortened + u" uses the camera. a\\u000ab\\u202e uses the microphone."_s},
        {many,
         {u"A: microphone"_s, u"B: microphone"_s, u"C: microphone"_s, u"D: microphone"_s, u"E: microphone"_s,
          u"and 2 more"_s},
         u"A uses the microphone. B uses the microphone. C uses the microphone. 4 other applications use the "
         "microphone or the screen."_s},
    };
    for (const auto &[uses, lines, sentences] : cases) {
        QCOMPARE(useLines(uses), lines);
        QCOMPARE(useSentences(uses), sentences);
    }

    Desk desk(MacSection::Apps);
    desk.window().resize(1040, 680);
    const DeviceUse early = useOf(u"Early"_s, camera);
    desk.begin(early);
    QVERIFY(desk.all("MacQuietLine").isEmpty());
    desk.shown->protection.liveUse.start();
    QCoreApplication::processEvents();
    QVERIFY(desk.says(u"Early uses the camera."_s));
    // Beside what else is to be said, and what one reads further down stays where it is.
    desk.key({Qt::CTRL | Qt::Key_End});
    const auto placeOfLast = [&] {
        desk.settle();
        QCoreApplication::processEvents();
        desk.settle();
        return desk.all("KestrinText").constLast()->mapToScene({}).y();
    };
    const qreal place = placeOfLast();
    desk.state().pauseForAnHour();
    QCOMPARE(placeOfLast(), place);
    QVERIFY(desk.says(u"Early uses the camera."_s) && desk.one("KestrinSecondaryButton", u"Resume"_s));
    const QQuickItem *const line = desk.all("MacQuietLine").constFirst();
    const QImage picture = desk.window().grabWindow();
    for (int y = 0; y < line->height(); ++y)
        QCOMPARE(picture.pixel(900, y), line->property("color").value<QColor>().rgb());
    // Who begins and ends all the time does not flicker.
    QSignalSpy changed(desk.state().property("liveUse").value<MacLiveUse *>(), &MacLiveUse::changed);
    for (int i = 0; i < 20; ++i)
        desk.restart(early);
    QCOMPARE(changed.count(), 0);
    desk.deviceUses.end(early);
    QTRY_COMPARE(changed.count(), 1);
    QCOMPARE(placeOfLast(), place);
    QVERIFY(!desk.says(u"Early uses the camera."_s));
    desk.begin(useOf(u"Late"_s, screen));
    desk.state().property("liveUse").value<MacLiveUse *>()->setOn(false);
    QVERIFY(!desk.says(u"Late uses the screen."_s) && !desk.deviceUses.isWatched());
}

void WindowTest::appsAreCountedAndListed() {
    Desk desk(MacSection::Apps);
    for (const QString &name : {u"Zoom"_s, u"FaceTime"_s, u"Safari"_s, u"Google Chrome"_s, u"Photo Booth"_s,
                                u"Rewind"_s, u"Editor"_s})
        desk.run(name);
    desk.press("KestrinSecondaryButton", u"Run Live Check"_s);
    QCOMPARE(desk.recorded(checkedOn), 2);
    const QStringList counts{u"7"_s, u"6"_s, u"4"_s};
    QCOMPARE(desk.values("KestrinMetricTile", "value"), counts);
    QCOMPARE(desk.titles("MacLiveRiskMatchRow"), u"Zoom, FaceTime, Safari, Google Chrome, Photo Booth"_s);
    QCOMPARE(desk.titles("MacRiskDefinitionRow"),
             u"Zoom, FaceTime, Microsoft Teams, QuickTime Player, Voice Memos, Photo Booth, Google Chrome, "
             "Safari, Wispr Flow, Rewind, MacWhisper, Otter AI"_s);
    // Of several categories the most telling one decides.
    QCOMPARE(
        desk.values("MacRiskDefinitionRow", "icon"),
        u"video.fill video.fill video.fill rectangle.on.rectangle mic.fill camera.fill globe globe sparkles "
        "rectangle.on.rectangle sparkles sparkles"_s.split(u' '));
    desk.state().setPrivacyModeOn(false);
    // Told to the runtime twice, recorded once, and checked.
    QVERIFY(desk.recorded(switchedOff) == 1 && desk.recorded(checkedOff) == 1);
    // A preview finds matches also while Privacy Mode is off; the notice wins.
    desk.runtime().refreshInventoryPreview();
    QCOMPARE(desk.values("KestrinMetricTile", "value"), counts);
    QVERIFY(desk.all("MacLiveRiskMatchRow").isEmpty());
    QVERIFY(desk.says(u"Privacy Mode is currently off, so no Mac app actions are run."_s));
    // Which only this page does.
    desk.select(MacSection::Home);
    desk.state().setPrivacyModeOn(true);
    desk.state().setPrivacyModeOn(false);
    QVERIFY(desk.recorded(switchedOff) == 2 && desk.recorded(checkedOff) == 1);
}

void WindowTest::addingAnApp() {
    Desk desk(MacSection::Apps);
    desk.installed.applications = {{u"Writer"_s, u"org.example.Writer"_s, {}},
                                   {u"Paint \u202e2"_s, u"org.example.Paint"_s, {}}};
    desk.run(u"Notes"_s);
    desk.run(u"Zoom"_s);
    const auto isOpen = [&] { return desk.says(u"What it can do"_s); };
    // As far as keys go: there and back, and there again.
    QQuickItem *const button = desk.one("KestrinSecondaryButton", u"Add an App…"_s);
    button->forceActiveFocus();
    desk.key({Qt::Key_Space});
    QVERIFY(isOpen());
    desk.key({Qt::Key_Escape});
    QVERIFY(!isOpen() && button->hasActiveFocus());
    // Nothing below can be reached meanwhile, and without a choice nothing is added.
    desk.key({Qt::Key_Return, Qt::CTRL | Qt::Key_1, Qt::Key_Return});
    QCOMPARE(desk.section(), MacSection::Apps);
    desk.press("KestrinPrimaryButton", u"Add"_s);
    QVERIFY(isOpen());
    QCOMPARE(desk.titles("MacCandidateRow"), u"Notes, Writer, Paint \\u202e2"_s);
    samples::typeText(desk.window(), "EXAMPLE.p");
    desk.settle();
    QCOMPARE(desk.titles("MacCandidateRow"), u"Paint \\u202e2"_s);
    desk.key({Qt::Key_Down});
    for (const QString &choice : {u"Browser"_s, u"Camera"_s, u"Microphone"_s, u"Browser"_s, u"Quit"_s})
        desk.press("MacChoice", choice);
    desk.press("KestrinPrimaryButton", u"Add"_s);
    QVERIFY(!isOpen() && button->hasActiveFocus());
    const RiskAppDefinition paint{u"paint-2"_s, u"Paint \u202e2"_s, {u"org.example.Paint"_s},
                                  {},           {camera, mic},      RiskAppAction::quit};
    QCOMPARE(desk.runtime().catalog().definitions.last(), paint);
    QVERIFY(desk.says(u"13 selected"_s) &&
            desk.titles("MacRiskDefinitionRow").endsWith(u", Paint \\u202e2"_s));
    // What cannot be added stays open and says why.
    desk.key({Qt::Key_Space});
    samples::write(desk.support() + u"/own-applications.json"_s, "{");
    desk.key({Qt::Key_Down, Qt::Key_Return});
    const auto saysWhy = [&] {
        desk.settle();
        const QStringList texts = desk.values("KestrinText", "text");
        return texts.filter(u"own-applications.json does not read as it should"_s).size() == 1;
    };
    QVERIFY(isOpen() && saysWhy());
    desk.key({Qt::Key_Escape});
    QVERIFY(!saysWhy());
    // Or at once, where it is known before.
    desk.key({Qt::Key_Space});
    QVERIFY(isOpen() && saysWhy());
}

void WindowTest::protectingWhatWasSeen() {
    Desk desk(MacSection::Home);
    desk.installed.applications = {{u"Writer"_s, u"org.example.Writer"_s, {}}};
    desk.run(u"Recorder"_s);
    const auto chosen = [&] {
        desk.settle();
        QStringList titles;
        for (const QQuickItem *const item : desk.all("MacCandidateRow") + desk.all("MacChoice")) {
            if (item->property("selected").toBool() || item->property("on").toBool())
                titles.append(item->property("title").toString());
        }
        return titles.join(u", "_s);
    };
    const QString noWindow = u"It has no window at the moment. Kestrin can only ask it while it has one."_s;
    ProtectionWindow &window = desk.shown->window;
    window.protectApp(u"pw-record"_s, u"audio.pw"_s, {mic, screen});
    QCOMPARE(chosen(), u"pw-record, Microphone, Screen capture, Keep closed"_s);
    QVERIFY(desk.says(noWindow));
    // The next notice is what somebody wants now.
    window.protectApp(u"Recorder"_s, {}, {mic});
    QCOMPARE(chosen(), u"Recorder, Microphone, Keep closed"_s);
    QCOMPARE(desk.titles("MacCandidateRow"), u"Recorder, Writer"_s);
    QVERIFY(!desk.says(noWindow));
    // It waits until this is done.
    window.explainFirstStart(desk.commands);
    desk.key({Qt::Key_Return});
    QCOMPARE(desk.runtime().catalog().definitions.last().displayName, u"Recorder"_s);
    desk.settle();
    QCOMPARE(desk.all("MacFirstStartDialog").size(), 1);
    window.protectApp(u"pw-record"_s, u"audio.pw"_s, {camera});
    desk.key({Qt::Key_Escape});
    QCOMPARE(chosen(), u"pw-record, Camera, Keep closed"_s);
    desk.key({Qt::Key_Return});
    const RiskAppDefinition recorder{u"pw-record"_s, u"pw-record"_s,           {u"audio.pw"_s}, {},
                                     {camera},       RiskAppAction::keepClosed};
    QCOMPARE(desk.runtime().catalog().definitions.last(), recorder);
    // Somebody has added it meanwhile.
    window.protectApp(u"pw-record"_s, u"audio.pw"_s, {camera});
    QCOMPARE(chosen(), u"Camera, Keep closed"_s);
    QCOMPARE(desk.section(), MacSection::Home);
}

void WindowTest::removingAnApp() {
    Desk desk(MacSection::Apps);
    desk.window().resize(1180, 1700);
    for (const QString &name : {u"Notes"_s, u"Writer"_s, u"Paint"_s})
        QVERIFY(desk.runtime().addOwnApplication({.name = name}).isKept());
    const auto rows = [&] { return desk.titles("MacRiskDefinitionRow").section(u", "_s, 11); };
    const QString all = u"Otter AI, Notes, Writer, Paint"_s;
    const QString without = u"Otter AI, Notes, Paint"_s;
    // A built-in one stays.
    for (const auto &[row, left] : {std::pair{11, all}, std::pair{13, without}}) {
        desk.all("KestrinToggle").at(row)->forceActiveFocus();
        desk.key({Qt::Key_Delete});
        QCOMPARE(rows(), left);
    }
    QVERIFY(desk.says(u"Writer was removed."_s) && desk.says(u"14 selected"_s));
    desk.press("KestrinSecondaryButton", u"Undo"_s);
    QCOMPARE(rows(), all);
    QVERIFY(desk.says(u"15 selected"_s) && !desk.says(u"Writer was removed."_s));
    // By the mouse, and not by a press beside it.
    for (const bool isWanted : {false, true}) {
        QQuickItem *const row = desk.one("MacRiskDefinitionRow", u"Writer"_s);
        row->parentItem()->forceActiveFocus();
        desk.settle();
        QTest::mouseClick(&desk.window(), Qt::RightButton, {}, row->mapToScene({60, 20}).toPoint());
        desk.settle();
        if (isWanted)
            desk.press("KestrinSecondaryButton", u"Remove"_s);
        else
            desk.key({Qt::Key_Escape});
        QCOMPARE(rows(), isWanted ? without : all);
        QCOMPARE(desk.all("MacRowMenu").size(), 0);
    }
    // One that was the only one selected, before nothing was and everything is protected.
    desk.settings.save({true, {u"paint"_s}});
    QTRY_VERIFY(desk.says(u"1 selected"_s));
    desk.state().property("ownApps").value<MacOwnApps *>()->remove(u"paint"_s);
    QCOMPARE(desk.settings.load().protectedDefinitionIDs, QSet<QString>());
    desk.press("KestrinSecondaryButton", u"Undo"_s);
    QCOMPARE(desk.settings.load().protectedDefinitionIDs, QSet<QString>{u"paint"_s});
}

void WindowTest::hundredsOfApps() {
    Desk desk(MacSection::Home);
    QList<RiskAppDefinition> own;
    for (int i = 0; i < 1000; ++i)
        own.append({u"own-%1"_s.arg(i), u"Own %1"_s.arg(i), {}, {}, {}, RiskAppAction::quit});
    samples::write(desk.support() + u"/own-applications.json"_s, encodeJson(RiskAppCatalog{own}));
    QTRY_COMPARE(desk.runtime().catalog().definitions.size(), 1012);
    desk.show(MacSection::Apps);
    // Nobody waits for those that are not in sight, and they come once they are.
    desk.key({Qt::CTRL | Qt::Key_End});
    QTRY_VERIFY(desk.titles("MacRiskDefinitionRow").contains(u"Own 999"_s));
    QVERIFY(desk.all("MacRiskDefinitionRow").size() < 200);
    desk.key({Qt::CTRL | Qt::Key_Home});
    QTRY_VERIFY(desk.titles("MacRiskDefinitionRow").startsWith(u"Zoom, "_s));
}

/// Switched from elsewhere while they are looked at.
void WindowTest::schedules() {
    const Desk desk(MacSection::Schedule);
    QStringList expected;
    int enabled = 0;
    for (const shared::ModePreset &preset : QList(desk.runtime().modes())) {
        QVERIFY(desk.runtime().setMode(preset.id, !preset.enabled).isKept());
        expected.append(preset.enabled ? u"false"_s : u"true"_s);
        enabled += preset.enabled ? 0 : 1;
    }
    QCOMPARE(desk.values("MacScheduleCard", "on"), expected);
    QVERIFY(desk.one("KestrinStatusPill", u"%1 enabled"_s.arg(enabled)));
}

void WindowTest::activity() {
    using Kind = MacProtectionEventKind;
    const Desk desk(MacSection::Activity);
    const auto append = [&desk](Kind kind, const QString &message, const std::optional<QString> &name = {}) {
        desk.runtime().logStore().append(MacProtectionEvent::create(desk.now, kind, message, name));
    };
    append(Kind::dryRun, u"Too old."_s);
    for (const Kind kind : foundation::allCases<Kind>())
        append(kind, u"A sentence."_s);
    append(Kind::dryRun, u"word "_s.repeated(400), u""_s);
    QTRY_COMPARE(desk.titles("MacEngineEventRow"),
                 u", Action failed, Preview, Quit requested, Relaunch detected, Protected app matched, "
                 "Privacy Mode Off, Privacy Mode On"_s);
    // A message is cut after its second line.
    QVERIFY(desk.all("MacEngineEventRow").first()->height() < 90);
}

void WindowTest::access() {
    const Desk desk(MacSection::Access);
    QDesktopServices::setUrlHandler(u"https"_s, this, "takeLink");
    QCOMPARE(desk.one("MacSettingRow", u"Schedules"_s)->property("tone").toInt(),
             static_cast<int>(KestrinTone::Attention));
    desk.press("MacSettingRow", u"Privacy guide"_s);
    desk.press("MacSettingRow", u"Help"_s);
    QCOMPARE(m_links, (QStringList{u"/privacy"_s, u"/support"_s}));
    for (const auto &[title, section] :
         {std::pair(u"Selected Mac apps"_s, MacSection::Apps),
          std::pair(u"Schedules"_s, MacSection::Schedule), std::pair(u"Activity log"_s, MacSection::Activity),
          std::pair(u"iPhone connection"_s, MacSection::Connect)}) {
        desk.select(MacSection::Access);
        desk.press("MacSettingRow", title);
        QCOMPARE(desk.section(), section);
    }
}

void WindowTest::oddNames() {
    Desk desk(MacSection::Home);
    // The engine matches by identifier; the name is whatever the application says.
    for (const QString &name :
         {u"A name that does not end "_s.repeated(12), u"\u05d6\u05d5\u05dd \u05dc\u05e4\u05d2"_s})
        desk.workspace.add(samples::running(name, desk.nextPid++, u"us.zoom.xos"_s));
    desk.show(MacSection::Apps);
    const QList<QQuickItem *> rows = desk.all("MacLiveRiskMatchRow");
    QCOMPARE(rows.size(), 2);
    QVERIFY(rows.at(0)->height() > rows.at(1)->height());
    QCOMPARE(rows.at(1)->y(), rows.at(0)->height());
    for (QQuickItem *const row : rows) {
        const QQuickItem *const name = samples::itemsOf("KestrinText", row).first();
        const QQuickItem *const pill = samples::itemsOf("KestrinStatusPill", row).last();
        const double edge = pill->mapToScene({}).x();
        QVERIFY(name->mapToScene({name->width(), 0}).x() <= edge);
        QVERIFY(edge + pill->width() < 1180 - 28);
    }
}

void WindowTest::listChanges() {
    const std::tuple<QString, QString, int, int> changes[] = {
        // Before and after, and how many are inserted and removed.
        {u"a b c"_s, u"n a b"_s, 1, 1}, {u"a b c"_s, u"c a b"_s, 0, 0}, {u"a b c"_s, u"b"_s, 0, 2},
        {u""_s, u"a b"_s, 2, 0},        {u"a a b"_s, u"b a"_s, 0, 1},   {u"a b"_s, u"b b a"_s, 1, 0},
    };
    for (const auto &[before, after, insertions, removals] : changes) {
        RecordListModel model;
        const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        model.setRows(rowsOf(before));
        const QSignalSpy inserted(&model, &RecordListModel::rowsInserted);
        const QSignalSpy removed(&model, &RecordListModel::rowsRemoved);
        const QSignalSpy changed(&model, &RecordListModel::dataChanged);
        QList<PageRow> rows = rowsOf(after);
        model.setRows(rows);
        QStringList ids;
        for (int row = 0; row < model.rowCount(); ++row)
            ids.append(model.data(model.index(row), model.roleNames().key("identifier")).toString());
        QCOMPARE(ids.join(u' '), after);
        QVERIFY(inserted.size() == insertions && removed.size() == removals && changed.isEmpty());
        rows.last().on = true;
        model.setRows(rows);
        QCOMPARE(changed.size(), 1);
        QCOMPARE(changed.first().first().toModelIndex().row(), rows.size() - 1);
    }
}

void WindowTest::noticesOnceInTenSeconds() {
    using Kind = MacProtectionEventKind;
    const std::tuple<Kind, std::optional<QString>, std::chrono::milliseconds, bool> events[] = {
        {Kind::quitRequested, u"Zoom"_s, 0s, true},
        {Kind::quitRequested, u"Otter AI"_s, 1s, true},
        {Kind::quitRequested, u"Zoom"_s, 9999ms, false},
        // Counted from the one that was shown.
        {Kind::quitRequested, u"Zoom"_s, 10s, true},
        {Kind::quitRequested, u"Otter AI"_s, 10s, false},
        // Enforcing was switched on; somebody could not be asked; nobody was.
        {Kind::quitRequested, {}, 60s, false},
        {Kind::actionFailed, u"Zoom"_s, 60s, false},
        {Kind::dryRun, u"Zoom"_s, 60s, false},
    };
    QuitNotices notices;
    for (const auto &[kind, name, after, isDue] : events)
        QCOMPARE(notices.isDue(MacProtectionEvent::create(systemTime(), kind, u"x"_s, name),
                               QuitNotices::Time{} + after),
                 isDue);
}

void WindowTest::noticesOfUses() {
    Desk desk(MacSection::Home);
    NoticeLimit::Time now{};
    UseNotices notices(desk.shown->protection, 30ms, [&now] { return now; });
    QStringList told;
    const auto tell = [&](const QString &how) {
        return [&, how](const DeviceUse &use) {
            told.append(use.localizedName + u' ' + rawValue(use.category) + how +
                        (notices.isUnknown(use) ? u"?"_s : QString()));
        };
    };
    connect(&notices, &UseNotices::began, this, tell({}));
    connect(&notices, &UseNotices::goingOn, this, tell(u" still"_s));
    const auto news = [&] { return std::exchange(told, {}).join(u", "_s); };
    desk.shown->protection.liveUse.start();
    QCoreApplication::processEvents();
    const DeviceUse pw = useOf(u"pw-record"_s, mic);
    const DeviceUse zoom = useOf(u"Zoom"_s, camera, 78);
    desk.begin(pw);
    desk.begin(useOf(u"pw-record"_s, camera));
    desk.restart(pw);
    QCOMPARE(notices.categoriesOf(pw), (QList{mic, camera}));
    now += 59s;
    desk.restart(pw);
    QCOMPARE(news(), u"pw-record microphone?, pw-record camera?"_s);
    now += 1s;
    desk.restart(pw);
    desk.begin(useOf(u"Safari"_s, mic, 79));
    desk.begin(useOf(u"Kestrin"_s, mic, 80));
    QCOMPARE(news(), u"pw-record microphone?, Safari microphone, Kestrin microphone"_s);

    // Nobody was asked in a preview.
    desk.workspace.add(samples::running(u"Zoom"_s, 90, u"us.zoom.xos"_s));
    desk.workspace.add(samples::running(u"FaceTime"_s, 91));
    desk.begin(zoom);
    desk.runtime().runLiveCheck();
    QTest::qWait(60);
    QCOMPARE(news(), u"Zoom camera"_s);
    desk.runtime().setEnforceActions(true);
    QTRY_VERIFY(!told.isEmpty());
    QCOMPARE(news(), u"Zoom camera still"_s);
    QCOMPARE(desk.workspace.terminationRequests(), (QList<qint32>{90, 91}));
    // Nobody else is asked, and it is news that it goes on.
    QCOMPARE(notices.askAgain(zoom), QString());
    QCOMPARE(desk.workspace.terminationRequests(), (QList<qint32>{90, 91, 90}));
    QTRY_VERIFY(!told.isEmpty());
    QCOMPARE(news(), u"Zoom camera still"_s);
    // Whoever begins after he was asked goes on too; who has ended does not.
    desk.begin(useOf(u"FaceTime"_s, camera, 91));
    QTRY_COMPARE(told.size(), 2);
    QCOMPARE(news(), u"FaceTime camera, FaceTime camera still"_s);
    now += 60s;
    // Nobody offers to ask one again that is allowed by now.
    Q_EMIT desk.runtime().quitRequested(
        MacProtectionEvent::create(desk.now, MacProtectionEventKind::quitRequested, u"x"_s, u"Safari"_s));
    desk.runtime().runLiveCheck();
    desk.end(zoom);
    QTRY_VERIFY(!told.isEmpty());
    QCOMPARE(news(), u"FaceTime camera still"_s);
    desk.workspace.remove(90);
    QCOMPARE(notices.askAgain(zoom), u"Zoom cannot be asked to quit now."_s);
    desk.state().setPrivacyModeOn(false);
    QCOMPARE(notices.askAgain(useOf(u"FaceTime"_s, camera, 91)), u"FaceTime cannot be asked to quit now."_s);

    // Whoever calls himself otherwise each time does not fill the screen.
    desk.state().setPrivacyModeOn(true);
    now += 60s;
    for (int i = 0; i < 50; ++i)
        desk.begin(useOf(QString::number(i), mic, 100 + i));
    QCOMPARE(told.size(), 20);
}

void WindowTest::namesFromOutside() {
    const std::pair<QString, QString> names[] = {
        {u"Zoom"_s, u"Zoom"_s},
        {{}, {}},
        {u"A\u202egpj\n\0."_s, u"A\\u202egpj\\u000a\\u0000."_s},
        // Kept apart, and only with controls of our own.
        {u"\u05d6\u05d5\u05dd!"_s, u"\u2068\u05d6\u05d5\u05dd!\u2069"_s},
        {u"\u05d6\u2069!"_s, u"\u2068\u05d6\\u2069!\u2069"_s},
    };
    for (const auto &[name, shown] : names) {
        const PageRow row = rowOf(MacProtectionEvent::create(
            systemTime(), MacProtectionEventKind::quitRequested, name + u" was asked\n."_s, name));
        QCOMPARE(row.title, shown);
        QCOMPARE(row.subtitle, shown + u" was asked\\u000a."_s);
    }
}

KESTRIN_TEST(WindowTest)

#include "tst_window.moc"
