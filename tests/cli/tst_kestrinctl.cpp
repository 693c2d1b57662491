// The executable itself, in a home of its own without a desktop session.

#include "cli/CommandTable.h"
#include "foundation/FolderLock.h"
#include "tests/support/Files.h"
#include "tests/support/Home.h"
#include "tests/support/TestClass.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRegularExpression>

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <csignal>
#include <map>

using namespace Qt::StringLiterals;
using namespace kestrin;
using namespace kestrin::foundation;
using namespace kestrin::engine;
using namespace kestrin::cli;
using samples::sorted;

namespace {

struct ProgramAnswer {
    int code = -1;
    QString out;
    QString err;
};

struct ProgramHome : samples::Home {
    QProcessEnvironment environment;

    ProgramHome() {
        const QString programs = QFileInfo(QStringLiteral(KESTRINCTL)).path();
        environment.insert(u"PATH"_s, programs + u":/usr/bin:/bin"_s);
        environment.insert(u"HOME"_s, folder.path());
        environment.insert(u"XDG_RUNTIME_DIR"_s, folder.path());
        environment.insert(u"XDG_DATA_HOME"_s, folder.filePath(u"data"_s));
        environment.insert(u"XDG_CONFIG_HOME"_s, folder.filePath(u"config"_s));
        // Not even a UTF-8 locale.
        environment.insert(u"LANG"_s, u"C"_s);
        environment.insert(u"TERM"_s, u"xterm"_s);
    }

    ProgramAnswer shell(const QString &script) const {
        QProcess process;
        process.setProcessEnvironment(environment);
        process.start(u"bash"_s, {u"-c"_s, script});
        if (!process.waitForFinished() || process.exitStatus() != QProcess::NormalExit)
            return {};
        return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
                QString::fromUtf8(process.readAllStandardError())};
    }
    ProgramAnswer call(const QString &words) const { return shell(u"exec kestrinctl "_s + words); }
    QJsonObject status() { return QJsonDocument::fromJson(call(u"status --json"_s).out.toUtf8()).object(); }
};

/// A `watch`, or another call that goes on, that runs until the test ends, unless it was ended before.
struct Watch {
    QProcess process;

    explicit Watch(const ProgramHome &home, const QString &words = u"watch --json"_s) {
        process.setProcessEnvironment(home.environment);
        process.start(u"bash"_s, {u"-c"_s, u"exec kestrinctl "_s + words});
    }
    ~Watch() {
        if (process.state() != QProcess::NotRunning)
            end(SIGTERM);
    }

    bool isReady() {
        process.setReadChannel(QProcess::StandardError);
        QByteArray said;
        while (!said.contains("Watching.\n") && process.waitForReadyRead(20000))
            said += process.readAll();
        process.setReadChannel(QProcess::StandardOutput);
        return said.contains("Watching.\n");
    }
    /// The messages of the next events that are printed.
    QStringList next(qsizetype count) {
        QStringList messages;
        while (messages.size() < count && (process.canReadLine() || process.waitForReadyRead(20000))) {
            while (process.canReadLine())
                messages.append(QJsonDocument::fromJson(process.readLine())[u"message"_s].toString());
        }
        return messages;
    }
    /// The exit code; -1 when it did not end by itself.
    int end(int signalNumber) {
        ::kill(static_cast<pid_t>(process.processId()), signalNumber);
        if (!process.waitForFinished(20000))
            process.kill();
        return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    }
};

} // namespace

class KestrinctlTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void callsWithoutADesktop();
    void watching();
    void addingAtOnce();
    void completions();
    void endings();
    void interruptedWhileRecording();
    void stuckReader();
    void streams();
    void followedLog();
};

void KestrinctlTest::callsWithoutADesktop() {
    ProgramHome home;
    QCOMPARE(home.call(u"--version"_s).code, 0);
    QCOMPARE(home.call(u"nonsense"_s).code, 2);
    const QString sentence = home.call(u"apps"_s).err;
    QVERIFY(sentence.contains(u"no running applications can be seen") && sentence.count(u'\n') == 1);
    for (const QString &call : {u"apps --json"_s, u"check"_s}) {
        const ProgramAnswer answer = home.call(call);
        QVERIFY(answer.code == 1 && answer.out.isEmpty() && answer.err == sentence);
    }
    QVERIFY(QDir(home.folder.path()).isEmpty());
    for (const QString &call : {u"status"_s, u"off"_s, u"protect zoom"_s, u"enforce on"_s}) {
        const ProgramAnswer answer = home.call(call);
        // Not the library's remark about the locale, only ours about the desktop.
        QVERIFY(answer.code == 0 && !answer.out.isEmpty() && answer.err == sentence);
    }
    for (const QString &call : {u"catalog"_s, u"log"_s, u"schedule enable focus"_s})
        QCOMPARE(home.call(call).err, QString());
}

void KestrinctlTest::watching() {
    ProgramHome home;
    QCOMPARE(home.call(u"schedule disable sleep away"_s).code, 0);
    QCOMPARE(home.call(u"off"_s).code, 0);
    Watch watch(home);
    QVERIFY(watch.isReady());

    const ProgramAnswer second = home.call(u"watch"_s);
    const QString holder = u"kestrinctl watch, process %1"_s.arg(watch.process.processId());
    QVERIFY(second.code == 1 && second.err.contains(holder));

    // What another call does is printed once, and not done a second time.
    QCOMPARE(home.call(u"on"_s).code, 0);
    QCOMPARE(home.call(u"enforce on"_s).code, 0);
    QCOMPARE(watch.next(3), (QStringList{u"Privacy Mode is on for this Mac."_s,
                                         u"Mac app actions are enforcing for selected protected apps."_s,
                                         u"Privacy Mode is on. Evaluating Mac protected apps."_s}));
    QCOMPARE(home.status().value(u"monitorLabel"_s), QJsonValue(u"Enforcing"_s));

    QCOMPARE(watch.end(SIGTERM), 0);
    QCOMPARE(watch.process.readAllStandardOutput(), QByteArray());
    QCOMPARE(home.status().value(u"monitorLabel"_s), QJsonValue(u"Off"_s));
}

void KestrinctlTest::addingAtOnce() {
    ProgramHome home;
    QCOMPARE(home.call(u"unprotect zoom"_s).code, 0);
    // Eight at once: many more wait longer for each other, on a busy machine, than they may.
    const ProgramAnswer all =
        home.shell(u"for i in 1 2 3 4 5 6; do kestrinctl catalog add \"App $i\" >/dev/null & done;"
                   " for i in 1 2; do (kestrinctl catalog add \"x $i!\" && kestrinctl catalog remove x-$i)"
                   " >/dev/null & done; wait"_s);
    QCOMPARE(all.err, QString());
    QStringList isProtected;
    for (const QJsonValue id : home.status()[u"protectedDefinitionIDs"_s].toArray())
        isProtected.append(id.toString());
    QCOMPARE(isProtected.filter(u"app-"_s).join(u' '), u"app-1 app-2 app-3 app-4 app-5 app-6"_s);
    // Nor is any of them left out of the catalog, or of the log.
    QCOMPARE(home.call(u"catalog"_s).out.count(u"  App "_s), 6);
    QCOMPARE(home.log.recent(1000).size(), 1 + 6 + 2 * 2);
}

void KestrinctlTest::completions() {
    ProgramHome home;
    samples::write(home.folder.filePath(u"data/applications/org.example.Notes.desktop"_s),
                   "[Desktop Entry]\nType=Application\nName=Own Notes (old)\nExec=notes\n");
    QCOMPARE(home.call(u"catalog add 'Text Writer'"_s).code, 0);
    // For the last of the words.
    const auto offeredByBash = [&](const QString &words) {
        const ProgramAnswer answer = home.shell(
            u". '" COMPLETIONS "kestrinctl.bash'; COMP_WORDS=(kestrinctl "_s + words +
            u"); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _kestrinctl; printf '%s\\n' \"${COMPREPLY[@]}\""_s);
        return sorted((answer.err + answer.out).split(u'\n', Qt::SkipEmptyParts));
    };
    const std::pair<QString, QStringList> cases[] = {
        {u"catalog add 'Own\\ N'"_s, {u"Own\\ Notes\\ \\(old\\)"_s}},
        {u"catalog add '\"Own N'"_s, {u"Own Notes (old)"_s}},
        // It does not run.
        {u"catalog add --running Own"_s, {}},
        {u"catalog add x --action ke"_s, {u"keepClosed"_s}},
        {u"catalog remove t"_s, {u"text-writer"_s}},
        {u"protect te"_s, {u"teams"_s, u"text-writer"_s}},
        {u"sch"_s, {u"schedule"_s}},
        {u"log --limit ''"_s, {}},
    };
    for (const auto &[words, offered] : cases)
        QCOMPARE(offeredByBash(words), offered);

    const QStringList anywhere{u"--help"_s, u"--version"_s};
    QCOMPARE(offeredByBash(u"''"_s), sorted(commandNames() + anywhere));
    const std::map<CommandArguments, QStringList> arguments{
        {CommandArguments::pauseEnd, {u"15m"_s, u"1h"_s, u"2h"_s, u"until"_s}},
        {CommandArguments::definitionIDs, definitionIDs() + QStringList{u"text-writer"_s}},
        {CommandArguments::onOrOff, {u"on"_s, u"off"_s}},
        {CommandArguments::maybeOnOrOff, {u"on"_s, u"off"_s}},
        {CommandArguments::enableOrDisable, {u"enable"_s, u"disable"_s}},
        {CommandArguments::presetSwitch, {u"enable"_s, u"disable"_s}},
        {CommandArguments::catalogChange, {u"add"_s, u"remove"_s, u"candidates"_s}},
    };
    QStringList everyWord = commandNames() + definitionIDs() + presetIDs() + anywhere;
    for (const CommandDescription &command : commandTable()) {
        const auto own = arguments.find(command.arguments);
        QCOMPARE(offeredByBash(command.name + u" ''"_s),
                 sorted(command.options + QStringList{u"--help"_s} +
                        (own == arguments.end() ? QStringList() : own->second)));
        everyWord += command.options + command.addOptions;
    }
    QCOMPARE(offeredByBash(u"schedule --json disable ''"_s),
             sorted(presetIDs() + QStringList{u"--json"_s, u"--help"_s}));

    // The other two shells may not be there to be asked, but no word may have been forgotten in their files.
    for (const QString &name : {u"_kestrinctl"_s, u"kestrinctl.fish"_s}) {
        const QString text = QString::fromUtf8(samples::contents(QString::fromLatin1(COMPLETIONS) + name));
        for (QString word : std::as_const(everyWord)) {
            const QRegularExpression whole(u"\\b%1\\b"_s.arg(word.remove(u"--"_s)));
            QVERIFY2(text.contains(whole), qUtf8Printable(name + u": "_s + word));
        }
    }
}

void KestrinctlTest::endings() {
    for (const int signalNumber : {SIGINT, SIGTERM, SIGHUP}) {
        ProgramHome home;
        Watch watch(home);
        QVERIFY(watch.isReady());
        // What is recorded right before the end is still printed.
        home.log.append(samples::event(u"the last one"_s));
        QCOMPARE(watch.end(signalNumber), 0);
        QVERIFY(watch.process.readAllStandardOutput().contains("the last one"));
    }
}

void KestrinctlTest::interruptedWhileRecording() {
    // What was done is recorded first, however long that takes, and then the signal has its way.
    for (const int signalNumber : {SIGINT, SIGTERM, SIGHUP}) {
        ProgramHome home;
        QProcess call;
        call.setProcessEnvironment(home.environment);
        {
            const FolderLock lock(home.support());
            call.start(QStringLiteral(KESTRINCTL), {u"enforce"_s, u"off"_s});
            QVERIFY(call.waitForStarted());
            const QString files = u"/proc/%1/fd"_s.arg(call.processId());
            const auto waitsForTheLock = [&] {
                const QFileInfoList open = QDir(files).entryInfoList(QDir::AllEntries | QDir::System);
                return std::any_of(open.cbegin(), open.cend(), [&](const QFileInfo &file) {
                    return file.symLinkTarget() == home.support() + u"/store.lock"_s;
                });
            };
            QTRY_VERIFY(waitsForTheLock());
            ::kill(static_cast<pid_t>(call.processId()), signalNumber);
        }
        QVERIFY(call.waitForFinished());
        QCOMPARE(call.exitStatus(), QProcess::CrashExit);
        QCOMPARE(home.log.recent(9).size(), 2);
    }
}

void KestrinctlTest::stuckReader() {
    ProgramHome home;
    const QString pipe = home.folder.filePath(u"pipe"_s);
    QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    const int reader = ::open(QFile::encodeName(pipe).constData(), O_RDWR | O_CLOEXEC);
    Watch watch(home, u"watch >\"$HOME/pipe\""_s);
    QVERIFY(watch.isReady());
    home.log.append(samples::event(QString(300000, u'x')));
    // It waits for its reader now, but not when it is told to end.
    const int room = ::fcntl(reader, F_GETPIPE_SZ);
    int waiting = 0;
    QTRY_VERIFY(::ioctl(reader, FIONREAD, &waiting) == 0 && waiting > room - 2 * PIPE_BUF);
    QCOMPARE(watch.end(SIGTERM), 0);
    ::close(reader);
}

void KestrinctlTest::streams() {
    ProgramHome home;
    const QList<MacProtectionEvent> events(3000, samples::event(u"Many of these sentences fill a pipe: 0"_s));
    samples::write(home.log.file(), encodeJson(events));
    const ProgramAnswer head =
        home.shell(u"kestrinctl log --limit 3000 | head -n 1; echo ${PIPESTATUS[0]}"_s);
    QVERIFY(head.out.endsWith(u"pipe: 0\n0\n"));
    QCOMPARE(head.err, QString());
    // Without a reader there is nobody to watch for, and that is noticed without an event.
    const ProgramAnswer watch = home.shell(u"timeout 20 kestrinctl watch | true; echo ${PIPESTATUS[0]}"_s);
    QCOMPARE(watch.out, u"0\n"_s);

    const ProgramAnswer full = home.shell(u"kestrinctl catalog >/dev/full"_s);
    QVERIFY(full.code == 1 && full.err.contains(u"No space left on device") && full.err.count(u'\n') == 1);
    // With standard output closed, no file of ours may end up in its place.
    ProgramHome quiet;
    QCOMPARE(quiet.shell(u"kestrinctl off >&- 2>&-"_s).code, 0);
    QCOMPARE(quiet.status().value(u"privacyModeOn"_s), QJsonValue(false));
    QCOMPARE(quiet.log.recent(9).size(), 1);
}

void KestrinctlTest::followedLog() {
    ProgramHome home;
    for (const QString &text : {u"this"_s, u"plain"_s, u"other"_s, u"two\r\nlines"_s})
        home.log.append(samples::event(text));
    // The newest first of all, and then what comes and is asked for.
    Watch follower(home, u"log --follow --limit 2 --search i --format jsonl"_s);
    QCOMPARE(follower.next(2), (QStringList{u"plain"_s, u"two\r\nlines"_s}));
    for (const QString &text : {u"nothing"_s, u"other"_s, u"this"_s})
        home.log.append(samples::event(text));
    QCOMPARE(follower.next(2), (QStringList{u"nothing"_s, u"this"_s}));
    QCOMPARE(follower.end(SIGINT), 0);
}

KESTRIN_TEST(KestrinctlTest)
#include "tst_kestrinctl.moc"
