// Makes pictures of the pages over a made-up afternoon.
//
//   kestrin-pictures FOLDER [SCENE...]            every page, in both appearances and several sizes
//   kestrin-pictures --renew STORED               those that are kept with the source
//   kestrin-pictures --compare STORED DIFFERENT   compares with those; what looks different goes to a folder

#include "design/DesktopPreferences.h"
#include "design/KestrinAppearance.h"
#include "tests/app/StoredPictures.h"
#include "tests/support/WindowHome.h"

#include <QDir>
#include <QGuiApplication>
#include <QIcon>
#include <QLocale>
#include <QTest>

#include <cstdio>

using namespace Qt::StringLiterals;
using namespace kestrin;
using namespace kestrin::design;
using namespace kestrin::app;
using namespace kestrin::engine;
using namespace kestrin::runtime;

namespace {

/// What is seen on the pages: a name for the file, the section, and what is done before. Some are stored, in
/// one of the appearances.
struct Scene {
    QString name;
    MacSection section = MacSection::Home;
    std::function<void(samples::WindowHome &)> prepare;
    QString stored;
    /// What is done once it is shown.
    std::function<void(samples::WindowHome &)> then = {};
    /// A file that describes a window of its own, which is seen instead.
    QString apart = {};
};

void runUsualApplications(samples::WindowHome &home) {
    qint32 pid = 2000;
    for (const auto &[name, id] : std::initializer_list<std::pair<QString, QString>>{
             {u"Zoom"_s, u"us.zoom.xos"_s},
             {u"Slack"_s, u"com.tinyspeck.slackmacgap"_s},
             {u"ChatGPT"_s, u"com.openai.chat"_s},
             {u"Google Chrome"_s, u"com.google.Chrome"_s},
             {u"OBS Studio"_s, u"com.obsproject.obs-studio"_s},
             {u"FaceTime"_s, u"com.apple.FaceTime"_s},
         })
        home.workspace.add(samples::running(name, pid++, id));
    for (const QString &name : {u"Files"_s, u"Text Editor"_s, u"Terminal"_s, u"Music"_s, u"Calendar"_s})
        home.workspace.add(samples::running(name, pid++));
}

void passAnAfternoon(samples::WindowHome &home) {
    home.runtime().setProtectedDefinition(u"safari"_s, false);
    home.now = home.now.addSecs(60 * 47);
    home.runtime().runLiveCheck();
    home.now = home.now.addSecs(60 * 12);
    home.workspace.launch(samples::running(u"Voice Memos"_s, 2090, u"com.apple.VoiceMemos"_s));
    home.now = home.now.addSecs(60 * 31);
    home.shown->protection.state.setPrivacyModeOn(false);
    home.now = home.now.addSecs(60 * 5);
    home.shown->protection.state.setPrivacyModeOn(true);
    QCoreApplication::processEvents();
}

/// For those who asked their desktop for more contrast and larger texts.
void ease() {
    auto desktop = std::make_unique<InMemoryDesktopPreferences>();
    desktop->say({}, {}, true, 1.25);
    KestrinAppearance::shared().follow(std::move(desktop));
}

/// As a log is after some days.
void passSomeDays(samples::WindowHome &home) {
    home.installed.applications = {{u"Audacity"_s, u"audacity"_s, u"audacity"_s},
                                   {u"Foot"_s, u"foot"_s, u"foot"_s},
                                   {u"KeePassXC"_s, u"org.keepassxc.KeePassXC"_s, u"keepassxc"_s}};
    using Kind = MacProtectionEventKind;
    const QList<std::pair<QString, QString>> apps{{u"Zoom"_s, u"us.zoom.xos"_s},
                                                  {u"Audacity"_s, u"audacity"_s},
                                                  {u"Google Chrome"_s, u"com.google.Chrome"_s},
                                                  {u"KeePassXC"_s, u"org.keepassxc.KeePassXC"_s},
                                                  {u"Foot"_s, u"foot"_s}};
    QDateTime time = home.now.addDays(-4);
    for (int i = 0; time < home.now; ++i) {
        const QString &name = apps.at(i / 3 % apps.size()).first;
        const QString &identifier = apps.at(i / 3 % apps.size()).second;
        const auto append = [&](Kind kind, const QString &message) {
            home.log.append(MacProtectionEvent::create(time, kind, message, name, identifier));
        };
        if (i % 11 == 0)
            home.log.append(MacProtectionEvent::create(
                time, i % 2 == 0 ? Kind::privacyModeOn : Kind::privacyModeOff,
                i % 2 == 0 ? u"Privacy Mode is on for this Mac."_s : u"Privacy Mode is off for this Mac."_s));
        else if (i % 3 == 0)
            append(Kind::relaunchDetected, name + u" relaunched while Privacy Mode is on."_s);
        else if (i % 7 == 0)
            append(Kind::actionFailed, name + u" could not be asked to quit."_s);
        else if (i % 5 == 0)
            append(Kind::dryRun,
                   u"Preview: Kestrin would ask "_s + name + u" to quit while Privacy Mode is on."_s);
        else
            append(Kind::quitRequested, u"Asked "_s + name + u" to quit."_s);
        time = time.addSecs(60 * (11 + i * i % 97));
    }
}

QList<Scene> scenes() {
    const auto afternoon = [](samples::WindowHome &home) {
        runUsualApplications(home);
        home.defaults.setStringArray(u"kestrin.mac.enabledModeIDs"_s, {u"travel"_s, u"manual"_s});
        home.open();
        passAnAfternoon(home);
    };
    const auto enforcing = [afternoon](samples::WindowHome &home) {
        afternoon(home);
        home.shown->protection.state.setEnforceActions(true);
    };
    const auto eased = [afternoon](samples::WindowHome &home) {
        ease();
        afternoon(home);
    };
    const auto nothing = [](samples::WindowHome &home) { home.open(); };
    const auto off = [afternoon](samples::WindowHome &home) {
        afternoon(home);
        home.shown->protection.state.setPrivacyModeOn(false);
    };
    const auto blind = [afternoon](samples::WindowHome &home) {
        home.workspace.setSight(
            {Sight::Extent::partial,
             u"Plasma does not let this copy of Kestrin see what runs, so only applications of the older kind, X11, can be seen."_s,
             u"Allow it with \"kestrinctl desktop enable\", or install the package."_s, Sight::Help::allow});
        afternoon(home);
    };
    const auto unselected = [](samples::WindowHome &home) {
        home.open();
        auto &runtime = home.shown->protection.runtime;
        runtime.setProtectedDefinitions(runtime.sortedProtectedDefinitionIDs(), false);
    };
    const auto withOwn = [afternoon](samples::WindowHome &home) {
        home.installed.applications = {
            {u"Audacity"_s, u"audacity"_s, u"audacity"_s},
            {u"Foot"_s, u"foot"_s, u"foot"_s},
            {u"KeePassXC"_s, u"org.keepassxc.KeePassXC"_s, u"keepassxc"_s},
            {u"OBS Studio"_s, u"com.obsproject.obs-studio"_s, u"com.obsproject.Studio"_s},
            {u"Signal"_s, u"org.signal.Signal"_s, {}}};
        afternoon(home);
        for (const QString &name : {u"Signal"_s, u"Discord"_s})
            home.runtime().addOwnApplication({.name = name, .categories = {MacRiskCategory::videoCall}});
    };
    const auto addDialog = [](samples::WindowHome &home) {
        QMetaObject::invokeMethod(&home.root(), "openDialog", Q_ARG(QQuickItem *, nullptr));
    };
    const auto firstStart = [](samples::WindowHome &home) {
        home.defaults.setStringArray(u"kestrin.mac.enabledModeIDs"_s, {u"sleep"_s, u"away"_s, u"manual"_s});
        home.commands.setTray(true);
        home.open();
    };
    const auto firstStartEased = [firstStart](samples::WindowHome &home) {
        ease();
        firstStart(home);
    };
    const auto firstStartAt = [](int step) {
        return [step](samples::WindowHome &home) {
            home.shown->window.explainFirstStart(home.commands);
            for (int i = 0; i < step; ++i)
                QTest::keyClick(&home.window(), Qt::Key_Return);
        };
    };
    const auto enforcingChosen = [firstStartAt](samples::WindowHome &home) {
        firstStartAt(0)(home);
        for (const auto key : {Qt::Key_Tab, Qt::Key_Tab, Qt::Key_Space})
            QTest::keyClick(&home.window(), key);
    };
    const auto removal = [](samples::WindowHome &home) {
        home.shown->protection.state.property("ownApps").value<MacOwnApps *>()->remove(u"signal"_s);
        QTest::qWait(50);
        QTest::keyClick(&home.window(), Qt::Key_End, Qt::ControlModifier);
    };
    const auto days = [](samples::WindowHome &home) {
        passSomeDays(home);
        home.open();
    };
    const auto damaged = [](samples::WindowHome &home) {
        QDir().mkpath(home.support());
        QFile file(home.support() + u"/activity-log.json"_s);
        if (file.open(QIODevice::WriteOnly))
            file.write("[{\"id\":");
        file.close();
        home.open();
    };
    const auto easedDays = [days](samples::WindowHome &home) {
        ease();
        days(home);
    };
    const auto log = [](samples::WindowHome &home) { home.openLog(); };
    const auto typed = [](samples::WindowHome &home, const QString &text) {
        home.openLog();
        QTest::keyClick(&home.shown->log->window(), Qt::Key_F, Qt::ControlModifier);
        for (const QChar letter : text)
            QTest::keyClick(&home.shown->log->window(), letter.toLatin1());
    };
    const auto found = [typed](samples::WindowHome &home) { typed(home, u"KeePass"_s); };
    const auto lost = [typed](samples::WindowHome &home) { typed(home, u"nobody"_s); };
    const auto reading = [](samples::WindowHome &home) {
        home.openLog();
        QQuickWindow &window = home.shown->log->window();
        window.requestActivate();
        QTest::qWait(50);
        for (int i = 0; i < 20; ++i)
            QTest::keyClick(&window, Qt::Key_Down);
        for (int i = 0; i < 3; ++i)
            QTest::keyClick(&window, Qt::Key_Down, Qt::ShiftModifier);
        home.runtime().setProtectedDefinition(u"safari"_s, false);
        home.runtime().setProtectedDefinition(u"zoom"_s, false);
    };
    const auto menu = [](samples::WindowHome &home, int number) {
        home.openLog();
        QQuickWindow &window = home.shown->log->window();
        home.shown->log->log().toggleApp(0);
        home.shown->log->log().toggleApp(3);
        QTest::keyClick(&window, Qt::Key_F, Qt::ControlModifier);
        for (int i = 0; i < number; ++i)
            QTest::keyClick(&window, Qt::Key_Tab);
        QTest::keyClick(&window, Qt::Key_Down);
        QTest::keyClick(&window, Qt::Key_Down);
    };
    const auto kinds = [menu](samples::WindowHome &home) { menu(home, 1); };
    const auto apps = [menu](samples::WindowHome &home) { menu(home, 2); };
    const auto exporting = [reading](samples::WindowHome &home) {
        reading(home);
        home.shown->log->log().setHasFileDialog();
        QQuickWindow &window = home.shown->log->window();
        for (int i = 0; i < 3; ++i)
            QTest::keyClick(&window, Qt::Key_Tab);
        QTest::keyClick(&window, Qt::Key_Return);
    };
    using enum MacRiskCategory;
    const auto using_ = [](samples::WindowHome &home,
                           const QList<std::pair<QString, MacRiskCategory>> &uses) {
        home.shown->protection.liveUse.start();
        for (const auto &[name, category] : uses)
            home.deviceUses.begin({category, 100, name, {}, home.now});
        QTest::qWait(20);
    };
    const auto usesOne = [using_](samples::WindowHome &home) { using_(home, {{u"Zoom"_s, microphone}}); };
    const auto usesMany = [using_](samples::WindowHome &home) {
        home.shown->protection.state.pauseForAnHour();
        const QString endless = u"An application with a name that does not end where others do"_s;
        using_(home, {{u"Zoom"_s, microphone},
                      {u"Zoom"_s, camera},
                      {endless, screenCapture},
                      {u"Firefox"_s, microphone},
                      {u"Audacity"_s, microphone},
                      {u"OBS Studio"_s, screenCapture}});
    };
    const auto usesBlind = [using_](samples::WindowHome &home) {
        using_(home, {{u"Zoom"_s, microphone}, {u"Zoom"_s, camera}});
    };
    const auto protecting = [](samples::WindowHome &home) {
        home.shown->window.protectApp(u"pw-record"_s, {}, {microphone, screenCapture});
    };
    const auto usedDays = [days](samples::WindowHome &home) {
        const DeviceUse use{microphone, 100, u"Zoom"_s, u"us.zoom.xos"_s, home.now};
        const DeviceUse shares{screenCapture, 100, u"KeePassXC"_s, u"org.keepassxc.KeePassXC"_s, home.now};
        days(home);
        for (const QString &message : {startedSentence(use), stoppedSentence(use)})
            home.log.append(MacProtectionEvent::create(home.now, MacProtectionEventKind::riskAppMatched,
                                                       message, use.localizedName, use.bundleIdentifier));
        home.log.append(MacProtectionEvent::create(home.now, MacProtectionEventKind::riskAppMatched,
                                                   startedSentence(shares), shares.localizedName,
                                                   shares.bundleIdentifier));
    };
    const auto usesLogged = [](samples::WindowHome &home) {
        home.openLog();
        home.shown->log->log().toggleKind(static_cast<int>(LogKind::deviceUse));
    };
    // The stored ones are every page in each of its states, every kind of row, both appearances.
    QList<Scene> all{
        {u"home"_s, MacSection::Home, afternoon, u"light"_s},
        {u"devices"_s, MacSection::Devices, afternoon, u"dark"_s},
        {u"apps"_s, MacSection::Apps, afternoon, u"dark"_s},
        {u"schedule"_s, MacSection::Schedule, afternoon, u"light"_s},
        {u"activity"_s, MacSection::Activity, afternoon, u"dark"_s},
        {u"access"_s, MacSection::Access, afternoon, u"light"_s},
        {u"connect"_s, MacSection::Connect, afternoon, u"dark"_s},
        {u"home-off"_s, MacSection::Home, off, u"dark"_s},
        {u"apps-off"_s, MacSection::Apps, off, u"dark"_s},
        {u"apps-enforcing"_s, MacSection::Apps, enforcing, u"light"_s},
        {u"apps-empty"_s, MacSection::Apps, nothing, u"light"_s},
        {u"schedule-none"_s, MacSection::Schedule, nothing, u"dark"_s},
        {u"activity-empty"_s, MacSection::Activity, nothing, u"light"_s},
        {u"access-enforcing"_s, MacSection::Access, enforcing, u"dark"_s},
        {u"connect-enforcing"_s, MacSection::Connect, enforcing, {}},
        {u"home-blind"_s, MacSection::Home, blind, {}},
        {u"apps-blind"_s, MacSection::Apps, blind, {}},
        {u"apps-unselected"_s, MacSection::Apps, unselected, {}},
        {u"apps-own"_s, MacSection::Apps, withOwn, {}, removal},
        {u"add-app"_s, MacSection::Apps, withOwn, {}, addDialog},
        {u"first-actions"_s, MacSection::Home, firstStart, {}, firstStartAt(0)},
        {u"first-enforcing"_s, MacSection::Home, firstStart, {}, enforcingChosen},
        {u"first-schedules"_s, MacSection::Home, firstStart, {}, firstStartAt(1)},
        {u"first-login"_s, MacSection::Home, firstStart, {}, firstStartAt(2)},
        {u"first-schedules-eased"_s, MacSection::Home, firstStartEased, {}, firstStartAt(1)},
        {u"closing-question"_s, MacSection::Home, firstStart, {}, {}, u"MacClosingQuestion.qml"_s},
        {u"uses"_s, MacSection::Home, afternoon, {}, usesOne},
        {u"uses-many"_s, MacSection::Activity, afternoon, {}, usesMany},
        {u"uses-eased"_s, MacSection::Home, eased, {}, usesMany},
        {u"uses-blind"_s, MacSection::Home, blind, {}, usesBlind},
        {u"protect-seen"_s, MacSection::Home, withOwn, {}, protecting},
        {u"protect-seen-eased"_s, MacSection::Home, eased, {}, protecting},
        {u"log"_s, MacSection::Home, days, {}, log},
        {u"log-uses"_s, MacSection::Home, usedDays, {}, usesLogged},
        {u"log-eased"_s, MacSection::Home, easedDays, {}, log},
        {u"log-found"_s, MacSection::Home, days, {}, found},
        {u"log-lost"_s, MacSection::Home, days, {}, lost},
        {u"log-empty"_s, MacSection::Home, nothing, {}, log},
        {u"log-damaged"_s, MacSection::Home, damaged, {}, log},
        {u"log-reading"_s, MacSection::Home, days, {}, reading},
        {u"log-kinds"_s, MacSection::Home, days, {}, kinds},
        {u"log-apps"_s, MacSection::Home, days, {}, apps},
        {u"log-export"_s, MacSection::Home, days, {}, exporting},
        {u"closing-question-eased"_s, MacSection::Home, firstStartEased, {}, {}, u"MacClosingQuestion.qml"_s},
    };
    for (const Scene &page : all.first(7))
        all.append({page.name + u"-eased"_s, page.section, eased, {}});
    return all;
}

constexpr QSize least(1040, 680);

QImage draw(const Scene &scene, const QString &appearance, QSize size) {
    KestrinAppearance::shared().follow(nullptr);
    KestrinAppearance::shared().setPreference(*KestrinAppearance::preferenceFromText(appearance));
    samples::WindowHome home;
    scene.prepare(home);
    home.window().resize(size);
    home.select(scene.section);
    if (scene.then)
        scene.then(home);
    std::unique_ptr<QObject> apart;
    if (!scene.apart.isEmpty())
        apart = makeObject(*home.shown->engine, scene.apart,
                           {{u"commands"_s, QVariant::fromValue(&home.commands)}});
    // Two turns of layouts that wait for the next frame.
    QTest::qWait(50);
    if (!home.shown->log)
        return (apart ? qobject_cast<QQuickWindow *>(apart.get()) : &home.window())->grabWindow();
    // The log's window is a smaller one.
    QQuickWindow &log = home.shown->log->window();
    log.resize(size == least ? log.minimumSize() : QSize(960, size.height()));
    QTest::qWait(50);
    return log.grabWindow();
}

bool save(const QImage &picture, const QDir &folder, const QString &name) {
    const QString file = folder.filePath(name + u".png"_s);
    if (folder.mkpath(u"."_s) && picture.save(file))
        return true;
    std::fprintf(stderr, "%s cannot be written.\n", qPrintable(file));
    return false;
}

int drawAll(const QDir &folder, const QStringList &wanted) {
    const QList<std::pair<QString, QSize>> sizes{
        {u"usual"_s, {1180, 760}}, {u"least"_s, least}, {u"whole"_s, {1180, 1480}}};
    bool all = true;
    for (const QString &appearance : {u"light"_s, u"dark"_s}) {
        for (const Scene &scene : scenes()) {
            if (!wanted.isEmpty() && !wanted.contains(scene.name))
                continue;
            for (const auto &[label, size] : sizes) {
                const QString name = scene.name + u'-' + appearance + u'-' + label;
                all = save(draw(scene, appearance, size), folder, name) && all;
            }
        }
    }
    return all ? 0 : 1;
}

/// Draws what is stored and gives it to `take` with its name.
void drawStored(const std::function<void(const QString &, const QImage &)> &take) {
    for (const Scene &scene : scenes()) {
        if (!scene.stored.isEmpty())
            take(scene.name + u'-' + scene.stored, draw(scene, scene.stored, least));
    }
}

int renew(const QDir &folder) {
    bool all = folder.mkpath(u"."_s);
    drawStored([&](const QString &name, const QImage &picture) {
        all = samples::storePicture(folder, name, picture) && all;
    });
    return all ? 0 : 1;
}

int compare(const QDir &folder, const QDir &different) {
    using samples::Verdict;
    constexpr int notCompared = 77;
    QList<Verdict> verdicts;
    drawStored([&](const QString &name, const QImage &picture) {
        verdicts.append(samples::comparePicture(folder, name, picture));
        if (verdicts.last() == Verdict::different)
            save(picture, different, name);
    });
    if (verdicts.contains(Verdict::different) || verdicts.contains(Verdict::missing))
        return 1;
    return verdicts.contains(Verdict::otherFaces) ? notCompared : 0;
}

} // namespace

int main(int argc, char **argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    if (!qEnvironmentVariableIsSet("QT_QUICK_BACKEND"))
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    QLocale::setDefault(QLocale::c()); // for the times of day
    QGuiApplication application(argc, argv);
    QGuiApplication::setQuitOnLastWindowClosed(false);
    // Of the applications; this platform looks for none.
    QIcon::setThemeSearchPaths({u"/usr/share/icons"_s});
    QIcon::setThemeName(u"hicolor"_s);
    const QStringList arguments = QGuiApplication::arguments();
    if (arguments.size() == 3 && arguments.at(1) == u"--renew")
        return renew(QDir(arguments.at(2)));
    if (arguments.size() == 4 && arguments.at(1) == u"--compare")
        return compare(QDir(arguments.at(2)), QDir(arguments.at(3)));
    if (arguments.size() < 2 || arguments.at(1).startsWith(u'-')) {
        std::fputs(
            "usage: kestrin-pictures FOLDER [SCENE...] | --renew STORED | --compare STORED DIFFERENT\n",
            stderr);
        return 2;
    }
    return drawAll(QDir(arguments.at(1)), arguments.mid(2));
}
