// Makes a picture of every page, in both appearances and at the window's usual and least sizes, over a
// made-up afternoon: kestrin-pictures FOLDER

#include "design/KestrinAppearance.h"
#include "tests/support/WindowHome.h"

#include <QDir>
#include <QGuiApplication>
#include <QTest>

#include <cstdio>

using namespace Qt::StringLiterals;
using namespace kestrin;
using namespace kestrin::design;
using namespace kestrin::app;

namespace {

/// What is seen on the pages: a name for the file, the section, and what is done before.
struct Scene {
    QString name;
    MacSection section = MacSection::Home;
    std::function<void(samples::WindowHome &)> prepare;
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
    const auto nothing = [](samples::WindowHome &home) { home.open(); };
    const auto off = [afternoon](samples::WindowHome &home) {
        afternoon(home);
        home.shown->protection.state.setPrivacyModeOn(false);
    };
    return {
        {u"home"_s, MacSection::Home, afternoon},
        {u"devices"_s, MacSection::Devices, afternoon},
        {u"apps"_s, MacSection::Apps, afternoon},
        {u"schedule"_s, MacSection::Schedule, afternoon},
        {u"activity"_s, MacSection::Activity, afternoon},
        {u"access"_s, MacSection::Access, afternoon},
        {u"connect"_s, MacSection::Connect, afternoon},
        {u"home-off"_s, MacSection::Home, off},
        {u"apps-off"_s, MacSection::Apps, off},
        {u"apps-enforcing"_s, MacSection::Apps, enforcing},
        {u"apps-empty"_s, MacSection::Apps, nothing},
        {u"schedule-none"_s, MacSection::Schedule, nothing},
        {u"activity-empty"_s, MacSection::Activity, nothing},
        {u"access-enforcing"_s, MacSection::Access, enforcing},
        {u"connect-enforcing"_s, MacSection::Connect, enforcing},
    };
}

bool takePicture(const QDir &folder, const Scene &scene, const QString &appearance, const QString &label,
                 QSize size) {
    samples::WindowHome home;
    scene.prepare(home);
    home.window().resize(size);
    home.select(scene.section);
    // Two turns of layouts that wait for the next frame.
    QTest::qWait(50);
    const QString file = folder.filePath(scene.name + u'-' + appearance + u'-' + label + u".png"_s);
    if (home.window().grabWindow().save(file))
        return true;
    std::fprintf(stderr, "%s cannot be written.\n", qPrintable(file));
    return false;
}

} // namespace

int main(int argc, char **argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    if (!qEnvironmentVariableIsSet("QT_QUICK_BACKEND"))
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    QGuiApplication application(argc, argv);
    QGuiApplication::setQuitOnLastWindowClosed(false);
    const QStringList arguments = QGuiApplication::arguments();
    if (arguments.size() < 2 || !QDir().mkpath(arguments.at(1))) {
        std::fputs("usage: kestrin-pictures FOLDER [SCENE...]\n", stderr);
        return 2;
    }
    const QDir folder(arguments.at(1));
    const QStringList wanted = arguments.mid(2);
    const QList<std::pair<QString, QSize>> sizes{
        {u"usual"_s, {1180, 760}}, {u"least"_s, {1040, 680}}, {u"whole"_s, {1180, 1480}}};
    bool all = true;
    for (const QString &appearance : {u"light"_s, u"dark"_s}) {
        KestrinAppearance::shared().setPreference(*KestrinAppearance::preferenceFromText(appearance));
        for (const Scene &scene : scenes()) {
            if (!wanted.isEmpty() && !wanted.contains(scene.name))
                continue;
            for (const auto &[label, size] : sizes)
                all = takePicture(folder, scene, appearance, label, size) && all;
        }
    }
    return all ? 0 : 1;
}
