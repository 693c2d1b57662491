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

namespace {

struct Answer {
    ExitStatus status = ExitStatus::couldNot;
    QString out;
    QString err;

    QJsonArray array() const { return QJsonDocument::fromJson(out.toUtf8()).array(); }
    QJsonObject object() const { return QJsonDocument::fromJson(out.toUtf8()).object(); }
    /// Whether that is all that went wrong.
    bool isOneSentence() const { return err.endsWith(u".\n") && err.count(u'\n') == 1; }
};

QString everythingIn(QTemporaryFile &file) {
    file.seek(0);
    return QString::fromUtf8(file.readAll());
}

struct Home : samples::Home {
    bool isColourful = false;
    QList<InstalledApplication> menus;
    InMemoryDeviceUses deviceUses;

    QString ownFile() const { return support() + u"/own-applications.json"_s; }
    QJsonArray own() const {
        return QJsonDocument::fromJson(samples::contents(ownFile())).object()[u"definitions"_s].toArray();
    }
    QStringList ownIDs() const {
        QStringList ids;
        for (const QJsonValue &definition : own())
            ids.append(definition[u"id"_s].toString());
        return ids;
    }
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
        InMemoryInstalledApplications installed;
        installed.applications = menus;
        CommandSurroundings surroundings{defaults, preferences(), support(),           this->surroundings(),
                                         item,     permission,    installed,           deviceUses,
                                         out,      err,           Palette(isColourful)};
        Answer answer;
        answer.status = runCommandLine(arguments, surroundings);
        answer.out = everythingIn(outFile);
        answer.err = everythingIn(errFile);
        return answer;
    }
    Answer call(const QString &words) { return call(words.split(u' ', Qt::SkipEmptyParts)); }
};

/// The own application "Notes" in the form of the file.
QJsonObject notes() {
    return {
        {u"id"_s, u"notes"_s},        {u"displayName"_s, u"Notes"_s},  {u"bundleIdentifiers"_s, QJsonArray()},
        {u"aliases"_s, QJsonArray()}, {u"categories"_s, QJsonArray()}, {u"defaultAction"_s, u"keepClosed"_s}};
}

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
    const std::pair<QString, QStringList> wrong[] = {
        {u"apps, catalog, check"_s, {u""_s, u"frobnicate"_s, u"Status"_s}},
        {u"\"a\\u001b[2J\\u202e\""_s, {u"a\x1b[2J\u202e"_s}},
        {u"--help and --version"_s, {u"--json"_s}},
        {u"--help"_s, {u"diagnostics --json"_s}},
        {u"--json and --help"_s, {u"on --limit 3"_s, u"off --json=yes"_s, u"off -j"_s}},
        {u"\"now\""_s, {u"off now"_s}},
        {u"a whole number"_s,
         {u"log --limit -1"_s, u"log --limit +1"_s, u"log --limit 1.5"_s, u"log --limit "_s,
          u"log --limit 0x10"_s, u"log --limit ٣"_s, u"log --limit"_s, u"log --limit="_s}},
        {u"\"2 hours ago\""_s, {u"log --since lunch"_s, u"log --until"_s}},
        {u"quitRequested"_s, {u"log --kind quit"_s}},
        {u"jsonl"_s, {u"log --format xml"_s}},
        {u"no value"_s, {u"log --all=1"_s}},
        {u"needs a text"_s, {u"log --search"_s, u"log --app="_s}},
        {u"\"until tomorrow\""_s,
         {u"pause"_s, u"pause 90"_s, u"pause m"_s, u"pause 0m"_s, u"pause 1.5h"_s, u"pause 18:00"_s,
          u"pause until"_s, u"pause until lunch"_s, u"pause until yesterday"_s, u"pause until 25:00"_s}},
        {u"7 days at most"_s, {u"pause 169h"_s, u"pause 1M"_s, u"pause until 9999-12-31"_s}},
        {u"\"now\", only"_s, {u"resume now"_s}},
        {u"zoom, facetime"_s,
         {u"unprotect"_s, u"unprotect zoom Zoom"_s, u"protect sleep"_s, u"unprotect -- --json"_s}},
        {u"on or off"_s,
         {u"enforce"_s, u"enforce on off"_s, u"autostart On"_s, u"autostart off on"_s, u"live Off"_s}},
        {u"only without on or off"_s, {u"live off --follow"_s}},
        {u"enable or disable"_s, {u"schedule on"_s, u"desktop"_s, u"desktop on"_s}},
        {u"sleep, away, focus"_s, {u"schedule disable"_s, u"schedule disable away zoom"_s}},
        {u"add, remove or candidates"_s, {u"catalog Add"_s}},
        {u"either the name"_s, {u"catalog add"_s, u"catalog add x --running y"_s}},
        {u"needs quotes"_s, {u"catalog add OBS Studio"_s}},
        {u"only with add"_s, {u"catalog --action quit"_s, u"catalog remove x --alias y"_s}},
        {u"a word behind it"_s, {u"catalog add --running"_s, u"catalog add x --identifier="_s}},
        {u"microphone, camera"_s, {u"catalog add x --category Camera"_s}},
        {u"allow, quit or keepClosed"_s, {u"catalog add x --action=keep"_s}},
        {u"of your own"_s, {u"catalog remove"_s, u"catalog remove notes"_s}},
        {u"unprotect zoom"_s, {u"catalog remove zoom"_s}},
        {u"no argument"_s, {u"catalog candidates zoom"_s}},
    };
    Home home;
    for (const auto &[names, calls] : wrong) {
        for (const QString &words : calls) {
            const Answer answer = home.call(words.isEmpty() ? QStringList() : words.split(u' '));
            QVERIFY2(answer.status == ExitStatus::usedWrongly && answer.out.isEmpty(), qUtf8Printable(words));
            QVERIFY2(answer.isOneSentence() && answer.err.contains(names), qUtf8Printable(answer.err));
        }
    }
    QVERIFY(home.isUntouched());
}

void CommandLineTest::help() {
    Home home;
    const QString all = home.call(u"--help"_s).out;
    for (const CommandDescription &command : commandTable()) {
        QVERIFY(all.contains(u"\n  "_s + command.name + u' '));
        const Answer answer = home.call(command.name + u" --help"_s);
        QVERIFY(answer.status == ExitStatus::done && !command.examples.isEmpty());
        for (const CommandExample &example : command.examples) {
            QVERIFY(answer.out.contains(example.call));
            // An example that is shown has to work.
            QStringList words = example.call.section(u" | "_s, 0, 0).split(u' ');
            QCOMPARE(words.takeFirst(), u"kestrinctl"_s);
            QVERIFY2(
                std::holds_alternative<Invocation>(parseCommandLine(words, [] { return QStringList(); })),
                qUtf8Printable(example.call));
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
    const QJsonArray apps = home.call(u"apps --json"_s).array();
    const QJsonObject zoom{{u"bundleIdentifier"_s, u"us.zoom.xos"_s},
                           {u"localizedName"_s, u"Zoom"_s},
                           {u"processIdentifier"_s, 10}};
    const QJsonObject editor{{u"localizedName"_s, u"Editor"_s}, {u"processIdentifier"_s, 11}};
    QCOMPARE(apps, (QJsonArray{zoom, editor}));
    const auto result = decodeJson<PrivacyModeRunResult>(home.call(u"check --json"_s).out.toUtf8());
    QVERIFY(result && result->matches.size() == 1 && result->events.size() == 3);
    QCOMPARE(samples::messages(result->events), home.story());
    // A check that found nothing to mend stores nothing but what it recorded.
    QCOMPARE(QDir(home.support()).entryList(QDir::Files),
             (QStringList{u"activity-log.json"_s, u"store.lock"_s}));

    const QJsonArray log = home.call(u"log --json --limit 2"_s).array();
    QVERIFY(log.size() == 2 && log.first()[u"message"_s].toString() == home.story().last());
    QCOMPARE(home.call(u"log --json --limit 0"_s).out.trimmed(), u"[\n]"_s);

    QJsonObject status = home.call(u"status --json"_s).object();
    QCOMPARE(status.take(u"protectedDefinitionIDs"_s).toArray().size(), 12);
    QCOMPARE(status.take(u"devices"_s).toArray().size(), 3);
    QCOMPARE(status.take(u"matches"_s)[0][u"app"_s], zoom);
    QCOMPARE(status.take(u"live"_s)[u"uses"_s], QJsonArray());
    QCOMPARE(status.take(u"activityLogBytes"_s), QFileInfo(home.support() + u"/activity-log.json"_s).size());
    QCOMPARE(status, (QJsonObject{{u"enabledModeIDs"_s, QJsonArray{u"sleep"_s, u"away"_s, u"manual"_s}},
                                  {u"enforceActions"_s, false},
                                  {u"monitorLabel"_s, u"Off"_s},
                                  {u"pausedUntil"_s, QJsonValue::Null},
                                  {u"privacyModeOn"_s, true},
                                  {u"runningAppCount"_s, 2},
                                  {u"sight"_s, QJsonObject{{u"extent"_s, u"full"_s},
                                                           {u"reason"_s, QString()},
                                                           {u"remedy"_s, QString()}}},
                                  {u"scheduledPrivacyModeState"_s, true}}));
}

void CommandLineTest::people() {
    Home home;
    home.workspace.add(samples::running(u"Teams\x1b[2J\u202e\n"_s, 12, u"com.microsoft.teams"_s));
    for (const QString &call : {u"apps"_s, u"check"_s, u"status"_s, u"log"_s}) {
        const Answer answer = home.call(call);
        QCOMPARE(answer.status, ExitStatus::done);
        QCOMPARE(answer.err, QString());
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
        QCOMPARE(answer.status, ExitStatus::done);
        QCOMPARE(answer.err, u"Some run unseen. Look yourself.\n"_s);
    }
    QCOMPARE(home.call(u"status --json"_s).object()[u"sight"_s][u"extent"_s], u"partial"_s);
    const qsizetype told = home.story().size();
    home.workspace.setSight({Sight::Extent::none, u"All run unseen."_s, {}, {}});
    for (const QString &call : {u"apps"_s, u"check"_s}) {
        const Answer answer = home.call(call);
        QCOMPARE(answer.status, ExitStatus::couldNot);
        QCOMPARE(answer.err, u"All run unseen.\n"_s);
    }
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
    QCOMPARE(home.call(u"enforce on"_s).status, ExitStatus::done);
    QVERIFY(home.workspace.terminationRequests().isEmpty());
    QCOMPARE(home.settings.load(), (PrivacyModeSettings{false, {u"zoom"_s}}));

    // How often it was asked by then.
    const std::pair<QString, int> calls[] = {
        {u"on"_s, 0}, {u"check"_s, 1}, {u"check --preview"_s, 1}, {u"enforce off"_s, 1}, {u"check"_s, 1}};
    for (const auto &[call, times] : calls) {
        QCOMPARE(home.call(call).status, ExitStatus::done);
        QCOMPARE(home.workspace.terminationRequests(), QList<qint32>(times, 10));
    }
    QCOMPARE(home.workspace.subscriberCount(), 0);
}

void CommandLineTest::unwritable() {
    const std::pair<QString, QStringList> places[] = {
        {u"data/Kestrin/activity-log.json"_s,
         {u"off"_s, u"unprotect zoom"_s, u"recommended"_s, u"enforce off"_s, u"schedule enable focus"_s,
          u"check --preview"_s, u"live off"_s}},
        {u"data/Kestrin/privacy-mode-settings.json"_s, {u"off"_s, u"unprotect zoom"_s, u"protect zoom"_s}},
        {u"config/user-defaults.json"_s,
         {u"enforce on"_s, u"schedule enable focus"_s, u"off"_s, u"live off"_s}},
    };
    for (const auto &[file, calls] : places) {
        Home home;
        const QString path = home.folder.filePath(file);
        // A folder where the file should be stops root too.
        QVERIFY(QDir().mkpath(path));
        for (const QString &call : calls) {
            const Answer answer = home.call(call);
            QCOMPARE(answer.status, ExitStatus::couldNot);
            const bool isNamed = answer.err.contains(file.startsWith(u"config"_s) ? path : home.support());
            QVERIFY2(isNamed && answer.isOneSentence(), qUtf8Printable(call + u": "_s + answer.err));
        }
        const Answer log = home.call(u"log"_s);
        QVERIFY(log.err.isEmpty() || (log.status == ExitStatus::couldNot && log.err.startsWith(path)));
        // Nobody is asked to quit for a choice that could not be kept.
        QVERIFY(home.workspace.terminationRequests().isEmpty());
        QVERIFY(!home.story().contains(u"Mac app actions are enforcing for selected protected apps."_s));
    }
}

void CommandLineTest::unreadable() {
    Home home;
    QCOMPARE(home.call(u"enforce on"_s).status, ExitStatus::done);
    const qsizetype asked = home.workspace.terminationRequests().size();
    samples::write(home.settings.file(), "{");
    const QString sentence =
        home.settings.file() +
        u" does not read as it should; the next change sets it aside, unless you mend it first.\n"_s;
    // Nobody is asked to quit because it cannot be read who is not to be.
    for (const QString &call : {u"check"_s, u"enforce on"_s}) {
        const Answer answer = home.call(call);
        QVERIFY(answer.status == ExitStatus::couldNot && answer.err.endsWith(sentence));
        QCOMPARE(home.workspace.terminationRequests().size(), asked);
    }
    for (const QString &call : {u"status"_s, u"catalog"_s, u"check --preview"_s}) {
        const Answer answer = home.call(call);
        QVERIFY(answer.status == ExitStatus::done && answer.err == sentence);
    }
    // What is so by a fallback is not so yet.
    for (const auto &[call, file] : {std::pair{u"protect zoom"_s, home.settings.file()},
                                     std::pair{u"unprotect zoom"_s, home.settings.file()},
                                     std::pair{u"schedule enable sleep"_s, home.preferences()}}) {
        samples::write(file, "{");
        const Answer mended = home.call(call);
        QVERIFY(mended.status == ExitStatus::done && mended.isOneSentence());
        QVERIFY(mended.err.contains(QFileInfo(file).fileName() + u".damaged-"_s));
        QVERIFY(!mended.out.contains(u"Nothing was changed"));
        QCOMPARE(home.call(u"status"_s).err, QString());
    }
    // A preset is no setting, but switches them.
    QVERIFY(QFile::remove(home.settings.file()) && QDir().mkpath(home.settings.file()));
    const Answer enabled = home.call(u"schedule enable focus"_s);
    QVERIFY(enabled.status == ExitStatus::done && enabled.isOneSentence());
    QCOMPARE(home.call(u"schedule"_s).err, QString());
    QVERIFY(QDir().rmdir(home.settings.file()));
    // Nor does anybody know who watches.
    QVERIFY(QDir().mkpath(home.support() + u"/monitor.lock"_s));
    const Answer unknown = home.call(u"status"_s);
    QVERIFY(unknown.out.contains(u"Unknown\n"_s) && unknown.err.contains(u"monitor.lock is a folder"_s));
    // The log is no matter to those who do not show it.
    samples::write(home.log.file(), "{");
    QCOMPARE(home.call(u"catalog"_s).err + home.call(u"schedule"_s).err, QString());
}

void CommandLineTest::changesInWords() {
    const QString before = u"schedule disable sleep away"_s;
    const std::tuple<QStringList, QString, QString> cases[] = {
        {{}, u"protect zoom teams zoom"_s, u"Nothing was changed: zoom, teams are protected already."_s},
        {{u"unprotect zoom"_s}, u"unprotect zoom"_s, u"Nothing was changed: zoom is not protected."_s},
        {{u"unprotect zoom"_s}, u"protect zoom teams"_s, u"teams is protected already."_s},
        {{},
         u"unprotect "_s + definitionIDs().join(u' '),
         u"Nothing is selected now, and that protects everything"_s},
        {{before}, u"schedule disable sleep"_s, u"Nothing was changed: sleep is disabled already."_s},
        {{before, u"off"_s}, u"schedule enable away"_s, u"The schedules turned Privacy Mode on."_s},
    };
    for (const auto &[preparation, call, sentence] : cases) {
        for (const bool json : {false, true}) {
            Home home;
            for (const QString &words : preparation)
                QCOMPARE(home.call(words).status, ExitStatus::done);
            const Answer answer = home.call(json ? call + u" --json"_s : call);
            QVERIFY(answer.status == ExitStatus::done);
            const QString &told = json ? answer.err : answer.out;
            QVERIFY2(told.startsWith(sentence), qUtf8Printable(answer.err + answer.out));
            QVERIFY(json == !QJsonDocument::fromJson(answer.out.toUtf8()).isNull());
            // The next call sees what this one has told.
            const QString shown = call.startsWith(u"schedule"_s) ? u"schedule"_s : u"status"_s;
            QVERIFY(answer.out.endsWith(home.call(json ? shown + u" --json"_s : shown).out));
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
    const auto says = [&](const QString &call, ExitStatus status, const QString &sentence) {
        const Answer answer = home.call(call);
        const QString &told = status == ExitStatus::done ? answer.out : answer.err;
        const bool isRight = answer.status == status && told.startsWith(sentence);
        if (!isRight)
            qWarning("%s", qUtf8Printable(call + u": "_s + answer.err + answer.out));
        return isRight;
    };
    const auto stored = [&](const QString &key) { return home.call(u"status --json"_s).object().value(key); };
    using enum ExitStatus;
    QVERIFY(says(u"resume"_s, done, u"Privacy Mode is not paused.\nPrivacy Mode"_s));
    QVERIFY(says(u"off"_s, done, u"Privacy Mode    Off\n"_s));
    QVERIFY(says(u"pause 1h"_s, couldNot, u"There is nothing to pause"_s));
    QVERIFY(says(u"resume"_s, couldNot, u"Privacy Mode is not paused but off"_s));
    QVERIFY(says(u"on"_s, done, u"Privacy Mode    On\n"_s));
    // Each takes the place of the one before, and rests a schedule that wants the opposite.
    const std::pair<QString, QString> labels[] = {
        {u"1h 30min"_s, u"13:30"_s},           {u"UNTIL 18:00"_s, u"18:00"_s},
        {u"until 9:00"_s, u"Sunday, 09:00"_s}, {u"2d 30s"_s, u"Monday, 12:00"_s},
        {u"until tomorrow"_s, u"tomorrow"_s},  {u"1h"_s, u"13:00"_s}};
    for (const auto &[end, label] : labels)
        QVERIFY(says(u"pause "_s + end, done, u"Privacy Mode    Paused until "_s + label + u'\n'));
    QCOMPARE(stored(u"pausedUntil"_s), QJsonValue(home.now.addSecs(3600).toUTC().toString(Qt::ISODate)));
    QCOMPARE(home.call(u"schedule enable focus"_s).status, done);
    QVERIFY(says(u"check"_s, done, u"Privacy Mode is off. No Mac app actions were taken."_s));
    QVERIFY(says(u"off"_s, done, u"Privacy Mode    Off\n"_s));
    QVERIFY(says(u"on"_s, done, u"Privacy Mode    On\n"_s));
    QVERIFY(says(u"pause 1h"_s, done, u"Privacy Mode    Paused"_s));
    QVERIFY(says(u"resume"_s, done, u"Privacy Mode    On\n"_s));
    QVERIFY(says(u"pause 1h"_s, done, u"Privacy Mode    Paused"_s));
    // Whoever comes first when it is over has ended it, and everybody goes by that.
    home.now = home.now.addSecs(3600);
    QVERIFY(says(u"check"_s, done, u"Privacy Mode is on. Evaluating Mac protected apps."_s));
    QCOMPARE(home.defaults.boolean(PrivacyModeFlag::key), true);
    QVERIFY(stored(u"pausedUntil"_s).isNull() && home.settings.load().isEnabled);
    const QString on = u"Privacy Mode is on for this Mac."_s;
    const QString off = u"Privacy Mode is off for this Mac."_s;
    QStringList switches = home.story();
    switches.removeIf([&](const QString &message) { return message != on && message != off; });
    QCOMPARE(switches, (QStringList{off, on, off, on, off, on, off, on}));

    // Where that cannot be kept, it is told and true all the same.
    QVERIFY(says(u"pause 1h"_s, done, u"Privacy Mode    Paused"_s));
    home.now = home.now.addSecs(3600);
    QVERIFY(QFile::remove(home.settings.file()) && QDir().mkpath(home.settings.file()));
    QVERIFY(says(u"status"_s, done, u"Privacy Mode    On\n"_s));
}

void CommandLineTest::times() {
    // The clocks of Berlin went forward at 2:00 on that day.
    qputenv("TZ", "Europe/Berlin");
    ::tzset();
    const QDateTime now(QDate(2026, 3, 29), QTime(14, 30, 10));
    const std::pair<QString, QString> phrases[] = {
        {u" Now "_s, u"2026-03-29T12:30:10Z"_s},
        {u"today"_s, u"2026-03-28T23:00:00Z"_s},
        {u"YESTERDAY 8:05"_s, u"2026-03-28T07:05:00Z"_s},
        {u"tomorrow"_s, u"2026-03-29T22:00:00Z"_s},
        {u"14:00"_s, u"2026-03-29T12:00:00Z"_s},
        {u"14:00:05 UTC"_s, u"2026-03-29T14:00:05Z"_s},
        {u"2026-01-02"_s, u"2026-01-01T23:00:00Z"_s},
        {u"2026-07-02 03:04"_s, u"2026-07-02T01:04:00Z"_s},
        {u"2026-07-02T03:04:05Z"_s, u"2026-07-02T03:04:05Z"_s},
        {u"2026-03-29 02:30"_s, u"2026-03-29T01:30:00Z"_s},
        {u"13 hours ago"_s, u"2026-03-28T23:30:10Z"_s},
        {u"1h 30min ago"_s, u"2026-03-29T11:00:10Z"_s},
        {u"-90s"_s, u"2026-03-29T12:28:40Z"_s},
        {u"+1w"_s, u"2026-04-05T12:30:10Z"_s},
        {u"1 month ago"_s, u"2026-02-28T13:30:10Z"_s},
        {u"1M ago"_s, u"2026-02-28T13:30:10Z"_s},
        {u"@1700000000"_s, u"2023-11-14T22:13:20Z"_s},
    };
    for (const auto &[phrase, expected] : phrases) {
        const auto moment = timeOfPhrase(phrase, now);
        QVERIFY2(moment && moment->toUTC().toString(Qt::ISODate) == expected, qUtf8Printable(phrase));
    }
    for (const QString &phrase : {u""_s, u"ago"_s, u"2 ago"_s, u"hours ago"_s, u"2 moons ago"_s, u"-"_s,
                                  u"@"_s, u"@x"_s, u"2026-02-30"_s, u"25:00"_s, u"2026-01-02 "_s + u"3"_s,
                                  u"today tomorrow"_s, u"UTC"_s, u"1e9h ago"_s})
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
            noon.addSecs(3600 * hour), hour < 10 ? dryRun : quitRequested,
            QString::number(hour) + u" o'clock"_s, isZoom ? u"Zoom"_s : u"Caf\u00e9"_s,
            isZoom ? std::optional(u"us.zoom.xos"_s) : std::nullopt));
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
        QStringList messages;
        for (const QJsonValue &event : home.call(QStringList{u"log"_s, u"--json"_s} + options).array())
            messages.append(event.toObject().value(u"message"_s).toString());
        QStringList wanted;
        for (const int hour : expected)
            wanted.append(QString::number(hour) + u" o'clock"_s);
        QVERIFY2(messages == wanted, qUtf8Printable(options.join(u' ')));
    }
    QVERIFY(home.call(u"log --kind actionFailed"_s).out.startsWith(u"No event"));
    // Who uses a device is no match.
    home.log.append(
        MacProtectionEvent::create(noon, riskAppMatched, u"Zoom stopped using the screen."_s, u"Zoom"_s));
    QVERIFY(home.call(u"log --kind deviceUse"_s).out.endsWith(u"  Zoom stopped using the screen.\n"));
    QVERIFY(home.call(u"log --kind riskAppMatched"_s).out.startsWith(u"No event"));
}

void CommandLineTest::ownApplications() {
    // What is called, what it says on which stream, and what is in the file of a home in which this stays.
    struct Step {
        QStringList call;
        QString says;
        QStringList ids;
    };
    const QString longName(201, u'x');
    QStringList tooManyNames;
    for (int i = 0; i < 21; ++i)
        tooManyNames += {u"--alias"_s, u"name %1"_s.arg(i)};
    const Step steps[] = {
        {{u"add"_s, u"  Notes "_s, u"--alias"_s, u"noter"_s, u"--identifier"_s, u" org.example.Notes "_s},
         u"Notes is in the catalog as notes, and protected."_s,
         {u"notes"_s}},
        {{u"add"_s, u"NOTES\n"_s},
         u"\"NOTES\" is Notes, which is in the catalog already as \"notes\"."_s,
         {}},
        {{u"add"_s, u"x"_s, u"--alias"_s, u"Noter"_s}, u"\"Noter\" is Notes"_s, {}},
        {{u"add"_s, u"x"_s, u"--identifier"_s, u"ORG.EXAMPLE.NOTES"_s},
         u"\"ORG.EXAMPLE.NOTES\" is Notes"_s,
         {}},
        {{u"add"_s, u"zoom.us"_s}, u"\"zoom.us\" is Zoom"_s, {}},
        {{u"add"_s, u"x"_s, u"--identifier"_s, u"US.zoom.XOS"_s}, u"\"US.zoom.XOS\" is Zoom"_s, {}},
        {{u"add"_s, u" kestrin"_s}, u"Kestrin does not close itself."_s, {}},
        {{u"add"_s, longName}, u"at most 200 characters"_s, {}},
        {u"add x"_s.split(u' ') + tooManyNames, u"at most 20 identifiers"_s, {}},
        // One who is called like the other's id.
        {{u"add"_s, u"Notes!"_s}, u"Notes! is in the catalog as notes-2, and protected."_s, {u"notes-2"_s}},
        {{u"add"_s, u"Zoé  Café_2.0"_s}, u"as zoe-cafe-2-0,"_s, {u"zoe-cafe-2-0"_s}},
        {{u"add"_s, u"日本が"_s}, u"as 日本が,"_s, {u"日本が"_s}},
        {{u"add"_s, u"++"_s}, u"as app,"_s, {u"app"_s}},
        {{u"add"_s, u"--running"_s, u" EDITOR "_s}, u"Editor is in the catalog as editor,"_s, {u"editor"_s}},
        {{u"add"_s, u"--running"_s, u"12"_s}, u"Paint is in the catalog as paint,"_s, {u"paint"_s}},
        {{u"add"_s, u"--running"_s, u"Twin"_s}, u"choose one by its process: 13 or 15."_s, {}},
        {{u"add"_s, u"--running"_s, u"99"_s}, u"No running application is \"99\""_s, {}},
        {{u"add"_s, u"--running"_s, u"10"_s}, u"\"Zoom\" is Zoom"_s, {}},
    };
    Home home;
    home.workspace.add(samples::running(u"Paint"_s, 12, u"org.example.Paint"_s));
    // Two processes of one application, and another one.
    home.workspace.add(samples::running(u"Twin"_s, 13, u"org.example.Twin"_s));
    home.workspace.add(samples::running(u"Twin"_s, 14, u"org.example.Twin"_s));
    home.workspace.add(samples::running(u"Twin"_s, 15, u"org.example.Other"_s));
    QCOMPARE(home.call(u"unprotect chrome"_s).status, ExitStatus::done);
    QStringList ids;
    for (const Step &step : steps) {
        const Answer answer = home.call(QStringList{u"catalog"_s} + step.call);
        const bool isAdded = !step.ids.isEmpty();
        QCOMPARE(answer.status, isAdded ? ExitStatus::done : ExitStatus::couldNot);
        QVERIFY2((isAdded ? answer.out : answer.err).contains(step.says), qUtf8Printable(answer.err));
        QVERIFY(isAdded || answer.isOneSentence());
        ids += step.ids;
        QCOMPARE(home.ownIDs(), ids);
    }
    const QJsonObject added = home.own().first().toObject();
    QCOMPARE(added[u"displayName"_s], u"Notes"_s);
    QCOMPARE(added[u"bundleIdentifiers"_s], QJsonArray{u"org.example.Notes"_s});
    QCOMPARE(added[u"defaultAction"_s], u"keepClosed"_s);
    QVERIFY(samples::isOwnersAlone(home.ownFile()));
    // Behind the built-in ones, and like them.
    const QJsonArray all =
        home.call(u"catalog add Call --category videoCall --category camera --action quit --json"_s)
            .object()[u"definitions"_s]
            .toArray();
    QCOMPARE(all.size(), 12 + ids.size() + 1);
    QCOMPARE(all.last()[u"categories"_s], (QJsonArray{u"videoCall"_s, u"camera"_s}));
    QCOMPARE(all.last()[u"defaultAction"_s], u"quit"_s);
    const QJsonArray selected = home.call(u"status --json"_s).object()[u"protectedDefinitionIDs"_s].toArray();
    QVERIFY(selected.size() == all.size() - 1 && !selected.contains(u"chrome"_s));
    QVERIFY(home.call(u"check"_s).out.contains(u"Preview: Kestrin would ask Paint to quit"));
    QCOMPARE(home.call(u"unprotect paint"_s).status, ExitStatus::done);
    QVERIFY(!home.call(u"check"_s).out.contains(u"Paint"));

    // What runs and is known is no candidate, nor is what is installed and runs.
    home.menus = {{u"Twin"_s, u"org.example.Twin"_s, {}},
                  {u"Paint"_s, u"org.example.Paint"_s, {}},
                  {u"Kestrin"_s, u"org.example.Kestrin"_s, {}},
                  {u"Writer"_s, u"org.example.Writer"_s, {}}};
    QCOMPARE(home.call(u"catalog candidates"_s).out, u"Twin\trunning\nTwin\trunning\nWriter\tinstalled\n"_s);

    QCOMPARE(home.call(u"catalog remove zoe-cafe-2-0 notes app"_s).status, ExitStatus::done);
    QCOMPARE(home.ownIDs().size(), ids.size() + 1 - 3);
    QCOMPARE(home.story().last(), u"++ removed from Mac Privacy Mode."_s);
    // An id that has become free.
    QVERIFY(home.call(u"catalog add Notes"_s).out.contains(u"as notes,"_s));
    // Where it was the last that was selected, everything is protected from then on.
    home.settings.save({true, {u"notes"_s}});
    QVERIFY(home.call(u"catalog remove notes"_s).out.startsWith(u"Nothing is selected now"_s));
}

void CommandLineTest::unusableOwnApplications() {
    const auto with = [](const QString &key, const QJsonValue &value) {
        QJsonObject changed = notes();
        changed[key] = value;
        return changed;
    };
    const auto file = [](const QJsonArray &definitions) {
        return QJsonDocument(QJsonObject{{u"definitions"_s, definitions}}).toJson();
    };
    QJsonObject incomplete = notes();
    incomplete.remove(u"aliases"_s);
    QJsonArray tooMany;
    for (int i = 0; i <= OwnApplicationLimits::applications; ++i)
        tooMany.append(with(u"id"_s, QString::number(i)));
    const std::pair<QByteArray, QString> texts[] = {
        {"{", u"not a JSON object"_s},
        {"[]", u"not a JSON object"_s},
        {QByteArray(1000, '\0'), u"not a JSON object"_s},
        {file({incomplete}), u"complete"_s},
        {file({with(u"defaultAction"_s, u"kill"_s)}), u"complete"_s},
        {file({notes(), notes()}), u"two applications in it have the id \"notes\""_s},
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
            QVERIFY(answer.status == ExitStatus::done && answer.isOneSentence());
            QVERIFY2(answer.err.startsWith(home.ownFile()) && answer.err.contains(reason),
                     qUtf8Printable(answer.err));
        }
        QVERIFY(!home.call(u"catalog"_s).out.contains(u"notes"));
        for (const QString &call : {u"catalog add Writer"_s, u"catalog remove notes"_s}) {
            const Answer answer = home.call(call);
            QVERIFY(answer.status == ExitStatus::couldNot && answer.isOneSentence());
            QVERIFY2(answer.err.contains(reason), qUtf8Printable(answer.err));
        }
        QVERIFY(home.call(u"protect notes"_s).err.contains(reason));
        QCOMPARE(samples::contents(home.ownFile()), text);
        QCOMPARE(QDir(home.support()).entryList({u"own-applications.json*"_s}).size(), 1);
        QVERIFY(!home.story().contains(u"Writer added to Mac Privacy Mode."_s));
    }
    // Neither does anything else that has its name make way.
    Home home;
    QVERIFY(QDir().mkpath(home.ownFile()));
    QVERIFY(home.call(u"catalog add Writer"_s).err.contains(u"is a folder and not a file"_s));
    // What cannot be selected is told so.
    Home unselectable;
    QVERIFY(QDir().mkpath(unselectable.settings.file()));
    const Answer answer = unselectable.call(u"catalog add Writer"_s);
    QVERIFY(answer.status == ExitStatus::couldNot &&
            answer.err.contains(u"as writer, but could not be selected"_s));
}

void CommandLineTest::following() {
    QTemporaryDir folder;
    const QString path = folder.filePath(u"log.json"_s);
    JSONMacActivityLogStore log(QUrl::fromLocalFile(path));
    log.append(samples::event(u"old"_s));
    EventFollower follower(log);
    const auto takeNew = [&] { return follower.takeNew(log.recent(8)); };
    QVERIFY(takeNew().isEmpty());
    QStringList added;
    // As many at a time as the first look sees, one more, and many more.
    for (const int count : {1, 7, 8, 9, 200}) {
        added.clear();
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
    QCOMPARE(home.call(u"live"_s).out, u"Nobody uses the microphone, a camera or the screen.\n"_s);
    QCOMPARE(home.call(u"live --json"_s).array(), QJsonArray());
    const QDateTime since(QDate(2026, 11, 26), QTime(9, 30), universalTime);
    const DeviceUse call{MacRiskCategory::microphone, 10, u"Zoom"_s, u"us.zoom.xos"_s, since};
    const DeviceUse hostile{MacRiskCategory::screenCapture, 12, u"x\x1b[2J\n\u202e"_s, std::nullopt, since};
    home.deviceUses.begin(call);
    home.deviceUses.begin(hostile);
    QCOMPARE(home.call(u"live"_s).out, u"PROCESS  NAME                    USES            IDENTIFIER\n"
                                       "10       Zoom                    Microphone      us.zoom.xos\n"
                                       "12       x\\u001b[2J\\u000a\\u202e  Screen capture\n"_s);
    const QJsonObject asJson{{u"category"_s, u"microphone"_s},
                             {u"processIdentifier"_s, 10},
                             {u"localizedName"_s, u"Zoom"_s},
                             {u"bundleIdentifier"_s, u"us.zoom.xos"_s},
                             {u"since"_s, u"2026-11-26T09:30:00Z"_s}};
    QCOMPARE(home.call(u"live --json"_s).array().first(), asJson);
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
        return home.call(words);
    };
    const Answer text = followed(u"live --follow"_s);
    QCOMPARE(text.status, ExitStatus::done);
    QCOMPARE(text.err, u"Some are unseen.\n"_s);
    QStringList sentences;
    for (const QString &line : text.out.split(u'\n', Qt::SkipEmptyParts))
        sentences.append(line.section(u"  "_s, 1));
    const QString name = u"x\\u001b[2J\\u000a\\u202e"_s;
    QCOMPARE(sentences,
             (QStringList{u"Zoom is using the microphone."_s, name + u" is using the screen."_s,
                          name + u" stopped using the screen."_s, name + u" started using the screen."_s}));
    const QStringList lines = followed(u"live --follow --json"_s).out.split(u'\n', Qt::SkipEmptyParts);
    QStringList events;
    for (const QString &line : lines)
        events.append(QJsonDocument::fromJson(line.toUtf8()).object()[u"event"_s].toString());
    QCOMPARE(events, (QStringList{u"using"_s, u"using"_s, u"stopped"_s, u"started"_s}));
    QVERIFY(!home.deviceUses.isWatched());

    home.deviceUses.setSight({Sight::Extent::none, u"All are unseen."_s, {}, {}});
    for (const QString &words : {u"live"_s, u"live --json"_s, u"live --follow"_s}) {
        const Answer answer = home.call(words);
        QVERIFY(answer.status == ExitStatus::couldNot && answer.out.isEmpty());
        QCOMPARE(answer.err, u"All are unseen.\n"_s);
    }
    QVERIFY(home.call(u"status"_s)
                .out.contains(u"\nLive use        not known\nNot seen        All are unseen.\n"));
    QVERIFY(home.story().isEmpty());
}

void CommandLineTest::liveSwitch() {
    Home home;
    const DeviceUse call{MacRiskCategory::microphone, 10, u"Zoom"_s, std::nullopt,
                         QDateTime(QDate(2026, 11, 26), QTime(9, 30), universalTime)};
    DeviceUse picture = call;
    picture.category = MacRiskCategory::camera;
    home.deviceUses.begin(call);
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
    QCOMPARE(home.story(), (QStringList{u"Zoom is using the microphone."_s, u"Zoom is using the camera."_s}));

    // Another process switches it off while it is followed.
    QTimer::singleShot(0, &home.defaults, [&home] { home.defaults.setBoolean(LiveUse::key, false); });
    const QStringList offs{u"live --follow"_s, u"live --follow"_s, u"live"_s, u"live --json"_s};
    for (const QString &words : offs) {
        const Answer off = home.call(words);
        QCOMPARE(off.status, ExitStatus::couldNot);
        QVERIFY(off.isOneSentence() && off.err.contains(u"kestrinctl live on"));
    }
    QVERIFY(home.call(u"status"_s).out.contains(u"\nLive use        Off\n"));
    const QJsonObject off = home.call(u"status --json"_s).object()[u"live"_s].toObject();
    QVERIFY(off[u"on"_s] == QJsonValue(false) && off[u"uses"_s].toArray().isEmpty());

    QCOMPARE(home.call(u"live on --json"_s).object(), (QJsonObject{{u"live"_s, true}}));
    QCOMPARE(home.call(u"status --json"_s).object()[u"live"_s][u"uses"_s].toArray().size(), 2);
    for (int time = 0; time < 2; ++time)
        QCOMPARE(home.call(u"live off"_s).out,
                 u"Kestrin does not tell who uses microphone, camera or screen.\n"_s);
    QCOMPARE(home.story().mid(2),
             (QStringList{u"Kestrin tells who uses microphone, camera or screen."_s,
                          u"Kestrin no longer tells who uses microphone, camera or screen."_s}));
}

KESTRIN_TEST(CommandLineTest)
#include "tst_commandline.moc"
