// Makes pictures of the pages over a made-up afternoon.
//
//   kestrin-pictures FOLDER [SCENE...]            every page, in both appearances and several sizes
//   kestrin-pictures --renew STORED               those that are kept with the source
//   kestrin-pictures --compare STORED DIFFERENT   compares with those; what looks different goes to a folder

#include "design/DesktopPreferences.h"
#include "design/KestrinAppearance.h"
#include "tests/app/StoredPictures.h"
#include "tests/support/Files.h"
#include "tests/support/Items.h"
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

using Prepare = std::function<void(samples::WindowHome &)>;

/// What is seen on the pages: a name for the file, the section, and what is done before. Some are stored, in
/// one of the appearances.
struct Scene {
    QString name;
    MacSection section = MacSection::Home;
    Prepare prepare;
    QString stored;
    /// What is done once it is shown.
    Prepare then = {};
    /// A file that describes a window of its own, which is seen instead.
    QString apart = {};
};

void runUsualApplications(samples::WindowHome &home) {
    qint32 pid = 2000;
    for (const auto &[name, id] :
         std::initializer_list<std::pair<QString, QString>>{{u"Zoom"_s, u"us.zoom.xos"_s},
                                                            {u"Slack"_s, u"com.tinyspeck.slackmacgap"_s},
                                                            {u"ChatGPT"_s, u"com.openai.chat"_s},
                                                            {u"Google Chrome"_s, u"com.google.Chrome"_s},
                                                            {u"OBS Studio"_s, u"com.obsproject.obs-studio"_s},
                                                            {u"FaceTime"_s, u"com.apple.FaceTime"_s}})
        home.workspace.add(samples::running(name, pid++, id));
    for (const QString &name : {u"Files"_s, u"Text Editor"_s, u"Terminal"_s, u"Music"_s, u"Calendar"_s})
        home.workspace.add(samples::running(name, pid++));
}

void passAnAfternoon(samples::WindowHome &home) {
    runUsualApplications(home);
    home.defaults.setStringArray(u"kestrin.mac.enabledModeIDs"_s, {u"travel"_s, u"manual"_s});
    home.open();
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
Scene eased(Scene scene) {
    scene.name += u"-eased"_s;
    scene.stored.clear();
    scene.prepare = [prepare = scene.prepare](samples::WindowHome &home) {
        auto desktop = std::make_unique<InMemoryDesktopPreferences>();
        desktop->say({}, {}, true, 1.25);
        KestrinAppearance::shared().follow(std::move(desktop));
        prepare(home);
    };
    return scene;
}

const QList<InstalledApplication> installed{
    {u"Audacity"_s, u"audacity"_s, u"audacity"_s},
    {u"Foot"_s, u"foot"_s, u"foot"_s},
    {u"KeePassXC"_s, u"org.keepassxc.KeePassXC"_s, u"keepassxc"_s},
    {u"OBS Studio"_s, u"com.obsproject.obs-studio"_s, u"com.obsproject.Studio"_s},
    {u"Signal"_s, u"org.signal.Signal"_s, {}}};

/// As a log is after some days, in which devices were used.
void passSomeDays(samples::WindowHome &home) {
    home.installed.applications = installed;
    using Kind = MacProtectionEventKind;
    const QList<std::pair<Kind, QString>> happened{
        {Kind::relaunchDetected, u"%1 relaunched while Privacy Mode is on."_s},
        {Kind::quitRequested, u"Asked %1 to quit."_s},
        {Kind::riskAppMatched, u"%1 started using the microphone."_s},
        {Kind::riskAppMatched, u"%1 stopped using the microphone."_s},
        {Kind::actionFailed, u"%1 could not be asked to quit."_s},
        {Kind::dryRun, u"Preview: Kestrin would ask %1 to quit while Privacy Mode is on."_s},
    };
    QDateTime time = home.now.addDays(-4);
    for (int i = 0; time < home.now; ++i) {
        const InstalledApplication &app = installed.at(i / 4 % installed.size());
        const auto &[kind, message] = happened.at(i % happened.size());
        home.log.append(
            MacProtectionEvent::create(time, kind, message.arg(app.name), app.name, app.identifier));
        if (i % 11 == 0)
            home.log.append(
                MacProtectionEvent::create(time, Kind::privacyModeOn, u"Privacy Mode is on for this Mac."_s));
        time = time.addSecs(60 * (11 + i * i % 97));
    }
    home.open();
}

/// The log's window, in which keys are pressed, and things happen then.
Prepare log(const QList<QKeyCombination> &keys = {}, const Prepare &then = {}) {
    return [keys, then](samples::WindowHome &home) {
        home.openLog();
        QQuickWindow &window = home.shown->log->window();
        window.requestActivate();
        QTest::qWait(50);
        samples::pressKeys(window, keys);
        if (then)
            then(home);
    };
}

Prepare uses(const QList<std::pair<QString, MacRiskCategory>> &uses) {
    return [uses](samples::WindowHome &home) {
        home.shown->protection.liveUse.start();
        for (const auto &[name, category] : uses)
            home.deviceUses.begin({category, 100, name, {}, home.now});
        QTest::qWait(20);
    };
}

QList<Scene> scenes() {
    const auto enforcing = [](samples::WindowHome &home) {
        passAnAfternoon(home);
        home.shown->protection.state.setEnforceActions(true);
    };
    const auto nothing = [](samples::WindowHome &home) { home.open(); };
    const auto off = [](samples::WindowHome &home) {
        passAnAfternoon(home);
        home.shown->protection.state.setPrivacyModeOn(false);
    };
    const auto blind = [](samples::WindowHome &home) {
        home.workspace.setSight(
            {Sight::Extent::partial,
             u"Plasma does not let this copy of Kestrin see what runs, so only applications of the older kind, X11, can be seen."_s,
             u"Allow it with \"kestrinctl desktop enable\", or install the package."_s, Sight::Help::allow});
        passAnAfternoon(home);
    };
    const auto withOwn = [](samples::WindowHome &home) {
        home.installed.applications = installed;
        passAnAfternoon(home);
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
    const auto first = [](const QList<QKeyCombination> &keys) {
        return [keys](samples::WindowHome &home) {
            home.shown->window.explainFirstStart(home.commands);
            samples::pressKeys(home.window(), keys);
        };
    };
    const auto removal = [](samples::WindowHome &home) {
        home.shown->protection.state.property("ownApps").value<MacOwnApps *>()->remove(u"signal"_s);
        QTest::qWait(50);
        samples::pressKeys(home.window(), {Qt::CTRL | Qt::Key_End});
    };
    const auto damaged = [](samples::WindowHome &home) {
        samples::write(home.log.file(), "[{\"id\":");
        home.open();
    };
    // Down among the events, with some selected, while others come.
    const QList<QKeyCombination> reading =
        QList<QKeyCombination>(20, Qt::Key_Down) + QList<QKeyCombination>(3, Qt::SHIFT | Qt::Key_Down);
    const auto news = [](samples::WindowHome &home) {
        home.runtime().setProtectedDefinitions({u"safari"_s, u"zoom"_s}, false);
    };
    const auto exporting = [news](samples::WindowHome &home) {
        news(home);
        home.shown->log->log().setHasFileDialog();
        samples::pressKeys(home.shown->log->window(),
                           {Qt::Key_Tab, Qt::Key_Tab, Qt::Key_Tab, Qt::Key_Return});
    };
    const auto filtered = [](samples::WindowHome &home) {
        home.shown->log->log().toggleApp(0);
        home.shown->log->log().toggleApp(3);
    };
    const auto usesLogged = [](samples::WindowHome &home) {
        home.shown->log->log().toggleKind(static_cast<int>(LogKind::deviceUse));
    };
    using enum MacRiskCategory;
    using enum MacSection;
    const auto usesMany = [](samples::WindowHome &home) {
        home.shown->protection.state.pauseForAnHour();
        QList<std::pair<QString, MacRiskCategory>> many{{u"Zoom"_s, microphone}, {u"Zoom"_s, camera}};
        many.append({u"An application with a name that does not end where others do"_s, screenCapture});
        for (const QString &name : {u"Firefox"_s, u"Audacity"_s, u"OBS Studio"_s})
            many.append({name, microphone});
        uses(many)(home);
    };
    const auto protecting = [](samples::WindowHome &home) {
        home.shown->window.protectApp(u"pw-record"_s, {}, {microphone, screenCapture});
    };
    // The stored ones are every page in each of its states, every kind of row, both appearances.
    QList<Scene> all{
        {u"home"_s, Home, passAnAfternoon, u"light"_s},
        {u"devices"_s, Devices, passAnAfternoon, u"dark"_s},
        {u"apps"_s, Apps, passAnAfternoon, u"dark"_s},
        {u"schedule"_s, Schedule, passAnAfternoon, u"light"_s},
        {u"activity"_s, Activity, passAnAfternoon, u"dark"_s},
        {u"access"_s, Access, passAnAfternoon, u"light"_s},
        {u"connect"_s, Connect, passAnAfternoon, u"dark"_s},
        {u"home-off"_s, Home, off, u"dark"_s},
        {u"apps-off"_s, Apps, off, u"dark"_s},
        {u"apps-enforcing"_s, Apps, enforcing, u"light"_s},
        {u"apps-empty"_s, Apps, nothing, u"light"_s},
        {u"schedule-none"_s, Schedule, nothing, u"dark"_s},
        {u"activity-empty"_s, Activity, nothing, u"light"_s},
        {u"access-enforcing"_s, Access, enforcing, u"dark"_s},
        {u"connect-enforcing"_s, Connect, enforcing, {}},
        {u"apps-blind"_s, Apps, blind, {}},
        {u"apps-own"_s, Apps, withOwn, {}, removal},
        {u"add-app"_s, Apps, withOwn, {}, addDialog},
        {u"first-enforcing"_s, Home, firstStart, {}, first({Qt::Key_Tab, Qt::Key_Tab, Qt::Key_Space})},
        {u"first-schedules"_s, Home, firstStart, {}, first({Qt::Key_Return})},
        {u"first-login"_s, Home, firstStart, {}, first({Qt::Key_Return, Qt::Key_Return})},
        {u"closing-question"_s, Home, firstStart, {}, {}, u"MacClosingQuestion.qml"_s},
        {u"uses-many"_s, Activity, passAnAfternoon, {}, usesMany},
        {u"uses-blind"_s, Home, blind, {}, uses({{u"Zoom"_s, microphone}, {u"Zoom"_s, camera}})},
        {u"protect-seen"_s, Home, withOwn, {}, protecting},
        {u"log"_s, Home, passSomeDays, {}, log()},
        {u"log-uses"_s, Home, passSomeDays, {}, log({}, usesLogged)},
        {u"log-found"_s, Home, passSomeDays, {}, log({Qt::Key_K, Qt::Key_E, Qt::Key_E, Qt::Key_P})},
        {u"log-lost"_s, Home, passSomeDays, {}, log({Qt::Key_X, Qt::Key_X})},
        {u"log-empty"_s, Home, nothing, {}, log()},
        {u"log-damaged"_s, Home, damaged, {}, log()},
        {u"log-reading"_s, Home, passSomeDays, {}, log(reading, news)},
        {u"log-kinds"_s, Home, passSomeDays, {}, log({Qt::Key_Tab, Qt::Key_Down, Qt::Key_Down}, filtered)},
        {u"log-apps"_s, Home, passSomeDays, {}, log({Qt::Key_Tab, Qt::Key_Tab, Qt::Key_Down}, filtered)},
        {u"log-export"_s, Home, passSomeDays, {}, log(reading, exporting)},
    };
    const QString alsoEased =
        u"home devices apps schedule activity access connect first-schedules closing-question "
        "uses-many protect-seen log"_s;
    for (const Scene &scene : QList(all)) {
        if (alsoEased.split(u' ').contains(scene.name))
            all.append(eased(scene));
    }
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

void save(const QImage &picture, const QDir &folder, const QString &name) {
    const QString file = folder.filePath(name + u".png"_s);
    if (!folder.mkpath(u"."_s) || !picture.save(file))
        qFatal("%s cannot be written.", qPrintable(file));
}

void drawAll(const QDir &folder, const QStringList &wanted) {
    const QList<std::pair<QString, QSize>> sizes{
        {u"usual"_s, {1180, 760}}, {u"least"_s, least}, {u"whole"_s, {1180, 1480}}};
    for (const QString &appearance : {u"light"_s, u"dark"_s}) {
        for (const Scene &scene : scenes()) {
            if (!wanted.isEmpty() && !wanted.contains(scene.name))
                continue;
            for (const auto &[label, size] : sizes)
                save(draw(scene, appearance, size), folder, scene.name + u'-' + appearance + u'-' + label);
        }
    }
}

/// Stores pictures, or compares with those that are, where there is a folder for what looks different.
int goThroughStored(const QDir &folder, const std::optional<QDir> &different) {
    using samples::Verdict;
    constexpr int notCompared = 77;
    QList<Verdict> verdicts;
    for (const Scene &scene : scenes()) {
        if (scene.stored.isEmpty())
            continue;
        const QString name = scene.name + u'-' + scene.stored;
        const QImage picture = draw(scene, scene.stored, least);
        verdicts.append(different ? samples::comparePicture(folder, name, picture)
                                  : samples::storePicture(folder, name, picture));
        if (different && verdicts.last() == Verdict::different)
            save(picture, *different, name);
    }
    return verdicts.contains(Verdict::different)    ? 1
           : verdicts.contains(Verdict::otherFaces) ? notCompared
                                                    : 0;
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
        return goThroughStored(QDir(arguments.at(2)), {});
    if (arguments.size() == 4 && arguments.at(1) == u"--compare")
        return goThroughStored(QDir(arguments.at(2)), QDir(arguments.at(3)));
    if (arguments.size() < 2 || arguments.at(1).startsWith(u'-')) {
        std::fputs(
            "usage: kestrin-pictures FOLDER [SCENE...] | --renew STORED | --compare STORED DIFFERENT\n",
            stderr);
        return 2;
    }
    drawAll(QDir(arguments.at(1)), arguments.mid(2));
    return 0;
}
