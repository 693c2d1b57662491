// kestrinctl inside this process, over an in-memory desktop and real files.

#include "cli/CommandLine.h"
#include "cli/CommandRunner.h"
#include "cli/EventFollower.h"
#include "engine/live/InMemoryDeviceUses.h"
#include "foundation/TimePhrase.h"
#include "foundation/UniversalTime.h"
#include "runtime/LiveUse.h"
#include "tests/support/Files.h"
#include "tests/support/Home.h"
#include "tests/support/TestClass.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryFile>
#include <QTimer>

#include <csignal>
#include <ctime>
#include <tuple>

using namespace Qt::StringLiterals;
using namespace kestrin;
using namespace kestrin::foundation;
using namespace kestrin::engine;
using namespace kestrin::runtime;
using namespace kestrin::cli;
using enum ExitStatus;

namespace {

QJsonObject objectOf(const QByteArray &text) {
    return QJsonDocument::fromJson(text).object();
}

struct Answer {
    ExitStatus status;
    QString out;
    QString err;

    QJsonArray array() const { return QJsonDocument::fromJson(out.toUtf8()).array(); }
    QJsonObject object() const { return objectOf(out.toUtf8()); }
    /// Whether that is all that went wrong.
    bool isOneSentence() const { return err.endsWith(u".\n") && err.count(u'\n') == 1; }
};

struct Home : samples::Home {
    bool isColourful = false;
    InMemoryInstalledApplications installed;
    InMemoryDeviceUses deviceUses;

    QString ownFile() const { return support() + u"/own-applications.json"_s; }
    QJsonArray own() const { return objectOf(samples::contents(ownFile()))[u"definitions"_s].toArray(); }
    bool isUntouched() const { return QDir(folder.path()).isEmpty(); }

    Answer call(const QStringList &arguments) {
        QTemporaryFile outFile;
        QTemporaryFile errFile;
        if (!outFile.open() || !errFile.open())
            qFatal("No temporary file could be made.");
        Output out(outFile.handle());
        Output err(errFile.handle());
        InMemoryLoginItem item;
        NoDesktopPermission permission;
        CommandSurroundings surroundings{defaults, preferences(), support(),           this->surroundings(),
                                         item,     permission,    installed,           deviceUses,
                                         out,      err,           Palette(isColourful)};
        const ExitStatus status = runCommandLine(arguments, surroundings);
        return {status, QString::fromUtf8(samples::contents(outFile.fileName())),
                QString::fromUtf8(samples::contents(errFile.fileName()))};
    }
    Answer call(const QString &words) { return call(words.split(u' ', Qt::SkipEmptyParts)); }
    /// Whether a call ends like that and says so, first of all when it is done.
    bool ends(const QString &words, ExitStatus status, const QString &sentence) {
        const Answer answer = call(words);
        const bool says = status == done ? answer.out.startsWith(sentence)
                                         : answer.isOneSentence() && answer.err.contains(sentence);
        if (answer.status == status && says && (status != usedWrongly || answer.out.isEmpty()))
            return true;
        qWarning("%s", qUtf8Printable(words + u": "_s + answer.err + answer.out));
        return false;
    }
};

const DeviceUse zoomListens{MacRiskCategory::microphone, 10, u"Zoom"_s, u"us.zoom.xos"_s,
                            QDateTime(QDate(2026, 11, 26), QTime(9, 30), universalTime)};

} // namespace

class CommandLineTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void misuse();
    void help();
    void escapes();
    void json();
    void people();
    void sight();
    void actingByTheFlag();
    void unwritable();
    void unreadable();
    void changesInWords();
    void pauses();
    void times();
    void loggedPart();
    void ownApplications();
    void unusableOwnApplications();
    void following();
    void live();
    void liveSwitch();
};

void CommandLineTest::misuse() {
    // What the sentence names, and calls that it answers.
    const std::pair<QString, QString> wrong[] = {
        {u"apps, catalog, check"_s, u"|frobnicate|Status"_s},
        {u"\"a\\u001b[2J\\u202e\""_s, u"a\x1b[2J\u202e"_s},
        {u"--help and --version"_s, u"--json"_s},
        {u"--help"_s, u"diagnostics --json"_s},
        {u"--json and --help"_s, u"on --limit 3|off --json=yes|off -j"_s},
        {u"\"now\""_s, u"off now"_s},
        {u"a whole number"_s,
         u"log --limit -1|log --limit +1|log --limit 1.5|log --limit 0x10|log --limit ٣|log --limit|log --limit="_s},
        {u"\"2 hours ago\""_s, u"log --since lunch|log --until"_s},
        {u"quitRequested"_s, u"log --kind quit"_s},
        {u"jsonl"_s, u"log --format xml"_s},
        {u"no value"_s, u"log --all=1"_s},
        {u"needs a text"_s, u"log --search|log --app="_s},
        {u"\"until tomorrow\""_s,
         u"pause|pause 90|pause m|pause 0m|pause 1.5h|pause 18:00|pause until|pause until lunch|"
         "pause until yesterday|pause until 25:00"_s},
        {u"7 days at most"_s, u"pause 169h|pause 1M|pause until 9999-12-31"_s},
        {u"\"now\", only"_s, u"resume now"_s},
        {u"zoom, facetime"_s, u"unprotect|unprotect zoom Zoom|protect sleep|unprotect -- --json"_s},
        {u"on or off"_s, u"enforce|enforce on off|autostart On|autostart off on|live Off"_s},
        {u"only without on or off"_s, u"live off --follow"_s},
        {u"enable or disable"_s, u"schedule on|desktop|desktop on"_s},
        {u"sleep, away, focus"_s, u"schedule disable|schedule disable away zoom"_s},
        {u"add, remove or candidates"_s, u"catalog Add"_s},
        {u"either the name"_s, u"catalog add|catalog add x --running y"_s},
        {u"needs quotes"_s, u"catalog add OBS Studio"_s},
        {u"only with add"_s, u"catalog --action quit|catalog remove x --alias y"_s},
        {u"a word behind it"_s, u"catalog add --running|catalog add x --identifier="_s},
        {u"microphone, camera"_s, u"catalog add x --category Camera"_s},
        {u"allow, quit or keepClosed"_s, u"catalog add x --action=keep"_s},
        {u"of your own"_s, u"catalog remove|catalog remove notes"_s},
        {u"unprotect zoom"_s, u"catalog remove zoom"_s},
        {u"no argument"_s, u"catalog candidates zoom"_s},
    };
    Home home;
    for (const auto &[names, calls] : wrong) {
        for (const QString &words : calls.split(u'|'))
            QVERIFY(home.ends(words, usedWrongly, names));
    }
    QVERIFY(home.isUntouched());
}

void CommandLineTest::help() {
    Home home;
    const QString all = home.call(u"--help"_s).out;
    for (const CommandDescription &command : commandTable()) {
        QVERIFY(all.contains(u"\n  "_s + command.name + u' '));
        const Answer answer = home.call(command.name + u" --help"_s);
        QVERIFY(answer.status == done && !command.examples.isEmpty());
        for (const CommandExample &example : command.examples) {
            QVERIFY(answer.out.contains(example.call));
            // An example that is shown has to work.
            QStringList words = example.call.section(u" | "_s, 0, 0).split(u' ');
            QCOMPARE(words.takeFirst(), u"kestrinctl"_s);
            const auto parsed = parseCommandLine(words, [] { return QStringList(); });
            QVERIFY2(std::holds_alternative<Invocation>(parsed), qUtf8Printable(example.call));
        }
    }
    QVERIFY(home.isUntouched());
}

void CommandLineTest::escapes() {
    QCOMPARE(visibleText(u"a\t\0b\n\x1b[31m\u007f\u009bc\u2028\u202eexe\u2066\u200f"_s),
             u"a\\u0009\\u0000b\\u000a\\u001b[31m\\u007f\\u009bc\\u2028\\u202eexe\\u2066\\u200f"_s);
    QCOMPARE(visibleText(QString(QChar(0xd800)) + u"x"_s + QChar(0xdc00)), u"\\ud800x\\udc00"_s);
    const QString harmless = u"Zoé – 日本 \U0001F469\u200D\U0001F4BB العربية"_s;
    QCOMPARE(visibleText(harmless), harmless);

    const QString hostile = u"\x1b]0;x\a \u007f \u0085 \u202e \u2029 \\u202e \"é"_s;
    const QByteArray written = visibleJson(QJsonDocument(QJsonArray{hostile}).toJson());
    QCOMPARE(QJsonDocument::fromJson(written).array().first().toString(), hostile);
    for (const QString &bad : {u"\x1b"_s, u"\u007f"_s, u"\u0085"_s, u"\u202e"_s, u"\u2029"_s})
        QVERIFY(!QString::fromUtf8(written).contains(bad));
}

void CommandLineTest::json() {
    Home home;
    const QJsonObject zoom =
        objectOf(R"({"bundleIdentifier": "us.zoom.xos", "localizedName": "Zoom", "processIdentifier": 10})");
    const QJsonObject editor = objectOf(R"({"localizedName": "Editor", "processIdentifier": 11})");
    QCOMPARE(home.call(u"apps --json"_s).array(), (QJsonArray{zoom, editor}));
    const auto result = decodeJson<PrivacyModeRunResult>(home.call(u"check --json"_s).out.toUtf8());
    QVERIFY(result && result->matches.size() == 1 && result->events.size() == 3);
    QCOMPARE(samples::messages(result->events), home.story());
    // A check that found nothing to mend stores nothing but what it recorded.
    QCOMPARE(QDir(home.support()).entryList(QDir::Files).join(u' '), u"activity-log.json store.lock"_s);

    const QJsonArray log = home.call(u"log --json --limit 2"_s).array();
    QVERIFY(log.size() == 2 && log.first()[u"message"_s].toString() == home.story().last());
    QCOMPARE(home.call(u"log --json --limit 0"_s).out.trimmed(), u"[\n]"_s);

    QJsonObject status = home.call(u"status --json"_s).object();
    QCOMPARE(status.take(u"protectedDefinitionIDs"_s).toArray().size(), 12);
    QCOMPARE(status.take(u"devices"_s).toArray().size(), 3);
    QCOMPARE(status.take(u"matches"_s)[0][u"app"_s], zoom);
    QCOMPARE(status.take(u"live"_s)[u"uses"_s], QJsonArray());
    QCOMPARE(status.take(u"activityLogBytes"_s), QFileInfo(home.log.file()).size());
    QCOMPARE(status, objectOf(R"({"enabledModeIDs": ["sleep", "away", "manual"], "enforceActions": false,
        "monitorLabel": "Off", "pausedUntil": null, "privacyModeOn": true, "runningAppCount": 2,
        "scheduledPrivacyModeState": true, "sight": {"extent": "full", "reason": "", "remedy": ""}})"));
}

void CommandLineTest::people() {
    Home home;
    home.workspace.add(samples::running(u"Teams\x1b[2J\u202e\n"_s, 12, u"com.microsoft.teams"_s));
    for (const QString &call : {u"apps"_s, u"check"_s, u"status"_s, u"log"_s}) {
        const Answer answer = home.call(call);
        QVERIFY(answer.status == done && answer.err.isEmpty());
        QVERIFY(answer.out.contains(u"Teams\\u001b[2J\\u202e\\u000a"));
        QVERIFY(!answer.out.contains(u'\x1b') && !answer.out.contains(u'\u202e'));
    }
    QVERIFY(home.call(u"apps"_s).out.contains(u"\n11       Editor\n"));
    QVERIFY(home.call(u"diagnostics"_s).out.endsWith(u"scanned: 3\nProtected app matches: 2\n"));

    home.isColourful = true;
    QVERIFY(home.call(u"status"_s).out.contains(u"\x1b[32mOn\x1b[0m"));
    QVERIFY(!home.call(u"status --json"_s).out.contains(u'\x1b'));
}

void CommandLineTest::sight() {
    Home home;
    home.workspace.setSight({Sight::Extent::partial, u"Some run unseen."_s, u"Look yourself."_s, {}});
    for (const QString &call : {u"apps"_s, u"check"_s, u"status"_s}) {
        const Answer answer = home.call(call);
        QVERIFY(answer.status == done && answer.err == u"Some run unseen. Look yourself.\n"_s);
    }
    const qsizetype told = home.story().size();
    home.workspace.setSight({Sight::Extent::none, u"All run unseen."_s, {}, {}});
    for (const QString &call : {u"apps"_s, u"check"_s})
        QVERIFY(home.ends(call, couldNot, u"All run unseen.\n"_s));
    QCOMPARE(home.story().size(), told);
}

void CommandLineTest::actingByTheFlag() {
    // The flag says off, the settings do not: whoever acts goes by the flag, and so does everybody
    // afterwards.
    Home home;
    home.defaults.setBoolean(PrivacyModeFlag::key, false);
    home.settings.save({true, {u"zoom"_s}});
    QCOMPARE(home.call(u"status --json"_s).object().value(u"privacyModeOn"_s), QJsonValue(false));
    QVERIFY(home.settings.load().isEnabled);
    QCOMPARE(home.call(u"enforce on"_s).status, done);
    QVERIFY(home.workspace.terminationRequests().isEmpty());
    QCOMPARE(home.settings.load(), (PrivacyModeSettings{false, {u"zoom"_s}}));

    // How often it was asked by then.
    const std::pair<QString, int> calls[] = {
        {u"on"_s, 0}, {u"check"_s, 1}, {u"check --preview"_s, 1}, {u"enforce off"_s, 1}, {u"check"_s, 1}};
    for (const auto &[call, times] : calls) {
        QCOMPARE(home.call(call).status, done);
        QCOMPARE(home.workspace.terminationRequests(), QList<qint32>(times, 10));
    }
    QCOMPARE(home.workspace.subscriberCount(), 0);
}

void CommandLineTest::unwritable() {
    const std::pair<QString, QString> places[] = {
        {u"data/Kestrin/activity-log.json"_s,
         u"off|unprotect zoom|recommended|enforce off|schedule enable focus|check --preview|live off"_s},
        {u"data/Kestrin/privacy-mode-settings.json"_s, u"off|unprotect zoom|protect zoom"_s},
        {u"config/user-defaults.json"_s, u"enforce on|schedule enable focus|off|live off"_s},
    };
    for (const auto &[file, calls] : places) {
        Home home;
        const QString path = home.folder.filePath(file);
        // A folder where the file should be stops root too.
        QVERIFY(QDir().mkpath(path));
        for (const QString &call : calls.split(u'|'))
            QVERIFY(home.ends(call, couldNot, file.startsWith(u"config"_s) ? path : home.support()));
        const Answer log = home.call(u"log"_s);
        QVERIFY(log.err.isEmpty() || (log.status == couldNot && log.err.startsWith(path)));
        // Nobody is asked to quit for a choice that could not be kept.
        QVERIFY(home.workspace.terminationRequests().isEmpty());
        QVERIFY(!home.story().contains(u"Mac app actions are enforcing for selected protected apps."_s));
    }
}

void CommandLineTest::unreadable() {
    Home home;
    QVERIFY(home.ends(u"enforce on"_s, done, {}));
    const QList<qint32> asked = home.workspace.terminationRequests();
    samples::write(home.settings.file(), "{");
    const QString sentence =
        home.settings.file() +
        u" does not read as it should; the next change sets it aside, unless you mend it first.\n"_s;
    // Nobody is asked to quit because it cannot be read who is not to be.
    for (const auto &[call, status] :
         {std::pair{u"check"_s, couldNot}, std::pair{u"enforce on"_s, couldNot}, std::pair{u"status"_s, done},
          std::pair{u"catalog"_s, done}, std::pair{u"check --preview"_s, done}}) {
        const Answer answer = home.call(call);
        QVERIFY(answer.status == status && answer.err.endsWith(sentence));
        QCOMPARE(home.workspace.terminationRequests(), asked);
    }
    // What is so by a fallback is not so yet.
    for (const auto &[call, file] : {std::pair{u"protect zoom"_s, home.settings.file()},
                                     std::pair{u"unprotect zoom"_s, home.settings.file()},
                                     std::pair{u"schedule enable sleep"_s, home.preferences()}}) {
        samples::write(file, "{");
        const Answer mended = home.call(call);
        QVERIFY(mended.status == done && mended.isOneSentence());
        QVERIFY(mended.err.contains(QFileInfo(file).fileName() + u".damaged-"_s));
        QVERIFY(!mended.out.contains(u"Nothing was changed"));
        QCOMPARE(home.call(u"status"_s).err, QString());
    }
    // A preset is no setting, but switches them.
    QVERIFY(QFile::remove(home.settings.file()) && QDir().mkpath(home.settings.file()));
    const Answer enabled = home.call(u"schedule enable focus"_s);
    QVERIFY(enabled.status == done && enabled.isOneSentence());
    QVERIFY(QDir().rmdir(home.settings.file()));
    // Nor does anybody know who watches.
    QVERIFY(QDir().mkpath(home.support() + u"/monitor.lock"_s));
    const Answer unknown = home.call(u"status"_s);
    QVERIFY(unknown.out.contains(u"Unknown\n"_s) && unknown.err.contains(u"monitor.lock is a folder"_s));
    QVERIFY(home.ends(u"watch"_s, couldNot, u"monitor.lock is a folder"_s));
    // The log is no matter to those who do not show it.
    samples::write(home.log.file(), "{");
    QCOMPARE(home.call(u"catalog"_s).err + home.call(u"schedule"_s).err, QString());
}

void CommandLineTest::changesInWords() {
    // What is called before, what then, and what that says.
    const QString before = u"schedule disable sleep away"_s;
    const std::tuple<QString, QString, QString> cases[] = {
        {u"status"_s, u"protect zoom teams zoom"_s,
         u"Nothing was changed: zoom, teams are protected already."_s},
        {u"unprotect zoom"_s, u"unprotect zoom"_s, u"Nothing was changed: zoom is not protected."_s},
        {u"unprotect zoom"_s, u"protect zoom teams"_s, u"teams is protected already."_s},
        {u"status"_s, u"unprotect "_s + definitionIDs().join(u' '),
         u"Nothing is selected now, and that protects everything"_s},
        {before, u"schedule disable sleep"_s, u"Nothing was changed: sleep is disabled already."_s},
        {before + u"|off"_s, u"schedule enable away"_s, u"The schedules turned Privacy Mode on."_s},
    };
    for (const auto &[preparation, call, sentence] : cases) {
        for (const QString &json : {u""_s, u" --json"_s}) {
            Home home;
            for (const QString &words : preparation.split(u'|'))
                QCOMPARE(home.call(words).status, done);
            const Answer answer = home.call(call + json);
            QVERIFY(answer.status == done);
            const QString &told = json.isEmpty() ? answer.out : answer.err;
            QVERIFY2(told.startsWith(sentence), qUtf8Printable(answer.err + answer.out));
            QVERIFY(json.isEmpty() == QJsonDocument::fromJson(answer.out.toUtf8()).isNull());
            // The next call sees what this one has told.
            const QString shown = call.startsWith(u"schedule"_s) ? u"schedule"_s : u"status"_s;
            QVERIFY(answer.out.endsWith(home.call(shown + json).out));
        }
    }
    // The devices go by what is saved, as checks do.
    Home home;
    home.settings.save({false, {u"skype"_s}});
    const QJsonObject status = home.call(u"status --json"_s).object();
    QVERIFY(status[u"privacyModeOn"_s].toBool());
    QCOMPARE(status[u"devices"_s][0][u"detail"_s], QJsonValue(u"Privacy Mode paused on this Mac"_s));
    QVERIFY(
        home.call(u"status"_s).out.contains(u"none of 12 known applications, only unknown ones: skype\n"));
    // One name that is very long disturbs no other line.
    home.workspace.add(samples::running(QString(300, u'x'), 12, u"long"_s));
    QVERIFY(home.call(u"apps"_s).out.contains(u"\n10       Zoom    us.zoom.xos\n"));
}

void CommandLineTest::pauses() {
    Home home;
    const std::tuple<QString, ExitStatus, QString> steps[] = {
        {u"resume"_s, done, u"Privacy Mode is not paused.\nPrivacy Mode"_s},
        {u"off"_s, done, u"Privacy Mode    Off\n"_s},
        {u"pause 1h"_s, couldNot, u"There is nothing to pause"_s},
        {u"resume"_s, couldNot, u"Privacy Mode is not paused but off"_s},
        {u"on"_s, done, u"Privacy Mode    On\n"_s},
        // Each takes the place of the one before, and rests a schedule that wants the opposite.
        {u"pause 1h 30min"_s, done, u"Privacy Mode    Paused until 13:30\n"_s},
        {u"pause UNTIL 18:00"_s, done, u"Privacy Mode    Paused until 18:00\n"_s},
        {u"pause until 9:00"_s, done, u"Privacy Mode    Paused until Sunday, 09:00\n"_s},
        {u"pause 2d 30s"_s, done, u"Privacy Mode    Paused until Monday, 12:00\n"_s},
        {u"pause until tomorrow"_s, done, u"Privacy Mode    Paused until tomorrow\n"_s},
        {u"pause 1h"_s, done, u"Privacy Mode    Paused until 13:00\n"_s},
        {u"schedule enable focus"_s, done, {}},
        {u"check"_s, done, u"Privacy Mode is off. No Mac app actions were taken."_s},
        {u"resume"_s, done, u"Privacy Mode    On\n"_s},
        {u"pause 1h"_s, done, u"Privacy Mode    Paused"_s},
    };
    for (const auto &[call, status, sentence] : steps)
        QVERIFY(home.ends(call, status, sentence));
    QCOMPARE(home.call(u"status --json"_s).object()[u"pausedUntil"_s],
             QJsonValue(home.now.addSecs(3600).toUTC().toString(Qt::ISODate)));
    // Whoever comes first when it is over has ended it, and everybody goes by that.
    home.now = home.now.addSecs(3600);
    QVERIFY(home.ends(u"check"_s, done, u"Privacy Mode is on. Evaluating Mac protected apps."_s));
    QVERIFY(home.settings.load().isEnabled && home.defaults.boolean(PrivacyModeFlag::key) == true);

    // Where that cannot be kept, it is told and true all the same.
    QVERIFY(home.ends(u"pause 1h"_s, done, u"Privacy Mode    Paused"_s));
    home.now = home.now.addSecs(3600);
    QVERIFY(QFile::remove(home.settings.file()) && QDir().mkpath(home.settings.file()));
    QVERIFY(home.ends(u"status"_s, done, u"Privacy Mode    On\n"_s));
}

void CommandLineTest::times() {
    // The clocks of Berlin went forward at 2:00 on that day.
    qputenv("TZ", "Europe/Berlin");
    ::tzset();
    const QDateTime now(QDate(2026, 3, 29), QTime(14, 30, 10));
    const std::pair<QString, QString> phrases[] = {{u" Now "_s, u"2026-03-29T12:30:10Z"_s},
                                                   {u"today"_s, u"2026-03-28T23:00:00Z"_s},
                                                   {u"YESTERDAY 8:05"_s, u"2026-03-28T07:05:00Z"_s},
                                                   {u"tomorrow"_s, u"2026-03-29T22:00:00Z"_s},
                                                   {u"14:00"_s, u"2026-03-29T12:00:00Z"_s},
                                                   {u"14:00:05 UTC"_s, u"2026-03-29T14:00:05Z"_s},
                                                   {u"2026-01-02"_s, u"2026-01-01T23:00:00Z"_s},
                                                   {u"2026-07-02 03:04"_s, u"2026-07-02T01:04:00Z"_s},
                                                   {u"13 hours ago"_s, u"2026-03-28T23:30:10Z"_s},
                                                   {u"2026-03-29 02:30"_s, u"2026-03-29T01:30:00Z"_s},
                                                   {u"1h 30min ago"_s, u"2026-03-29T11:00:10Z"_s},
                                                   {u"2026-07-02T03:04:05Z"_s, u"2026-07-02T03:04:05Z"_s},
                                                   {u"-90s"_s, u"2026-03-29T12:28:40Z"_s},
                                                   {u"+1w"_s, u"2026-04-05T12:30:10Z"_s},
                                                   {u"1 month ago"_s, u"2026-02-28T13:30:10Z"_s},
                                                   {u"1M ago"_s, u"2026-02-28T13:30:10Z"_s},
                                                   {u"@1700000000"_s, u"2023-11-14T22:13:20Z"_s}};
    for (const auto &[phrase, expected] : phrases) {
        const auto moment = timeOfPhrase(phrase, now);
        QVERIFY2(moment && moment->toUTC().toString(Qt::ISODate) == expected, qUtf8Printable(phrase));
    }
    const QString none =
        u"|ago|2 ago|hours ago|2 moons ago|-|@|@x|2026-02-30|25:00|2026-01-02 3|today tomorrow|UTC|1e9h ago"_s;
    for (const QString &phrase : none.split(u'|'))
        QVERIFY2(!timeOfPhrase(phrase, now), qUtf8Printable(phrase));
    qunsetenv("TZ");
    ::tzset();
}

void CommandLineTest::loggedPart() {
    Home home;
    QCOMPARE(home.call(u"log --since today"_s).out, u"The activity log is empty.\n"_s);
    using enum MacProtectionEventKind;
    const QDateTime noon(QDate(2026, 3, 14), QTime(12, 0), universalTime);
    for (int hour = 0; hour < 20; ++hour) {
        const bool isZoom = hour % 2 == 0;
        home.log.append(MacProtectionEvent::create(
            noon.addSecs(3600 * hour), hour < 10 ? dryRun : quitRequested, u"%1 o'clock"_s.arg(hour),
            isZoom ? u"Zoom"_s : u"Caf\u00e9"_s, isZoom ? u"us.zoom.xos"_s : u"coffee"_s));
    }
    // Which of the events, newest first.
    const std::pair<QStringList, QList<int>> calls[] = {
        {{}, {19, 18, 17, 16, 15, 14, 13, 12}},
        {{u"--limit"_s, u"2"_s}, {19, 18}},
        {{u"--all"_s, u"--app"_s, u"ZOOM.xos"_s, u"--kind"_s, u"dryRun"_s}, {8, 6, 4, 2, 0}},
        {{u"--limit=3"_s, u"--app=CAF\u00c9"_s, u"--app"_s, u"nobody"_s}, {19, 17, 15}},
        {{u"--since"_s, u"2026-03-14 20:00 UTC"_s, u"--until"_s, u"2026-03-14 22:00 UTC"_s}, {10, 9, 8}},
        {{u"--until=2026-03-14 22:00 UTC"_s}, {10, 9, 8, 7, 6, 5, 4, 3, 2, 1, 0}},
        {{u"--since=2026-03-14"_s, u"--limit"_s, u"1"_s}, {19}},
        {{u"--search"_s, u"1 O'"_s, u"--all"_s}, {11, 1}},
        {{u"--kind"_s, u"dryRun"_s, u"--kind"_s, u"quitRequested"_s, u"--limit"_s, u"1"_s}, {19}},
        {{u"--kind"_s, u"actionFailed"_s}, {}},
    };
    for (const auto &[options, expected] : calls) {
        QList<int> hours;
        for (const QJsonValue event : home.call(QStringList{u"log"_s, u"--json"_s} + options).array())
            hours.append(event[u"message"_s].toString().section(u' ', 0, 0).toInt());
        QVERIFY2(hours == expected, qUtf8Printable(options.join(u' ')));
    }
    QVERIFY(home.ends(u"log --kind actionFailed"_s, done, u"No event"_s));
    QVERIFY(home.ends(u"log --format csv"_s, done, u"date,kind,application,identifier,message,id\r\n"_s));
    QCOMPARE(home.call(u"log --format jsonl --limit 3"_s).out.count(u"o'clock\"}\n"), 3);
    // Who uses a device is no match.
    home.log.append(
        MacProtectionEvent::create(noon, riskAppMatched, u"Zoom stopped using the screen."_s, u"Zoom"_s));
    QVERIFY(home.call(u"log --kind deviceUse"_s).out.endsWith(u"  Zoom stopped using the screen.\n"));
    QVERIFY(home.ends(u"log --kind riskAppMatched"_s, done, u"No event"_s));
}

void CommandLineTest::ownApplications() {
    // What is added, how that ends, and what it says then.
    QString tooManyNames = u"x"_s;
    for (int i = 0; i < 21; ++i)
        tooManyNames += u"|--alias|name %1"_s.arg(i);
    const std::tuple<QString, ExitStatus, QString> steps[] = {
        {u"  Notes |--alias|noter|--identifier| org.example.Notes "_s, done,
         u"Notes is in the catalog as notes, and protected."_s},
        {u"NOTES\n"_s, couldNot, u"\"NOTES\" is Notes, which is in the catalog already as \"notes\"."_s},
        {u"x|--alias|Noter"_s, couldNot, u"\"Noter\" is Notes"_s},
        {u"x|--identifier|ORG.EXAMPLE.NOTES"_s, couldNot, u"\"ORG.EXAMPLE.NOTES\" is Notes"_s},
        {u"zoom.us"_s, couldNot, u"\"zoom.us\" is Zoom"_s},
        {u"x|--identifier|US.zoom.XOS"_s, couldNot, u"\"US.zoom.XOS\" is Zoom"_s},
        {u" kestrin"_s, couldNot, u"Kestrin does not close itself."_s},
        {QString(201, u'x'), couldNot, u"at most 200 characters"_s},
        {tooManyNames, couldNot, u"at most 20 identifiers"_s},
        // One who is called like the other's id.
        {u"Notes!"_s, done, u"Notes! is in the catalog as notes-2, and protected."_s},
        {u"Zoé  Café_2.0"_s, done, u"as zoe-cafe-2-0,"_s},
        {u"日本が"_s, done, u"as 日本が,"_s},
        {u"++"_s, done, u"as app,"_s},
        {u"--running| EDITOR "_s, done, u"Editor is in the catalog as editor,"_s},
        {u"--running|12"_s, done, u"Paint is in the catalog as paint,"_s},
        {u"--running|Twin"_s, couldNot, u"choose one by its process: 13 or 15."_s},
        {u"--running|99"_s, couldNot, u"No running application is \"99\""_s},
        {u"--running|10"_s, couldNot, u"\"Zoom\" is Zoom"_s},
    };
    Home home;
    home.workspace.add(samples::running(u"Paint"_s, 12, u"org.example.Paint"_s));
    // Two processes of one application, and another one.
    home.workspace.add(samples::running(u"Twin"_s, 13, u"org.example.Twin"_s));
    home.workspace.add(samples::running(u"Twin"_s, 14, u"org.example.Twin"_s));
    home.workspace.add(samples::running(u"Twin"_s, 15, u"org.example.Other"_s));
    qsizetype added = 0;
    for (const auto &[words, status, says] : steps) {
        const Answer answer = home.call(u"catalog|add|"_s.append(words).split(u'|'));
        const QString &told = status == done ? answer.out : answer.err;
        QVERIFY2(answer.status == status && told.contains(says), qUtf8Printable(answer.err));
        QVERIFY(status == done || answer.isOneSentence());
        added += status == done ? 1 : 0;
        QCOMPARE(home.own().size(), added);
    }
    QVERIFY(samples::isOwnersAlone(home.ownFile()));
    QCOMPARE(home.own().first().toObject(),
             objectOf(R"({"id": "notes", "displayName": "Notes", "aliases": ["noter"],
        "bundleIdentifiers": ["org.example.Notes"], "categories": [], "defaultAction": "keepClosed"})"));
    QVERIFY(home.ends(u"catalog add Call --category videoCall --category camera --action quit"_s, done, {}));
    // Behind the built-in ones, and like them.
    const QJsonArray all = home.call(u"catalog --json"_s).object()[u"definitions"_s].toArray();
    QCOMPARE(all.size(), 12 + added + 1);
    QCOMPARE(all.last().toObject(), objectOf(R"({"id": "call", "displayName": "Call", "bundleIdentifiers": [],
        "aliases": [], "categories": ["videoCall", "camera"], "defaultAction": "quit"})"));
    QVERIFY(home.call(u"check"_s).out.contains(u"Preview: Kestrin would ask Paint to quit"));

    // What runs and is known is no candidate, nor is what is installed and runs.
    home.installed.applications = {{u"Twin"_s, u"org.example.Twin"_s, {}},
                                   {u"Paint"_s, u"org.example.Paint"_s, {}},
                                   {u"Kestrin"_s, u"org.example.Kestrin"_s, {}},
                                   {u"Writer"_s, u"org.example.Writer"_s, {}}};
    QCOMPARE(home.call(u"catalog candidates"_s).out, u"Twin\trunning\nTwin\trunning\nWriter\tinstalled\n"_s);

    QVERIFY(home.ends(u"catalog remove zoe-cafe-2-0 notes app"_s, done, {}));
    QCOMPARE(home.own().size(), added + 1 - 3);
    // An id that has become free.
    QVERIFY(home.call(u"catalog add Notes"_s).out.contains(u"as notes,"_s));
    // Where it was the last that was selected, everything is protected from then on.
    home.settings.save({true, {u"notes"_s}});
    QVERIFY(home.ends(u"catalog remove notes"_s, done, u"Nothing is selected now"_s));
}

void CommandLineTest::unusableOwnApplications() {
    const QJsonObject notes = objectOf(R"({"id": "notes", "displayName": "Notes", "bundleIdentifiers": [],
        "aliases": [], "categories": [], "defaultAction": "keepClosed"})");
    const auto with = [&notes](const QString &key, const QJsonValue &value) {
        QJsonObject changed = notes;
        changed[key] = value;
        return changed;
    };
    const auto file = [](const QJsonArray &definitions) {
        return QJsonDocument(QJsonObject{{u"definitions"_s, definitions}}).toJson();
    };
    QJsonArray tooMany;
    for (int i = 0; i <= OwnApplicationLimits::applications; ++i)
        tooMany.append(with(u"id"_s, QString::number(i)));
    const std::pair<QByteArray, QString> texts[] = {
        {"{", u"not a JSON object"_s},
        {"[]", u"not a JSON object"_s},
        {QByteArray(1000, '\0'), u"not a JSON object"_s},
        {file({with(u"aliases"_s, QJsonValue::Undefined)}), u"complete"_s},
        {file({with(u"defaultAction"_s, u"kill"_s)}), u"complete"_s},
        {file({notes, notes}), u"two applications in it have the id \"notes\""_s},
        {file({with(u"id"_s, u"zoom"_s)}), u"\"zoom\" in it is the id of an application that is built in"_s},
        {file({with(u"id"_s, u" "_s)}), u"no id or no name"_s},
        {file({with(u"displayName"_s, QString(201, u'x'))}), u"too long"_s},
        {file({with(u"aliases"_s, QJsonArray{QString()})}), u"\"notes\" has"_s},
        {file({with(u"bundleIdentifiers"_s, QJsonArray::fromStringList(QStringList(21, u"x"_s)))}),
         u"\"notes\" has"_s},
        {file(tooMany), u"more than 2000"_s},
    };
    for (const auto &[text, reason] : texts) {
        Home home;
        samples::write(home.ownFile(), text);
        for (const QString &call : {u"catalog"_s, u"check"_s, u"recommended"_s}) {
            const Answer answer = home.call(call);
            QVERIFY(answer.status == done && answer.isOneSentence() && !answer.out.contains(u"notes"));
            QVERIFY2(answer.err.startsWith(home.ownFile()) && answer.err.contains(reason),
                     qUtf8Printable(answer.err));
        }
        for (const QString &call : {u"catalog add Writer"_s, u"catalog remove notes"_s})
            QVERIFY(home.ends(call, couldNot, reason));
        QVERIFY(home.call(u"protect notes"_s).err.contains(reason));
        QCOMPARE(samples::contents(home.ownFile()), text);
        QCOMPARE(QDir(home.support()).entryList({u"own-applications.json*"_s}).size(), 1);
        QVERIFY(!home.story().contains(u"Writer added to Mac Privacy Mode."_s));
    }
    // Neither does anything else that has its name make way.
    Home home;
    QVERIFY(QDir().mkpath(home.ownFile()));
    QVERIFY(home.ends(u"catalog add Writer"_s, couldNot, u"is a folder and not a file"_s));
    // What cannot be selected is told so.
    Home unselectable;
    QVERIFY(QDir().mkpath(unselectable.settings.file()));
    QVERIFY(unselectable.ends(u"catalog add Writer"_s, couldNot, u"as writer, but could not be selected"_s));
}

void CommandLineTest::following() {
    QTemporaryDir folder;
    const QString path = folder.filePath(u"log.json"_s);
    JSONMacActivityLogStore log(QUrl::fromLocalFile(path));
    log.append(samples::event(u"old"_s));
    EventFollower follower(log);
    const auto takeNew = [&] { return follower.takeNew(log.recent(8)); };
    QVERIFY(takeNew().isEmpty());
    // As many at a time as the first look sees, one more, and many more.
    for (const int count : {1, 7, 8, 9, 200}) {
        QStringList added;
        for (int i = 0; i < count; ++i) {
            added.append(QString::number(i));
            log.append(samples::event(added.last()));
        }
        QCOMPARE(samples::messages(takeNew()), added);
        QVERIFY(takeNew().isEmpty());
    }

    // A log that lost its newest event, and one that starts anew.
    const QList<MacProtectionEvent> older = log.recent(3).mid(1);
    QVERIFY(QFile::remove(path));
    log.append(older.last());
    log.append(older.first());
    QVERIFY(takeNew().isEmpty());
    QVERIFY(QFile::remove(path));
    log.append(samples::event(u"anew"_s));
    QCOMPARE(samples::messages(takeNew()), QStringList{u"anew"_s});
}

void CommandLineTest::live() {
    Home home;
    QVERIFY(home.ends(u"live"_s, done, u"Nobody uses the microphone, a camera or the screen.\n"_s));
    QCOMPARE(home.call(u"live --json"_s).array(), QJsonArray());
    home.deviceUses.begin(zoomListens);
    home.deviceUses.begin(
        {MacRiskCategory::screenCapture, 12, u"x\x1b[2J\n\u202e"_s, std::nullopt, zoomListens.since});
    QCOMPARE(home.call(u"live"_s).out, u"PROCESS  NAME                    USES            IDENTIFIER\n"
                                       "10       Zoom                    Microphone      us.zoom.xos\n"
                                       "12       x\\u001b[2J\\u000a\\u202e  Screen capture\n"_s);
    QCOMPARE(home.call(u"live --json"_s).array().first(),
             objectOf(R"({"category": "microphone", "processIdentifier": 10, "localizedName": "Zoom",
                          "bundleIdentifier": "us.zoom.xos", "since": "2026-11-26T09:30:00Z"})"));
    QVERIFY(home.isUntouched());

    // What happens while it is followed, until a signal ends it.
    const auto followed = [&home](const QString &words) {
        home.deviceUses.setSight({});
        QTimer::singleShot(0, &home.defaults, [&home] {
            const DeviceUse end = home.deviceUses.uses().last();
            home.deviceUses.end(end);
            home.deviceUses.setSight({Sight::Extent::partial, u"Some are unseen."_s, {}, {}});
            home.deviceUses.begin(end);
            std::raise(SIGINT);
        });
        const Answer answer = home.call(words);
        return answer.status == done && answer.err == u"Some are unseen.\n"_s
                   ? answer.out.split(u'\n', Qt::SkipEmptyParts)
                   : QStringList();
    };
    QStringList sentences;
    for (const QString &line : followed(u"live --follow"_s))
        sentences.append(line.section(u"  "_s, 1));
    const QString name = u"x\\u001b[2J\\u000a\\u202e"_s;
    QCOMPARE(sentences,
             (QStringList{u"Zoom is using the microphone."_s, name + u" is using the screen."_s,
                          name + u" stopped using the screen."_s, name + u" started using the screen."_s}));
    QStringList events;
    for (const QString &line : followed(u"live --follow --json"_s))
        events.append(objectOf(line.toUtf8())[u"event"_s].toString());
    QCOMPARE(events, (QStringList{u"using"_s, u"using"_s, u"stopped"_s, u"started"_s}));
    QVERIFY(!home.deviceUses.isWatched());

    home.deviceUses.setSight({Sight::Extent::none, u"All are unseen."_s, {}, {}});
    for (const QString &words : {u"live"_s, u"live --json"_s, u"live --follow"_s}) {
        QVERIFY(home.ends(words, couldNot, u"All are unseen.\n"_s));
        QCOMPARE(home.call(words).out, QString());
    }
    QVERIFY(home.call(u"status"_s)
                .out.contains(u"\nLive use        not known\nNot seen        All are unseen.\n"));
    QVERIFY(home.story().isEmpty());
}

void CommandLineTest::liveSwitch() {
    Home home;
    DeviceUse picture = zoomListens;
    picture.category = MacRiskCategory::camera;
    home.deviceUses.begin(zoomListens);
    home.deviceUses.begin(picture);
    QVERIFY(home.call(u"status"_s).out.contains(u"\nLive use        Zoom (Microphone, Camera)\n"));
    // What cannot be seen is told once, and its end is none of the watch.
    home.deviceUses.setSight({Sight::Extent::partial, u"Some are unseen."_s, {}, {}});
    QTimer ending;
    connect(&ending, &QTimer::timeout, this, [&] {
        if (home.deviceUses.isWatched())
            std::raise(SIGINT);
    });
    ending.start(1);
    QCOMPARE(home.call(u"watch"_s).err, u"Watching.\nSome are unseen.\n"_s);
    ending.stop();
    home.deviceUses.setSight({});

    // Another process switches it off while it is followed.
    QTimer::singleShot(0, &home.defaults, [&home] { home.defaults.setBoolean(LiveUse::key, false); });
    for (const QString &words : {u"live --follow"_s, u"live --follow"_s, u"live"_s, u"live --json"_s})
        QVERIFY(home.ends(words, couldNot, u"kestrinctl live on"_s));
    QVERIFY(home.call(u"status"_s).out.contains(u"\nLive use        Off\n"));
    const QJsonValue off = home.call(u"status --json"_s).object()[u"live"_s];
    QVERIFY(off[u"on"_s] == QJsonValue(false) && off[u"uses"_s].toArray().isEmpty());

    QCOMPARE(home.call(u"live on --json"_s).object(), objectOf(R"({"live": true})"));
    QCOMPARE(home.call(u"status --json"_s).object()[u"live"_s][u"uses"_s].toArray().size(), 2);
    for (int time = 0; time < 2; ++time)
        QVERIFY(home.ends(u"live off"_s, done, u"Kestrin does not tell who uses"_s));
    QCOMPARE(home.story().filter(u"Kestrin no longer tells who"_s).size(), 1);
}

KESTRIN_TEST(CommandLineTest)
#include "tst_commandline.moc"
