// Files of ours: watched, locked between processes, and never erased for what is wrong with them.

#include "foundation/FileLock.h"
#include "foundation/FileWatch.h"
#include "foundation/PrivateFolder.h"
#include "foundation/StoredFile.h"
#include "tests/support/Test.h"
#include "tests/support/Witness.h"

#include <QElapsedTimer>
#include <QRegularExpression>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <functional>
#include <semaphore>
#include <thread>

using samples::modeOf;

namespace {

void makePipe(const QString &path) {
    if (::mkfifo(QFile::encodeName(path).constData(), 0600) != 0)
        qFatal("No pipe could be made.");
}

void makeFolder(const QString &path) {
    QDir().mkpath(path);
}

/// Puts something where a file should be.
using Make = std::function<void(const QString &path)>;

Make text(const QByteArray &bytes) {
    return [bytes](const QString &path) { samples::write(path, bytes); };
}

Make linkTo(const QString &target) {
    return [target](const QString &path) { QFile::link(target, path); };
}

Make whereTheNewOneGoes(const Make &make) {
    return [make](const QString &path) { make(path + u".new"_s); };
}

} // namespace

class FilesTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }
    void watchTellsEveryKindOfChange();
    void whatIsStoredIsNeverErased();
    void damagedOnesDoNotReplaceEachOther();
    void closedToOthers();
    void nobodyOvertakes();
    void stoppedHolder();
    void strangeLocks();

  private:
    QString folder() const { return m_folder->filePath(u"ours"_s); }
    QString path() const { return folder() + u"/file.json"_s; }
    QStringList entries() const {
        QStringList names = QDir(folder()).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot);
        names.removeAll(u"store.lock"_s);
        return names;
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void FilesTest::watchTellsEveryKindOfChange() {
    const QString parent = m_folder->filePath(u"above/new"_s);
    const QString away = m_folder->filePath(u"away"_s);
    const QString file = parent + u"/file.json"_s;
    FileWatch watch(file); // makes the folder
    QSignalSpy spy(&watch, &FileWatch::changed);
    qsizetype told = 0;
    const auto isTold = [&](const std::function<bool()> &change) {
        ++told;
        return change() && QTest::qWaitFor([&] { return spy.size() == told; });
    };

    QVERIFY(isTold([&] { return replacePrivateFile(file, {"created"}); }));
    QVERIFY(isTold([&] { return replacePrivateFile(file, {"repl", "aced"}); }));
    QVERIFY(isTold([&] {
        QFile inPlace(file);
        return inPlace.open(QIODevice::Append) && inPlace.write(" in place") > 0;
    }));
    QVERIFY(isTold([&] { return QFile::remove(file); }));
    QVERIFY(isTold([&] { return replacePrivateFile(file, {"again"}); }));
    // What the owner knows already is no news, and neighbours are none of its business.
    QVERIFY(replacePrivateFile(file, {"known"}));
    watch.acknowledge();
    QVERIFY(replacePrivateFile(parent + u"/other.json"_s, {"x"}));
    QVERIFY(samples::everythingIsTold());
    QCOMPARE(spy.size(), told);
    QVERIFY(isTold([&] { return replacePrivateFile(file, {"news"}); }));
    // Nor is it deaf once its folder was removed, or was moved away, by itself or with one above it, or a
    // file was in its place, which nobody complains about.
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    for (const QString &moved : {QString(), u"above/new"_s, u"above"_s}) {
        QVERIFY(moved.isEmpty() ? QDir(parent).removeRecursively()
                                : QDir().rename(m_folder->filePath(moved), away));
        QTRY_VERIFY(QFile::exists(parent));
        told = spy.size();
        QVERIFY(isTold([&] { return replacePrivateFile(file, {"after all"}); }));
        QDir(away).removeRecursively();
    }
    QVERIFY(isTold([&] {
        const bool isMoved = QDir().rename(parent, away);
        samples::write(parent, "");
        return isMoved;
    }));
}

void FilesTest::whatIsStoredIsNeverErased() {
    // With a part of why it is left alone; without one it is written.
    const auto row = [this](const char *what, const Make &make, const QString &sentence = {}) {
        init();
        QVERIFY(makePrivateFolder(QFile::encodeName(folder())));
        text("old")(m_folder->filePath(u"elsewhere"_s));
        make(path());
        const bool isFollowed = QByteArray(what) == "link";
        const StoredFile file{path(), 8};
        const QStringList before = entries();
        const StoreResult result = StoredFileChange(file).replaceBy("new", false);
        if (sentence.isEmpty()) {
            QVERIFY2(result.isKept(), what);
            QCOMPARE(file.read().bytes, QByteArray("new"));
            QCOMPARE(entries(), QStringList{u"file.json"_s});
            QVERIFY2(QFileInfo(path()).isSymLink() == isFollowed, what);
        } else {
            QVERIFY2(result.problem.startsWith(path()) && result.problem.contains(sentence),
                     qUtf8Printable(QString::fromLatin1(what) + result.problem));
            QCOMPARE(entries(), before);
        }
        QVERIFY2(result.notice.isEmpty(), what);
    };
    row("missing", [](const QString &) {});
    row("empty", text(""));
    row("text", text("old"));
    row("link", linkTo(u"../elsewhere"_s));
    row("broken link", linkTo(u"nowhere"_s));
    row("what a killed writer left", whereTheNewOneGoes(text("ne")));
    row("folder", makeFolder, u"is a folder and not a file"_s);
    row("pipe", makePipe, u"is a pipe and not a file"_s);
    row("device", linkTo(u"/dev/zero"_s), u"is a device and not a file"_s);
    row("link to itself", linkTo(u"file.json"_s), u"a link that leads to itself"_s);
    row("too large", text("123456789"), u"is larger than the 0 MiB that Kestrin reads"_s);
    row("new pipe", whereTheNewOneGoes(makePipe), u".new is a pipe and not a file"_s);
    row("new link", whereTheNewOneGoes(linkTo(u"/dev/null"_s)), u".new is a link and not a file"_s);
}

void FilesTest::damagedOnesDoNotReplaceEachOther() {
    samples::write(path(), "");
    // Nor is there ever no file.
    std::atomic<bool> enough = false;
    std::atomic<bool> wasGone = false;
    std::thread reader([&, name = QFile::encodeName(path())] {
        while (!enough)
            wasGone = wasGone || ::access(name.constData(), F_OK) != 0;
    });
    constexpr int count = 80;
    int told = 0;
    for (int i = 0; i < count; ++i) {
        samples::write(path(), QByteArray::number(i));
        const StoreResult result = StoredFileChange({path(), 8}).replaceBy("ok", true);
        told += result.isKept() && result.notice.startsWith(path() + u" did not read as it should"_s) ? 1 : 0;
    }
    enough = true;
    reader.join();
    QCOMPARE(told, count);
    QVERIFY(!wasGone);
    QStringList kept = entries();
    QCOMPARE(kept.takeFirst(), u"file.json"_s);
    QSet<QByteArray> texts;
    for (const QString &name : std::as_const(kept))
        texts += name.startsWith(u"file.json.damaged-20"_s) ? samples::contents(folder() + u'/' + name) : "?";
    QCOMPARE(texts.size(), count);
}

void FilesTest::closedToOthers() {
    const QString log = folder() + u"/activity-log.json.damaged-2026-11-25T19-04-11"_s;
    const QString strange = folder() + u"/notes.txt"_s;
    const QString link = m_folder->filePath(u"link"_s);
    for (const QString &file : {log, strange}) {
        samples::write(file, "old");
        QCOMPARE(::chmod(QFile::encodeName(file).constData(), 0644), 0);
    }
    QCOMPARE(::chmod(QFile::encodeName(folder()).constData(), 02755), 0);
    QVERIFY(QFile::link(folder(), link));
    const auto modes = [&] { return QList{modeOf(folder()), modeOf(log), modeOf(strange)}; };
    closeToOthers(link);
    QCOMPARE(modes(), (QList{02755U, 0644U, 0644U}));
    closeToOthers(folder());
    QCOMPARE(modes(), (QList{02700U, 0600U, 0644U}));
    // So is everything that is made.
    QVERIFY(FolderLock(m_folder->filePath(u"a/b"_s)).isHeld());
    for (const auto &[made, mode] :
         {std::pair{u"a"_s, 0700U}, std::pair{u"a/b"_s, 0700U}, std::pair{u"a/b/store.lock"_s, 0600U}})
        QCOMPARE(modeOf(m_folder->filePath(made)), mode);
}

void FilesTest::nobodyOvertakes() {
    // The other one comes back as soon as it has left, and still everybody else gets his turn.
    std::atomic<bool> enough = false;
    std::thread greedy([&] {
        while (!enough) {
            const FolderLock lock(folder());
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
    });
    int turns = 0;
    for (int i = 0; i < 20; ++i)
        turns += FolderLock(folder()).isHeld() ? 1 : 0;
    enough = true;
    greedy.join();
    QCOMPARE(turns, 20);
}

void FilesTest::stoppedHolder() {
    int ends[2] = {-1, -1};
    QCOMPARE(::pipe(ends), 0);
    const pid_t holder = ::fork();
    if (holder == 0) {
        const FolderLock lock(folder());
        [[maybe_unused]] const auto told = ::write(ends[1], "x", 1);
        ::pause();
    }
    char byte = 0;
    QCOMPARE(::read(ends[0], &byte, 1), 1);
    ::kill(holder, SIGSTOP);
    QElapsedTimer time;
    time.start();
    const auto lock = [this] { return std::make_unique<FolderLock>(folder()); };
    QVERIFY(lock()->problem().contains(u"locked"_s));
    const qint64 first = time.restart();
    QVERIFY2(first >= 1000 && first < 5000, qPrintable(QString::number(first)));
    // Several changes in a row cost one second.
    for (int i = 0; i < 5; ++i)
        QVERIFY(!lock()->isHeld());
    QVERIFY(time.elapsed() < 1000);
    ::kill(holder, SIGKILL);
    ::waitpid(holder, nullptr, 0);
    // Whoever comes to the same place later is waited for again.
    std::this_thread::sleep_for(FolderLock::patience);
    std::binary_semaphore isThere(0);
    std::thread stranger([&] {
        const FolderLock held(folder());
        isThere.release();
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    });
    isThere.acquire();
    const bool isHeld = lock()->isHeld();
    stranger.join();
    QVERIFY(isHeld);
    ::close(ends[0]);
    ::close(ends[1]);
}

void FilesTest::strangeLocks() {
    QString problem;
    const auto row = [&](const Make &make, const QString &sentence) {
        init();
        QVERIFY(makePrivateFolder(QFile::encodeName(folder())));
        const QString place = folder() + u"/store.lock"_s;
        make(place);
        QCOMPARE(FolderLock(folder()).problem(), place + u' ' + sentence + u"; move it away."_s);
        QVERIFY(!FileLock::holderOf(place, problem) && problem.startsWith(place));
    };
    row(makeFolder, u"is a folder and not a file"_s);
    row(makePipe, u"is a pipe and not a file"_s);
    row(linkTo(u"/dev/null"_s), u"is a link and not a file"_s);
    // One that belongs to somebody else, whom this user cannot be then.
    const bool isRoot = ::geteuid() == 0;
    QVERIFY(!isRoot || ::seteuid(65534) == 0);
    const bool isLocked = FileLock::tryLockFile(u"/etc/passwd"_s, {}, problem).has_value();
    QString unknown;
    const bool isKnown = FileLock::holderOf(u"/etc/shadow"_s, unknown).has_value();
    QVERIFY(!isRoot || ::seteuid(0) == 0);
    QVERIFY(!isLocked && !isKnown);
    QCOMPARE(unknown, u"/etc/shadow belongs to another user; remove it."_s);
    QCOMPARE(problem, u"/etc/passwd belongs to another user; remove it."_s);
    // One that somebody takes away is found out.
    init();
    const FolderLock lost(folder());
    QVERIFY(QDir(folder()).removeRecursively());
    QVERIFY(FolderLock(folder()).isHeld());
}

KESTRIN_TEST(FilesTest)
#include "tst_files.moc"
