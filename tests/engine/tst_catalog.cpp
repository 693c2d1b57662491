// Which definition a running application is, and the JSON forms of the risk model.

#include "engine/RiskAppCatalog.h"
#include "tests/support/Samples.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace kestrin;

class CatalogTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void defaultCatalog();
    void definition_data();
    void definition();
    void matchesKeepTheOrderOfApps();
    void emptyCatalog();
    void identifiers();
    void jsonForms();
    void strictDecoding_data();
    void strictDecoding();
};

void CatalogTest::defaultCatalog() {
    QStringList ids;
    QStringList onlyReported;
    for (const RiskAppDefinition &definition : RiskAppCatalog::defaultDefinitions()) {
        ids.append(definition.id);
        if (definition.defaultAction == RiskAppAction::allow)
            onlyReported.append(definition.id);
        for (const QString &alias : definition.aliases)
            QCOMPARE(alias, alias.toLower());
        QVERIFY(!definition.categories.isEmpty());
    }
    QCOMPARE(ids.join(u' '),
             u"zoom facetime teams quicktime voice-memos photo-booth chrome safari wispr-flow "
             "rewind macwhisper otter"_s);
    QCOMPARE(onlyReported, (QStringList{u"chrome"_s, u"safari"_s}));

    QStringList labels;
    for (const MacRiskCategory category : allCases<MacRiskCategory>())
        labels.append(userLabel(category));
    QCOMPARE(labels.join(u','), u"Microphone,Camera,Screen capture,AI tool,Video call,Browser"_s);
}

void CatalogTest::definition_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("bundle"); // "-": none
    QTest::addColumn<QString>("id");

    QTest::newRow("bundle, other letter case") << u"Anything"_s << u"US.ZOOM.XOS"_s << u"zoom"_s;
    QTest::newRow("bundle is compared whole") << u"Anything"_s << u"us.zoom.xos.helper"_s << u"none"_s;
    QTest::newRow("name is trimmed") << u"  Zoom\n"_s << u"-"_s << u"zoom"_s;
    QTest::newRow("Unicode white space") << u"\u00a0Zoom\u2003"_s << u"-"_s << u"zoom"_s;
    QTest::newRow("alias") << u"Zoom.US"_s << u"-"_s << u"zoom"_s;
    QTest::newRow("second bundle") << u"Anything"_s << u"com.microsoft.teams2"_s << u"teams"_s;
    QTest::newRow("name is not contained") << u"Microsoft Teams (work or school)"_s << u"-"_s << u"none"_s;
    QTest::newRow("earlier name beats later bundle") << u"Zoom"_s << u"com.apple.Safari"_s << u"zoom"_s;
    QTest::newRow("earlier bundle beats later name") << u"Safari"_s << u"us.zoom.xos"_s << u"zoom"_s;
    QTest::newRow("name with an unknown bundle") << u"Safari"_s << u"org.example.other"_s << u"safari"_s;
    QTest::newRow("row without bundles") << u"wispr"_s << u"-"_s << u"wispr-flow"_s;
    QTest::newRow("empty bundle") << u"otter"_s << u""_s << u"otter"_s;
    QTest::newRow("inner space counts") << u"Otter  AI"_s << u"-"_s << u"none"_s;
    QTest::newRow("empty name") << u""_s << u"-"_s << u"none"_s;
}

void CatalogTest::definition() {
    QFETCH(QString, name);
    QFETCH(QString, bundle);
    const RiskAppCatalog catalog{RiskAppCatalog::defaultDefinitions()};
    const auto app = samples::app(name, 1, bundle == u"-" ? std::nullopt : std::optional(bundle));
    QTEST(samples::definitionID(catalog, app), "id");
}

void CatalogTest::matchesKeepTheOrderOfApps() {
    const RiskAppCatalog catalog{RiskAppCatalog::defaultDefinitions()};
    QStringList ids;
    for (const RiskAppMatch &match :
         catalog.matches({samples::app(u"Otter"_s, 12), samples::app(u"Editor"_s, 13),
                          samples::app(u"Zoom"_s, 11), samples::app(u"Zoom"_s, 10)}))
        ids.append(match.id());
    QCOMPARE(ids, (QStringList{u"otter-12"_s, u"zoom-11"_s, u"zoom-10"_s}));
}

void CatalogTest::emptyCatalog() {
    QCOMPARE(RiskAppCatalog{}.definition(samples::app(u"Zoom"_s)), std::nullopt);
    QVERIFY(RiskAppCatalog{}.matches({samples::app(u"Zoom"_s)}).isEmpty());
}

void CatalogTest::identifiers() {
    QCOMPARE(samples::app(u"Zoom"_s, 4123, u"us.zoom.xos"_s).id(), u"us.zoom.xos-4123"_s);
    QCOMPARE(samples::app(u"Otter AI"_s, 911).id(), u"Otter AI-911"_s);
}

void CatalogTest::jsonForms() {
    const RiskAppCatalog catalog{RiskAppCatalog::defaultDefinitions()};
    QCOMPARE(decodeJson<RiskAppCatalog>(encodeJson(catalog)), catalog);

    const RunningMacApp plain = samples::app(u"Ötter \"AI\" \u202e\n"_s, -1);
    const QByteArray text = encodeJson(plain);
    QVERIFY(!text.contains("bundleIdentifier") && !text.contains("executablePath"));
    QCOMPARE(decodeJson<RunningMacApp>(text), plain);

    const RiskAppMatch match{{7, u"Zoom"_s, u"us.zoom.xos"_s, u"/opt/zoom/zoom"_s},
                             catalog.definitions.first()};
    QCOMPARE(decodeJson<RiskAppMatch>(encodeJson(match)), match);
    QVERIFY(!encodeJson(match).contains("zoom-7"));
}

void CatalogTest::strictDecoding_data() {
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("readable");

    QTest::newRow("complete") << QByteArray(R"({"processIdentifier":1,"localizedName":"Zoom"})") << true;
    QTest::newRow("unknown keys, any layout")
        << QByteArray("\t{ \"x\" : [ {\"y\": null} , 1e999, -0.5E+3 ] ,\r\n\"processIdentifier\" : 1 "
                      ",\"localizedName\":\"Zoom\"} ")
        << true;
    QTest::newRow("null for an absent value")
        << QByteArray(R"({"processIdentifier":1,"localizedName":"Zoom","bundleIdentifier":null})") << true;
    QTest::newRow("escaped key") << QByteArray(R"({"process\u0049dentifier":1,"localizedName":"Zoom"})")
                                 << true;
    QTest::newRow("missing key") << QByteArray(R"({"processIdentifier":1})") << false;
    QTest::newRow("null for a required value")
        << QByteArray(R"({"processIdentifier":1,"localizedName":null})") << false;
    QTest::newRow("text for a number")
        << QByteArray(R"({"processIdentifier":"1","localizedName":"Zoom"})") << false;
    QTest::newRow("too large") << QByteArray(R"({"processIdentifier":2147483648,"localizedName":"Zoom"})")
                               << false;
    QTest::newRow("fraction") << QByteArray(R"({"processIdentifier":1.5,"localizedName":"Zoom"})") << false;
    QTest::newRow("more behind") << QByteArray(R"({"processIdentifier":1,"localizedName":"Zoom"}{})")
                                 << false;
    QTest::newRow("malformed unknown value")
        << QByteArray(R"({"x":[tru],"processIdentifier":1,"localizedName":"Zoom"})") << false;
    QTest::newRow("colon behind an unknown value")
        << QByteArray(R"({"x":["a":1],"processIdentifier":1,"localizedName":"Zoom"})") << false;
    QTest::newRow("malformed unknown number")
        << QByteArray(R"({"x":01,"processIdentifier":1,"localizedName":"Zoom"})") << false;
    QTest::newRow("malformed unknown text")
        << QByteArray(R"({"x":"\q","processIdentifier":1,"localizedName":"Zoom"})") << false;
    QTest::newRow("missing comma") << QByteArray(R"({"processIdentifier":1 "localizedName":"Zoom"})")
                                   << false;
    QTest::newRow("array") << QByteArray("[]") << false;
    QTest::newRow("nothing") << QByteArray() << false;
    QTest::newRow("byte order mark only") << QByteArray("\xef\xbb\xbf") << false;
    const auto nested = [](int depth) {
        return R"({"processIdentifier":1,"localizedName":"Zoom","x":)" + QByteArray(depth, '[') +
               QByteArray(depth, ']') + '}';
    };
    QTest::newRow("deep") << nested(500) << true;
    QTest::newRow("too deep") << nested(100'000) << false;
    QTest::newRow("endless depth") << QByteArray(R"({"x":)") + QByteArray(100'000, '[') << false;
}

void CatalogTest::strictDecoding() {
    QFETCH(QByteArray, text);
    QTEST(decodeJson<RunningMacApp>(text).has_value(), "readable");
}

QTEST_GUILESS_MAIN(CatalogTest)
#include "tst_catalog.moc"
