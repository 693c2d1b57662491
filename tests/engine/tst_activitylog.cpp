// The activity log: its order, its file, and what becomes of it when things break.

#include "engine/ActivityLogFile.h"
#include "engine/JSONMacActivityLogStore.h"
#include "foundation/PrivateFile.h"
#include "tests/support/Samples.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QRandomGenerator>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <limits>

#include <poll.h>
#include <sys/fsuid.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace kestrin;

namespace {

constexpr auto validEvent =
    R"({"id":"6ba7b810-9dad-11d1-80b4-00c04fd430c8","date":"2026-03-14T09:26:53Z","kind":"dryRun","message":"Old."})";

QByteArray contents(const QString &path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no file)");
}

void write(const QString &path, const QByteArray &text) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(text), text.size());
}

QList<QUuid> ids(const QList<MacProtectionEvent> &events) {
    QList<QUuid> list;
    for (const MacProtectionEvent &event : events)
        list.append(event.id);
    return list;
}

/// A process of its own that appends events and tells the id of each once it is stored.
class Writer {
  public:
    /// Appends `count` events to the log at `path`.
    Writer(const QString &path, int count) {
        int ends[2] = {-1, -1};
        if (::pipe(ends) != 0)
            qFatal("no pipe");
        m_process = ::fork();
        if (m_process == 0) {
            for (int i = 0; i < count; ++i) {
                const auto event = samples::event(QString::number(i));
                JSONMacActivityLogStore(QUrl::fromLocalFile(path)).append(event);
                writeAll(ends[1], viewOf(event.id.toRfc4122()));
            }
            ::_exit(0);
        }
        ::close(ends[1]);
        m_told = ends[0];
    }
    Writer(const Writer &) = delete;
    Writer &operator=(const Writer &) = delete;
    ~Writer() { ::close(m_told); }

    pid_t process() const { return m_process; }

    /// Waits until the process has ended, and returns what it told: complete ids, each of them once.
    QSet<QUuid> acknowledged() {
        QSet<QUuid> ids;
        QByteArray id(16, '\0');
        while (::read(m_told, id.data(), 16) == 16)
            ids.insert(QUuid::fromRfc4122(id));
        ::waitpid(m_process, nullptr, 0);
        return ids;
    }

    bool waitForFirst() {
        pollfd told{m_told, POLLIN, 0};
        return ::poll(&told, 1, 10'000) == 1;
    }

  private:
    pid_t m_process = -1;
    int m_told = -1;
};

} // namespace

class ActivityLogTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void init();
    void newestFirst_data();
    void newestFirst();
    void negativeLimitStopsTheProgram();
    void fileFormat();
    void unusualTexts();
    void malformedFiles_data();
    void malformedFiles();
    void otherLayoutsAreKept_data();
    void otherLayoutsAreKept();
    void windowsAgreeWithTheWhole();
    void hundredThousandEvents();
    void ownerOnly();
    void symbolicLinks();
    void unusablePlaces_data();
    void unusablePlaces();
    void fullDisk();
    void fileSizeLimit();
    void killedWhileAppending();
    void twoWriters();

  private:
    QString path() const { return m_folder->filePath(u"a/b/activity-log.json"_s); }
    JSONMacActivityLogStore store() const { return JSONMacActivityLogStore(QUrl::fromLocalFile(path())); }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void ActivityLogTest::init() {
    m_folder = std::make_unique<QTemporaryDir>();
}

void ActivityLogTest::newestFirst_data() {
    QTest::addColumn<bool>("inMemory");
    QTest::newRow("in memory") << true;
    QTest::newRow("in a file") << false;
}

void ActivityLogTest::newestFirst() {
    QFETCH(bool, inMemory);
    std::shared_ptr<MacActivityLogStoring> log = std::make_shared<InMemoryMacActivityLogStore>();
    if (!inMemory)
        log = std::make_shared<JSONMacActivityLogStore>(QUrl::fromLocalFile(path()));
    QVERIFY(log->recent(10).isEmpty());
    for (const auto &message : {u"A"_s, u"B"_s, u"C"_s})
        log->append(samples::event(message));
    QCOMPARE(samples::messages(log->recent(2)), (QStringList{u"C"_s, u"B"_s}));
    QCOMPARE(samples::messages(log->recent(10)), (QStringList{u"C"_s, u"B"_s, u"A"_s}));
    QVERIFY(log->recent(0).isEmpty());
}

void ActivityLogTest::negativeLimitStopsTheProgram() {
    const pid_t child = ::fork();
    if (child == 0) {
        rlimit noCore{0, 0};
        ::setrlimit(RLIMIT_CORE, &noCore);
        ::signal(SIGABRT, SIG_DFL);
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
        store().recent(-1);
        ::_exit(0);
    }
    int status = 0;
    QCOMPARE(::waitpid(child, &status, 0), child);
    QVERIFY(!WIFEXITED(status) || WEXITSTATUS(status) != 0);
}

void ActivityLogTest::fileFormat() {
    const auto event = samples::event(u"Hello."_s);
    const QByteArray id = event.id.toByteArray(QUuid::WithoutBraces);
    store().append(samples::event(u"First."_s));
    store().append(event);
    const QByteArray text = contents(path());
    QVERIFY(text.startsWith("[{") && text.endsWith("}]") && !text.contains('\n') && !text.contains(": "));
    QVERIFY(text.contains(R"("date":"2026-03-14T09:26:53Z")") && text.contains("\"id\":\"" + id + '"'));
    QVERIFY(!text.contains("appName") && !text.contains("bundleIdentifier"));
    QCOMPARE(QJsonDocument::fromJson(text).array().size(), 2);

    // Dates lose their fraction on the way, and ids may be spelled with capital letters.
    auto expected = event;
    expected.date = event.date.addMSecs(-event.date.time().msec());
    QVERIFY(expected != event);
    write(path(), QByteArray(text).replace(id, id.toUpper()));
    QCOMPARE(store().recent(1), QList{expected});
}

void ActivityLogTest::unusualTexts() {
    auto event = samples::event(u"\"},{\" \\ \u0000 \n \u202e \U0001f3a5 "_s);
    event.appName = u""_s;
    event.bundleIdentifier = QString(QChar(0xdc00)) + u'a' + QChar(0xd800); // halves of characters
    store().append(event);
    store().append(samples::event(u"Next."_s));
    const auto stored = store().recent(2).last();
    QCOMPARE(stored.message, event.message);
    QCOMPARE(stored.appName, u""_s);
    QCOMPARE(stored.bundleIdentifier, u"\ufffda\ufffd"_s);
}

void ActivityLogTest::malformedFiles_data() {
    QTest::addColumn<QByteArray>("text");
    const auto with = [](const char *before, const char *after) {
        return '[' + QByteArray(validEvent) + ',' + QByteArray(validEvent).replace(before, after) + ']';
    };
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("object") << QByteArray(validEvent);
    QTest::newRow("cut short") << '[' + QByteArray(validEvent);
    QTest::newRow("trailing comma") << '[' + QByteArray(validEvent) + ",]";
    QTest::newRow("missing comma") << '[' + QByteArray(validEvent) + validEvent + ']';
    QTest::newRow("more behind") << '[' + QByteArray(validEvent) + "]]";
    QTest::newRow("colon behind a value") << with(R"("Old.")", R"("Old.":"x")");
    QTest::newRow("unknown kind") << with("dryRun", "dryrun");
    QTest::newRow("missing message") << with(R"(,"message":"Old.")", "");
    QTest::newRow("number for text") << with(R"("Old.")", "7");
    QTest::newRow("date with an offset") << with("53Z", "53+00:00");
    QTest::newRow("date with fractions") << with("53Z", "53.5Z");
    QTest::newRow("day that does not exist") << with("2026-03-14", "2026-02-29");
    QTest::newRow("hour that does not exist") << with("T09", "T24");
    QTest::newRow("short id") << with("00c04fd430c8", "00c04fd430c");
    QTest::newRow("id with another letter") << with("00c04fd430c8", "00c04fd430cg");
    QTest::newRow("invalid UTF-8") << with("Old.", "\xc3\x28");
    QTest::newRow("raw control character") << with("Old.", "a\x01");
    QTest::newRow("half a character") << with("Old.", R"(\ud800)");
    QTest::newRow("duplicate key, second wrong")
        << with(R"("message")", R"("message":"x","kind":"x","message")");
    QTest::newRow("malformed unknown value") << with("{", R"({"x":{"y":nul},)");
    QTest::newRow("endless depth") << with("{", R"({"x":[[[[)");
    QTest::newRow("binary") << QByteArray(5000, '\0');
}

void ActivityLogTest::malformedFiles() {
    QFETCH(QByteArray, text);
    QDir().mkpath(QFileInfo(path()).path());
    write(path(), text);
    QVERIFY(store().recent(8).isEmpty());
    QCOMPARE(contents(path()), text);
    store().append(samples::event(u"New."_s));
    QCOMPARE(samples::messages(store().recent(8)), QStringList{u"New."_s});
}

void ActivityLogTest::otherLayoutsAreKept_data() {
    QTest::addColumn<QByteArray>("text");
    const QByteArray event(validEvent);
    QTest::newRow("indented") << "[\n  " + QByteArray(event).replace(",", ",\n ") + "\n]\n";
    QTest::newRow("spaces") << " [ " + event + " ] ";
    QTest::newRow("unknown keys") << '[' + QByteArray(event).replace("{", R"({"x":[1e400,{"kind":null}],)") +
                                         ']';
    QTest::newRow("null for absent") << '[' + QByteArray(event).replace("{", R"({"appName":null,)") + ']';
    QTest::newRow("duplicate key, last one counts")
        << '[' + QByteArray(event).replace(R"("message")", R"("message":"x","message")") + ']';
    QTest::newRow("escapes")
        << '[' + QByteArray(event).replace("kind", "k\\u0069nd").replace("dryRun", "dry\\u0052un") + ']';
    QTest::newRow("no event") << QByteArray("[ ]");
}

void ActivityLogTest::otherLayoutsAreKept() {
    QFETCH(QByteArray, text);
    QDir().mkpath(QFileInfo(path()).path());
    write(path(), text);
    const QStringList old = text.size() < 10 ? QStringList{} : QStringList{u"Old."_s};
    QCOMPARE(samples::messages(store().recent(8)), old);
    store().append(samples::event(u"New."_s));
    QCOMPARE(samples::messages(store().recent(8)), QStringList{u"New."_s} + old);
    QVERIFY(!contents(path()).contains('\n'));
}

void ActivityLogTest::windowsAgreeWithTheWhole() {
    // Texts full of what a window could be cut at by mistake, in windows so small that every cut is tried.
    QList<MacProtectionEvent> events;
    for (int i = 0; i < 300; ++i)
        events.append(samples::event(
            QStringList{u"},{"_s, u"a},{b"_s, u"\"},{\""_s, u"\\"_s, u""_s, u"[{]}"_s}.at(i % 6)));
    QDir().mkpath(QFileInfo(path()).path());
    QByteArray text = encodeJson(events);
    for (const bool broken : {false, true}) {
        if (broken)
            text.replace(text.size() - 40, 1, "\x01");
        write(path(), text);
        for (std::size_t window = 150; window < 1200; window += 7) {
            const auto read = readNewestEvents(path(), 1000, window);
            QCOMPARE(read.has_value(), !broken);
            if (read)
                QCOMPARE(ids(*read), ids(events));
        }
    }
}

void ActivityLogTest::hundredThousandEvents() {
    QDir().mkpath(QFileInfo(path()).path());
    QByteArray text = "[";
    const QByteArray event = encodeJson(samples::event(u"Zoom matches Zoom risk categories: Camera."_s));
    for (int i = 0; i < 100'000; ++i)
        text += event + ',';
    text.back() = ']';
    write(path(), text);
    store().append(samples::event(u"New."_s));
    QCOMPARE(store().recent(200'000).size(), 100'001);
    QCOMPARE(store().recent(1).first().message, u"New."_s);
    // One wrong byte near the end empties it.
    text = contents(path());
    text[text.size() - 100] = '\x02';
    write(path(), text);
    QVERIFY(store().recent(8).isEmpty());
}

void ActivityLogTest::ownerOnly() {
    const mode_t before = ::umask(0);
    store().append(samples::event(u"A"_s));
    ::umask(before);
    struct stat status {};
    QCOMPARE(::stat(QFile::encodeName(path()).constData(), &status), 0);
    QCOMPARE(status.st_mode & 0777U, 0600U);
    // A file that somebody opened up is closed again by the next write.
    ::chmod(QFile::encodeName(path()).constData(), 0666);
    store().append(samples::event(u"B"_s));
    QCOMPARE(::stat(QFile::encodeName(path()).constData(), &status), 0);
    QCOMPARE(status.st_mode & 0777U, 0600U);
    QCOMPARE(QDir(QFileInfo(path()).path()).entryList(QDir::Files | QDir::Hidden),
             QStringList{u"activity-log.json"_s});
}

void ActivityLogTest::symbolicLinks() {
    const QString folder = QFileInfo(path()).path();
    QDir().mkpath(folder);
    const QString elsewhere = m_folder->filePath(u"elsewhere.json"_s);
    // A broken link is replaced, a whole one is followed.
    QVERIFY(QFile::link(elsewhere, path()));
    store().append(samples::event(u"A"_s));
    QVERIFY(!QFileInfo(path()).isSymLink() && !QFile::exists(elsewhere));
    QVERIFY(QFile::rename(path(), elsewhere) && QFile::link(elsewhere, path()));
    store().append(samples::event(u"B"_s));
    QVERIFY(QFileInfo(path()).isSymLink());
    QCOMPARE(samples::messages(store().recent(8)), (QStringList{u"B"_s, u"A"_s}));
}

void ActivityLogTest::unusablePlaces_data() {
    QTest::addColumn<QString>("place");
    for (const char *place : {"a directory", "a file for the folder", "a fifo", "a read-only folder"})
        QTest::newRow(place) << QString::fromLatin1(place);
}

void ActivityLogTest::unusablePlaces() {
    QFETCH(QString, place);
    const QString folder = QFileInfo(path()).path();
    const QByteArray name = QFile::encodeName(path());
    const auto owner = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;
    if (place == u"a directory") {
        QVERIFY(QDir().mkpath(path() + u"/full"_s));
    } else if (place == u"a file for the folder") {
        QVERIFY(QDir().mkpath(QFileInfo(folder).path()));
        write(folder, "I am a file.");
    } else if (place == u"a fifo") {
        QVERIFY(QDir().mkpath(folder));
        QCOMPARE(::mkfifo(name.constData(), 0600), 0);
    } else {
        store().append(samples::event(u"Old."_s));
        QVERIFY(QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner));
    }
    const auto before = store().recent(8);
    // Root may write into read-only folders; somebody else may not.
    const bool isRoot = ::geteuid() == 0;
    if (isRoot && place == u"a read-only folder")
        ::setfsuid(65534);
    store().append(samples::event(u"A"_s)); // neither hangs nor crashes
    ::setfsuid(::geteuid());
    if (place != u"a fifo")
        QCOMPARE(store().recent(8), before);
    if (place == u"a read-only folder")
        QVERIFY(QFile::setPermissions(folder, owner));
    QVERIFY(!QFile::exists(path() + u".new"_s));
}

void ActivityLogTest::fullDisk() {
    const QByteArray mountPoint = QFile::encodeName(m_folder->filePath(u"a"_s));
    QVERIFY(QDir().mkpath(m_folder->filePath(u"a"_s)));
    if (::mount("none", mountPoint.constData(), "tmpfs", 0, "size=64k") != 0)
        QSKIP("mounting a small file system needs root");
    const QString longText(2000, u'x');
    QByteArray before;
    bool full = false;
    for (int i = 0; i < 100 && !full; ++i) {
        before = contents(path());
        store().append(samples::event(longText));
        full = contents(path()) == before;
    }
    const bool temporaryLeft = QFile::exists(path() + u".new"_s);
    const qsizetype readable = store().recent(100).size();
    ::umount2(mountPoint.constData(), MNT_DETACH);
    QVERIFY(full);
    QVERIFY(!temporaryLeft);
    QVERIFY(readable > 3);
}

void ActivityLogTest::fileSizeLimit() {
    // The same without root: the process may not write files above 20 kB.
    rlimit before{};
    ::getrlimit(RLIMIT_FSIZE, &before);
    ::signal(SIGXFSZ, SIG_IGN);
    const rlimit small{20'000, before.rlim_max};
    QCOMPARE(::setrlimit(RLIMIT_FSIZE, &small), 0);
    for (int i = 0; i < 20; ++i)
        store().append(samples::event(QString(2000, u'x')));
    ::setrlimit(RLIMIT_FSIZE, &before);
    const qsizetype stored = store().recent(100).size();
    QVERIFY2(stored > 5 && stored < 10, qPrintable(QString::number(stored)));
    QVERIFY(!QFile::exists(path() + u".new"_s));
}

void ActivityLogTest::killedWhileAppending() {
    QSet<QUuid> acknowledged;
    for (int round = 0; round < 300; ++round) {
        // A log that grows for ever makes the rounds slower, not better.
        if (round % 50 == 0) {
            QFile::remove(path());
            acknowledged.clear();
        }
        Writer writer(path(), 1'000'000);
        QVERIFY(writer.waitForFirst());
        QTest::qSleep(QRandomGenerator::global()->bounded(6));
        QCOMPARE(::kill(writer.process(), SIGKILL), 0);
        acknowledged.unite(writer.acknowledged());

        const auto events = readNewestEvents(path(), std::numeric_limits<qsizetype>::max());
        QVERIFY2(events, "the file does not read after a kill");
        const QList<QUuid> stored = ids(*events);
        QVERIFY2(QSet<QUuid>(stored.cbegin(), stored.cend()).contains(acknowledged),
                 "an acknowledged event is lost");
    }
    store().append(samples::event(u"After."_s));
    QVERIFY(!QFile::exists(path() + u".new"_s));
}

void ActivityLogTest::twoWriters() {
    Writer first(path(), 500);
    Writer second(path(), 500);
    const QSet<QUuid> acknowledged = first.acknowledged() + second.acknowledged();
    QCOMPARE(acknowledged.size(), 1000);
    const QList<QUuid> stored = ids(store().recent(2000));
    QCOMPARE(stored.size(), 1000);
    QCOMPARE(QSet<QUuid>(stored.cbegin(), stored.cend()), acknowledged);
}

QTEST_GUILESS_MAIN(ActivityLogTest)
#include "tst_activitylog.moc"
