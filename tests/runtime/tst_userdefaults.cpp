// The preferences: types, change notices, and two owners of one file.

#include "runtime/JSONUserDefaults.h"

#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

using namespace Qt::StringLiterals;
using namespace kestrin;

class UserDefaultsTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void typesAreKept_data();
    void typesAreKept();
    void foreignValues_data();
    void foreignValues();
    void changesOfOthersAreTold();
    void unknownValuesSurvive();

  private:
    static void write(const QString &path, const QByteArray &text);
};

void UserDefaultsTest::write(const QString &path, const QByteArray &text) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(text) == text.size());
}

void UserDefaultsTest::typesAreKept_data() {
    QTest::addColumn<bool>("inMemory");
    QTest::newRow("in memory") << true;
    QTest::newRow("in a file") << false;
}

void UserDefaultsTest::typesAreKept() {
    QFETCH(bool, inMemory);
    QTemporaryDir folder;
    const QString path = folder.filePath(u"config/Kestrin/user-defaults.json"_s);
    std::unique_ptr<UserDefaults> defaults = std::make_unique<InMemoryUserDefaults>();
    if (!inMemory)
        defaults = std::make_unique<JSONUserDefaults>(path);
    QSignalSpy spy(defaults.get(), &UserDefaults::changed);
    const QString key = u"kestrin.mac.key"_s;

    QCOMPARE(defaults->boolean(key), std::nullopt);
    QCOMPARE(defaults->stringArray(key), std::nullopt);
    defaults->setBoolean(key, false);
    QCOMPARE(defaults->boolean(key), false);
    QCOMPARE(defaults->stringArray(key), std::nullopt);
    defaults->setBoolean(key, false);
    QCOMPARE(spy.size(), 1);
    for (const QStringList &list :
         {QStringList{}, QStringList{u"one"_s}, QStringList{u"b"_s, u"a"_s, u""_s}}) {
        defaults->setStringArray(key, list);
        QCOMPARE(defaults->stringArray(key), list);
        QCOMPARE(defaults->boolean(key), std::nullopt);
    }
    QCOMPARE(spy.size(), 4);
    QCOMPARE(spy.first().first().toString(), key);
    if (!inMemory) {
        QCOMPARE(JSONUserDefaults(path).stringArray(key), (QStringList{u"b"_s, u"a"_s, u""_s}));
        struct stat status {};
        QCOMPARE(::stat(QFile::encodeName(path).constData(), &status), 0);
        QCOMPARE(status.st_mode & 0777U, 0600U);
    }
}

void UserDefaultsTest::foreignValues_data() {
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("text true") << QByteArray(R"({"key":"true"})");
    QTest::newRow("number") << QByteArray(R"({"key":1})");
    QTest::newRow("mixed list") << QByteArray(R"({"key":["a",true]})");
    QTest::newRow("null") << QByteArray(R"({"key":null})");
    QTest::newRow("damaged") << QByteArray(R"({"key":true)");
    QTest::newRow("array") << QByteArray(R"([true])");
}

void UserDefaultsTest::foreignValues() {
    QFETCH(QByteArray, text);
    QTemporaryDir folder;
    const QString path = folder.filePath(u"defaults.json"_s);
    write(path, text);
    JSONUserDefaults defaults(path);
    QCOMPARE(defaults.boolean(u"key"_s), std::nullopt);
    QCOMPARE(defaults.stringArray(u"key"_s), std::nullopt);
    defaults.setBoolean(u"key"_s, true);
    QCOMPARE(defaults.boolean(u"key"_s), true);
}

void UserDefaultsTest::changesOfOthersAreTold() {
    QTemporaryDir folder;
    const QString path = folder.filePath(u"defaults.json"_s);
    JSONUserDefaults mine(path);
    JSONUserDefaults theirs(path);
    QSignalSpy spy(&mine, &UserDefaults::changed);
    theirs.setBoolean(u"a"_s, true);
    QTRY_COMPARE(spy.size(), 1);
    QCOMPARE(spy.first().first().toString(), u"a"_s);
    // The same value again is no change, and neither is my own change told twice.
    theirs.setBoolean(u"a"_s, true);
    mine.setBoolean(u"b"_s, true);
    QCOMPARE(spy.size(), 2);
    QTest::qWait(100);
    QCOMPARE(spy.size(), 2);
    QVERIFY(QFile::remove(path));
    QTRY_COMPARE(spy.size(), 4);
    QCOMPARE(mine.boolean(u"a"_s), std::nullopt);
}

void UserDefaultsTest::unknownValuesSurvive() {
    QTemporaryDir folder;
    const QString path = folder.filePath(u"defaults.json"_s);
    write(path, R"({"later":{"nested":[1,"x"]}})");
    JSONUserDefaults(path).setBoolean(u"a"_s, true);
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray text = file.readAll();
    QVERIFY(text.contains("nested") && text.contains("\"a\""));
}

QTEST_GUILESS_MAIN(UserDefaultsTest)
#include "tst_userdefaults.moc"
