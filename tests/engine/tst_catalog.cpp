// Which definition a running application is, and the JSON forms of the risk model.

#include "tests/support/Samples.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace kestrin;

class CatalogTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void order();
    void definition_data();
    void definition();
    void jsonForms();

  private:
    const RiskAppCatalog m_catalog{RiskAppCatalog::defaultDefinitions()};
};

void CatalogTest::order() {
    // The earlier definition wins, and every list of the window is in this order.
    QStringList ids;
    for (const RiskAppDefinition &definition : m_catalog.definitions)
        ids.append(definition.id +
                   (definition.defaultAction == RiskAppAction::allow ? u"(allowed)"_s : u""_s));
    QCOMPARE(ids.join(u' '), u"zoom facetime teams quicktime voice-memos photo-booth chrome(allowed) "
                             "safari(allowed) wispr-flow rewind macwhisper otter"_s);

    // Matches are in the order of the applications.
    const auto otter = samples::app(u"Otter AI"_s, 12);
    ids.clear();
    for (const RiskAppMatch &match :
         m_catalog.matches({otter, samples::app(u"Editor"_s, 13), samples::app(u"Zoom"_s, 11),
                            samples::app(u"Zoom"_s, 10)}))
        ids.append(match.id());
    QCOMPARE(ids, (QStringList{u"otter-12"_s, u"zoom-11"_s, u"zoom-10"_s}));
    QCOMPARE(otter.id(), u"Otter AI-12"_s);
    QCOMPARE(samples::app(u"Zoom"_s, 4123, u"us.zoom.xos"_s).id(), u"us.zoom.xos-4123"_s);
}

void CatalogTest::definition_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<std::optional<QString>>("bundle");
    QTest::addColumn<QString>("id");
    const auto row = [](const char *rule, const QString &name, const std::optional<QString> &bundle,
                        const QString &id) { QTest::newRow(rule) << name << bundle << id; };
    row("bundle, other letter case", u"Anything"_s, u"US.ZOOM.XOS"_s, u"zoom"_s);
    row("bundle is compared whole", u"Anything"_s, u"us.zoom.xos.helper"_s, u"none"_s);
    row("second bundle", u"Anything"_s, u"com.microsoft.teams2"_s, u"teams"_s);
    row("name is trimmed", u"\u00a0 Zoom\n\u2003"_s, {}, u"zoom"_s);
    row("alias", u"Zoom.US"_s, {}, u"zoom"_s);
    row("name is not contained", u"Microsoft Teams (work or school)"_s, {}, u"none"_s);
    row("earlier name beats later bundle", u"Zoom"_s, u"com.apple.Safari"_s, u"zoom"_s);
    row("earlier bundle beats later name", u"Safari"_s, u"us.zoom.xos"_s, u"zoom"_s);
    row("name with an unknown bundle", u"Safari"_s, u"org.example.other"_s, u"safari"_s);
    row("definition without bundles", u"otter"_s, u""_s, u"otter"_s);
    row("inner space counts", u"Otter  AI"_s, {}, u"none"_s);
    row("empty name", u""_s, {}, u"none"_s);
}

void CatalogTest::definition() {
    QFETCH(QString, name);
    QFETCH(std::optional<QString>, bundle);
    const auto found = m_catalog.definition(samples::app(name, 1, bundle));
    QTEST(found ? found->id : u"none"_s, "id");
}

void CatalogTest::jsonForms() {
    const RiskAppMatch match{{7, u"Ötter \"AI\" \u202e\n"_s, {}, u"/opt/otter"_s},
                             m_catalog.definitions.last()};
    const QByteArray text = encodeJson(match);
    QCOMPARE(decodeJson<RiskAppMatch>(text), match);
    QVERIFY(!text.contains("otter-7") && !text.contains("bundleIdentifier\""));
    QCOMPARE(decodeJson<RiskAppMatch>(QByteArray(text).replace("\"aliases\"", "\"Aliases\"")), std::nullopt);
    const QByteArray process = R"("processIdentifier":7)";
    QCOMPARE(text.count(process), 1);
    for (const char *number : {"\"7\"", "2147483648", "1.5", "null"})
        QCOMPARE(decodeJson<RiskAppMatch>(QByteArray(text).replace(process, process.chopped(1) + number)),
                 std::nullopt);
}

QTEST_GUILESS_MAIN(CatalogTest)
#include "tst_catalog.moc"
