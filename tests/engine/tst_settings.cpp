// The settings, their rule and their file.

#include "engine/JSONPrivacyModeSettingsStore.h"
#include "engine/RiskAppCatalog.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

using namespace Qt::StringLiterals;
using namespace kestrin;

class SettingsTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void protects();
    void inMemory();
    void saveAndLoad();
    void loading_data();
    void loading();

  private:
    QTemporaryDir m_folder;
    const PrivacyModeSettings m_fallback{true, {u"fallback"_s}};
};

void SettingsTest::protects() {
    const auto &definitions = RiskAppCatalog::defaultDefinitions();
    for (const RiskAppDefinition &definition : definitions)
        QVERIFY((PrivacyModeSettings{false, {}}.protects(definition)));
    const PrivacyModeSettings zoomOnly{true, {u"zoom"_s}};
    QVERIFY(zoomOnly.protects(definitions.at(0)));
    QVERIFY(!zoomOnly.protects(definitions.at(1)));
}

void SettingsTest::inMemory() {
    InMemoryPrivacyModeSettingsStore store(m_fallback);
    store.update([](PrivacyModeSettings &settings) { settings.isEnabled = false; });
    QCOMPARE(store.load(), (PrivacyModeSettings{false, {u"fallback"_s}}));
}

void SettingsTest::saveAndLoad() {
    const QString path = m_folder.filePath(u"x/y/privacy-mode-settings.json"_s);
    JSONPrivacyModeSettingsStore store(QUrl::fromLocalFile(path), m_fallback);
    QCOMPARE(store.load(), m_fallback);
    QVERIFY(!QFile::exists(path));

    const PrivacyModeSettings settings{false, {u"zoom"_s, u"facetime"_s}};
    store.save(settings);
    QCOMPARE(store.load(), settings);
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray text = file.readAll();
    QVERIFY(text.count('\n') > 2 && text.indexOf("isEnabled") < text.indexOf("protectedDefinitionIDs"));
    struct stat status {};
    QCOMPARE(::stat(QFile::encodeName(path).constData(), &status), 0);
    QCOMPARE(status.st_mode & 0777U, 0600U);

    store.save({true, {}});
    QCOMPARE(store.load(), (PrivacyModeSettings{true, {}}));
}

void SettingsTest::loading_data() {
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("ids"); // "fallback" where the file cannot be used

    QTest::newRow("any order, twice")
        << QByteArray(R"({"protectedDefinitionIDs":["zoom","a","zoom"],"isEnabled":false})") << u"a,zoom"_s;
    QTest::newRow("key twice, last one counts")
        << QByteArray(R"({"isEnabled":false,"protectedDefinitionIDs":["a"],"protectedDefinitionIDs":["b"]})")
        << u"b"_s;
    QTest::newRow("later format")
        << QByteArray(R"({"isEnabled":false,"protectedDefinitionIDs":[],"version":{"n":2}})") << u""_s;
    QTest::newRow("set missing") << QByteArray(R"({"isEnabled":false})") << u"fallback"_s;
    QTest::newRow("flag missing") << QByteArray(R"({"protectedDefinitionIDs":[]})") << u"fallback"_s;
    QTest::newRow("flag is text") << QByteArray(R"({"isEnabled":"false","protectedDefinitionIDs":[]})")
                                  << u"fallback"_s;
    QTest::newRow("flag is a number")
        << QByteArray(R"({"isEnabled":0,"protectedDefinitionIDs":[]})") << u"fallback"_s;
    QTest::newRow("number among ids")
        << QByteArray(R"({"isEnabled":false,"protectedDefinitionIDs":["a",1]})") << u"fallback"_s;
    QTest::newRow("colon among ids") << QByteArray(
                                            R"({"isEnabled":false,"protectedDefinitionIDs":["a","b":1]})")
                                     << u"fallback"_s;
    QTest::newRow("cut short") << QByteArray(R"({"isEnabled":false,"protectedDefinitionIDs":[)")
                               << u"fallback"_s;
    QTest::newRow("invalid UTF-8") << QByteArray(
                                          "{\"isEnabled\":false,\"protectedDefinitionIDs\":[\"\xff\"]}")
                                   << u"fallback"_s;
    QTest::newRow("empty") << QByteArray() << u"fallback"_s;
}

void SettingsTest::loading() {
    QFETCH(QByteArray, text);
    const QString path = m_folder.filePath(u"settings.json"_s);
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(text) == text.size());
    file.close();
    JSONPrivacyModeSettingsStore store(QUrl::fromLocalFile(path), m_fallback);
    QStringList ids(store.load().protectedDefinitionIDs.values());
    ids.sort();
    QTEST(ids.join(u','), "ids");
    QCOMPARE(store.load().isEnabled, ids == QStringList{u"fallback"_s});
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), text);
}

QTEST_GUILESS_MAIN(SettingsTest)
#include "tst_settings.moc"
