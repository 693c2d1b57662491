// Watching files and locking between processes.

#include "foundation/FileLock.h"
#include "foundation/FileWatch.h"
#include "foundation/PrivateFile.h"
#include "tests/support/Witness.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace kestrin;
using namespace kestrin::foundation;

class FilesTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void watchTellsEveryKindOfChange();
    void folderLock();

  private:
    QTemporaryDir m_folder;
};

void FilesTest::watchTellsEveryKindOfChange() {
    const QString path = m_folder.filePath(u"new/file.json"_s);
    FileWatch watch(path); // makes the folder
    QSignalSpy spy(&watch, &FileWatch::changed);

    QVERIFY(replacePrivateFile(path, {"created"}));
    QTRY_COMPARE(spy.size(), 1);
    QVERIFY(replacePrivateFile(path, {"repl", "aced"}));
    QTRY_COMPARE(spy.size(), 2);
    QFile file(path);
    QVERIFY(file.open(QIODevice::Append) && file.write(" in place") > 0);
    file.close();
    QTRY_COMPARE(spy.size(), 3);
    QVERIFY(QFile::remove(path));
    QTRY_COMPARE(spy.size(), 4);
    QVERIFY(replacePrivateFile(path, {"again"}));
    QTRY_COMPARE(spy.size(), 5);
    // What the owner knows already is no news, and neighbours are none of its business.
    QVERIFY(replacePrivateFile(path, {"known"}));
    watch.acknowledge();
    QVERIFY(replacePrivateFile(m_folder.filePath(u"new/other.json"_s), {"x"}));
    QVERIFY(samples::everythingIsTold());
    QCOMPARE(spy.size(), 5);
    QVERIFY(replacePrivateFile(path, {"news"}));
    QTRY_COMPARE(spy.size(), 6);
}

void FilesTest::folderLock() {
    using namespace std::chrono_literals;
    {
        const auto lock = FileLock::lockFolder(m_folder.path(), 0ms);
        QVERIFY(lock && !FileLock::lockFolder(m_folder.path(), 20ms));
    }
    QVERIFY(FileLock::lockFolder(m_folder.path(), 0ms));
}

QTEST_GUILESS_MAIN(FilesTest)
#include "tst_files.moc"
