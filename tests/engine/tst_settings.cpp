// The file of the settings.

#include "engine/JSONPrivacyModeSettingsStore.h"
#include "tests/support/Files.h"

#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace kestrin;

class SettingsTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void saveAndLoad();
    void loading();

  private:
    QTemporaryDir m_folder;
    QString m_path = m_folder.filePath(u"x/y/privacy-mode-settings.json"_s);
    const PrivacyModeSettings m_fallback{true, {u"fallback"_s}};
    JSONPrivacyModeSettingsStore m_store{QUrl::fromLocalFile(m_path), m_fallback};
};

void SettingsTest::saveAndLoad() {
    QCOMPARE(m_store.load(), m_fallback);
    QVERIFY(!QFile::exists(m_path));
    for (const PrivacyModeSettings &settings :
         {PrivacyModeSettings{true, {}}, PrivacyModeSettings{false, {u"zoom"_s, u"facetime"_s}}}) {
        m_store.save(settings);
        QCOMPARE(m_store.load(), settings);
    }
    const QByteArray text = samples::contents(m_path);
    QVERIFY(text.count('\n') > 2 && text.indexOf("isEnabled") < text.indexOf("protectedDefinitionIDs"));
    QVERIFY(samples::isOwnersAlone(m_path));
}

void SettingsTest::loading() {
    const auto read = [this](const QByteArray &text) {
        samples::write(m_path, text);
        const PrivacyModeSettings settings = m_store.load();
        return samples::contents(m_path) == text ? settings : PrivacyModeSettings{};
    };
    QCOMPARE(read(R"({"protectedDefinitionIDs":["zoom","a","zoom"],"isEnabled":false,"version":{"n":2}})"),
             (PrivacyModeSettings{false, {u"a"_s, u"zoom"_s}}));
    for (const char *unusable : {R"({"isEnabled":false})", R"({"protectedDefinitionIDs":[]})",
                                 R"({"isEnabled":"false","protectedDefinitionIDs":[]})",
                                 R"({"isEnabled":0,"protectedDefinitionIDs":[]})",
                                 R"({"isEnabled":false,"protectedDefinitionIDs":["a",1]})",
                                 R"({"isEnabled":false,"protectedDefinitionIDs":["a","b":1]})",
                                 R"({"isEnabled":false,"protectedDefinitionIDs":[)", ""})
        QCOMPARE(read(unusable), m_fallback);
}

QTEST_GUILESS_MAIN(SettingsTest)
#include "tst_settings.moc"
