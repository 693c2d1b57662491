// The preferences: types, change notices, and two owners of one file.

#include "desktop/defaults/JSONUserDefaults.h"
#include "tests/support/Test.h"
#include "tests/support/Witness.h"

class UserDefaultsTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void init() { QFile::remove(m_path); }
    void typesAreKept();
    void foreignValues();
    void changesOfOthersAreTold();
    void unreadable();

  private:
    QTemporaryDir m_folder;
    const QString m_path = m_folder.filePath(u"config/Kestrin/user-defaults.json"_s);
};

void UserDefaultsTest::typesAreKept() {
    InMemoryUserDefaults inMemory;
    JSONUserDefaults inAFile(m_path);
    for (UserDefaults *const defaults : QList<UserDefaults *>{&inMemory, &inAFile}) {
        QSignalSpy spy(defaults, &UserDefaults::changed);
        QCOMPARE(defaults->boolean(u"key"_s), std::nullopt);
        QCOMPARE(defaults->stringArray(u"key"_s), std::nullopt);
        defaults->setBoolean(u"key"_s, false);
        defaults->setBoolean(u"key"_s, false);
        QCOMPARE(spy.size(), 1);
        QCOMPARE(defaults->boolean(u"key"_s), false);
        for (const QStringList &list : {QStringList{}, QStringList{u"b"_s, u"a"_s, u""_s}}) {
            defaults->setStringArray(u"key"_s, list);
            QCOMPARE(defaults->stringArray(u"key"_s), list);
            QCOMPARE(defaults->boolean(u"key"_s), std::nullopt);
        }
        QCOMPARE(spy.size(), 3);
    }
    QVERIFY(samples::isOwnersAlone(m_path));
}

void UserDefaultsTest::foreignValues() {
    for (const char *text : {R"({"key":"true"})", R"({"key":1})", R"({"key":["a",true]})", R"({"key":null})",
                             R"({"key":true)", "[true]"}) {
        samples::write(m_path, text);
        JSONUserDefaults defaults(m_path);
        QVERIFY2(!defaults.boolean(u"key"_s) && !defaults.stringArray(u"key"_s), text);
        defaults.setBoolean(u"key"_s, true);
        QCOMPARE(defaults.boolean(u"key"_s), true);
    }
    samples::write(m_path, R"({"later":{"nested":[1,"x"]}})");
    JSONUserDefaults(m_path).setBoolean(u"a"_s, true);
    QVERIFY(samples::contents(m_path).contains("nested"));
}

void UserDefaultsTest::changesOfOthersAreTold() {
    JSONUserDefaults mine(m_path);
    JSONUserDefaults theirs(m_path);
    QSignalSpy spy(&mine, &UserDefaults::changed);
    theirs.setBoolean(u"a"_s, true);
    QTRY_COMPARE(spy.size(), 1);
    QCOMPARE(spy.first().first().toString(), u"a"_s);
    // The same value again is no change, and neither is my own change told twice.
    theirs.setBoolean(u"a"_s, true);
    mine.setBoolean(u"b"_s, true);
    QVERIFY(samples::everythingIsTold());
    QCOMPARE(spy.size(), 2);
    QVERIFY(QFile::remove(m_path));
    QTRY_COMPARE(spy.size(), 4);
    QCOMPARE(mine.boolean(u"a"_s), std::nullopt);
}

void UserDefaultsTest::unreadable() {
    JSONUserDefaults defaults(m_path);
    QSignalSpy spy(&defaults, &UserDefaults::changed);
    QVERIFY(defaults.setBoolean(u"a"_s, true) && defaults.setBoolean(u"b"_s, false));
    spy.clear();
    // Nobody has chosen what cannot be read, so everything stays as it was, also what is stored next.
    samples::write(m_path, R"({"a":fal)");
    QVERIFY(samples::everythingIsTold());
    QVERIFY(spy.isEmpty() && defaults.problem().startsWith(m_path) && defaults.obstacle().isEmpty());
    QCOMPARE(defaults.boolean(u"a"_s), true);
    const StoreResult stored = defaults.setBoolean(u"b"_s, true);
    QVERIFY(stored.isKept() && stored.notice.contains(u".damaged-"));
    QCOMPARE(spy.size(), 1);
    JSONUserDefaults others(m_path);
    QVERIFY(others.boolean(u"a"_s) == true && others.boolean(u"b"_s) == true);
    // What is no file is neither replaced nor written to.
    QVERIFY(QFile::remove(m_path) && QDir().mkpath(m_path));
    QVERIFY(!defaults.obstacle().isEmpty() && !defaults.setBoolean(u"b"_s, false).isKept());
    QVERIFY(QDir().rmdir(m_path));
}

KESTRIN_TEST(UserDefaultsTest)
#include "tst_userdefaults.moc"
