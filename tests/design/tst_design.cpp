// The components of the window and what they are painted with: colours and the appearance, presses, how texts
// fit, corners, strokes, shadows and symbols.

#include "design/ContinuousRectangle.h"
#include "design/DesignSystem.h"
#include "design/DesktopPreferences.h"
#include "design/KestrinAppearance.h"
#include "design/KestrinColors.h"
#include "design/KestrinFonts.h"
#include "design/SymbolImage.h"
#include "design/SymbolTable.h"
#include "tests/support/Items.h"
#include "tests/support/TestClass.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPainter>
#include <QPalette>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QRawFont>
#include <QSignalSpy>

#include <memory>
#include <numeric>
#include <tuple>

using namespace Qt::StringLiterals;
using namespace kestrin;
using namespace kestrin::design;

namespace {

/// A shown window with a piece of QML in it, over white. What follows the imports is the root item.
class Stage {
  public:
    explicit Stage(const QByteArray &qml) {
        m_window.setColor(Qt::white);
        m_window.resize(400, 200);
        QQmlComponent component(&m_engine);
        component.setData("import QtQuick\nimport KestrinDesignSystem\n" + qml, {});
        m_root.reset(qobject_cast<QQuickItem *>(component.create()));
        if (!m_root)
            qFatal("%s", qPrintable(component.errorString()));
        m_root->setParentItem(m_window.contentItem());
        m_window.show();
        if (!QTest::qWaitForWindowExposed(&m_window))
            qFatal("The window is not shown.");
    }

    QQuickWindow &window() { return m_window; }
    QQuickItem &root() { return *m_root; }

    QQuickItem *find(const char *type) const { return samples::itemsOf(type, m_root.get()).value(0); }

    QImage picture() { return m_window.grabWindow(); }

  private:
    QQuickWindow m_window;
    QQmlEngine m_engine;
    std::unique_ptr<QQuickItem> m_root;
};

} // namespace

class DesignTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase() { registerDesignSystem(); }
    void init() { KestrinAppearance::shared().setPreference(KestrinAppearance::Light); }
    void palette();
    void appearanceIsAsWished();
    void openWindowIsRecoloured();
    void pressIsClickWhenLetGoOnIt();
    void toggleAsksItsOwner();
    void fontHasWhatIsWritten();
    void textFits();
    void strokeIsInsideAndSharp();
    void stretchedAsPaintedWhole();
    void shadowIsSoft();
    void drawnOnWholePixels();
    void symbols();
};

/// Many of them are drawn too small or too faintly for the pictures of the pages to tell.
void DesignTest::palette() {
    // In light and in dark appearance.
    const QString rows =
        u"deepGreen 011a49 d1e0fa, freshGreen 158a58 80d19e, warmIvory f4f6fa 0b0f17, "
        "softIvory fcfdff 121721, textPrimary 0e1016 ecf0f7, textSecondary 6e7480 adb5c2, "
        "textMuted 9ca2af 8f98a6, border dfe3ec 2b3342, divider e6e8ee 2a303e, "
        "surface ffffff 121721, surfaceMuted f1f4f9 181f2b, primaryAction 011a49 96b5ff, "
        "primaryActionText ffffff 0a170f, protected 1f9e59 8cd1a3, attention c98524 f5b552, "
        "attentionSoft f8ebd8 422e17, offGray 767d78 9ea8a1, offGraySoft ecedf0 262b36, "
        "risk d94a4a ff735e, riskSoft fdecec 471c1c, link 155bd1 7ab8ff, linkSoft e9f0fe 142546, "
        "softGreen e4f5eb 132e1f"_s;
    for (const QString &row : rows.split(u", "_s)) {
        QString shown = row.section(u' ', 0, 0);
        const QByteArray name = shown.toLatin1();
        for (const auto appearance : {KestrinAppearance::Light, KestrinAppearance::Dark}) {
            KestrinAppearance::shared().setPreference(appearance);
            shown += u' ' + KestrinColors::shared().property(name).value<QColor>().name().mid(1);
        }
        QCOMPARE(shown, row);
    }
}

void DesignTest::appearanceIsAsWished() {
    KestrinAppearance appearance(nullptr);
    auto owned = std::make_unique<InMemoryDesktopPreferences>();
    InMemoryDesktopPreferences &desktop = *owned;
    appearance.follow(std::move(owned));
    const QPalette usual = QGuiApplication::palette();
    // The user's wish comes before the desktop's, and that before the palette's ground.
    using enum KestrinAppearance::Preference;
    const std::tuple<KestrinAppearance::Preference, std::optional<bool>, QColor, bool> cases[] = {
        {System, {}, Qt::white, false},  {System, {}, Qt::black, true},   {System, false, Qt::black, false},
        {System, true, Qt::white, true}, {Light, true, Qt::black, false}, {Dark, false, Qt::white, true},
    };
    for (const auto &[user, wish, ground, isDark] : cases) {
        const QColor text = ground == Qt::black ? Qt::white : Qt::black;
        desktop.say(wish);
        QGuiApplication::setPalette(
            {text, ground, Qt::gray, Qt::darkGray, Qt::gray, text, text, ground, ground});
        appearance.setPreference(user);
        QTRY_COMPARE(appearance.isDark(), isDark);
    }
    QGuiApplication::setPalette(usual);
}

void DesignTest::openWindowIsRecoloured() {
    Stage stage("KestrinCard { width: 200; height: 100; "
                "KestrinPrimaryButton { title: 'Go'; width: parent.width } }");
    const QQuickItem *const button = stage.find("KestrinPrimaryButton");
    for (const auto appearance : {KestrinAppearance::Light, KestrinAppearance::Dark}) {
        KestrinAppearance::shared().setPreference(appearance);
        const KestrinColors &colors = KestrinColors::shared();
        const QImage picture = stage.picture();
        QCOMPARE(picture.pixelColor(100, 8).rgb(), colors.surface().rgb());
        QCOMPARE(picture.pixelColor(30, 40).rgb(), colors.primaryAction().rgb());
    }
    QCOMPARE(stage.find("KestrinPrimaryButton"), button);
}

void DesignTest::pressIsClickWhenLetGoOnIt() {
    Stage stage("KestrinPrimaryButton { width: 200; height: 52; title: 'Go' }");
    const QQuickItem *const label = stage.find("KestrinPressableButtonStyle");
    const QSignalSpy clicks(&stage.root(), SIGNAL(clicked()));
    QTest::mousePress(&stage.window(), Qt::LeftButton, {}, {100, 26});
    QVERIFY(label->opacity() > 0.88);
    QTRY_COMPARE(label->opacity(), 0.88);
    QCOMPARE(label->scale(), 0.98);
    QTest::mouseMove(&stage.window(), {300, 150});
    QTRY_COMPARE(label->opacity(), 1.0);
    QTest::mouseRelease(&stage.window(), Qt::LeftButton, {}, {300, 150});
    QCOMPARE(clicks.size(), 0);
    QTest::mouseClick(&stage.window(), Qt::LeftButton, {}, {10, 10});
    QCOMPARE(clicks.size(), 1);
}

void DesignTest::toggleAsksItsOwner() {
    Stage stage(R"(KestrinToggle {
        property bool obeys: true
        width: 300
        on: false
        onFlipped: value => { if (obeys) on = value }
        KestrinText { text: 'Keep selected apps closed' }
    })");
    const int middle = qRound(stage.root().height() / 2);
    const QRgb green = KestrinColors::shared().freshGreen().rgb();
    const auto isGreenAfterClick = [&](int x) {
        QTest::mouseClick(&stage.window(), Qt::LeftButton, {}, {x, middle});
        return stage.picture().pixel(300 - 52 + 15, middle) == green;
    };
    QVERIFY(isGreenAfterClick(20)); // on its label
    QVERIFY(!isGreenAfterClick(280));
    stage.root().setProperty("obeys", false);
    QVERIFY(!isGreenAfterClick(280));
}

void DesignTest::fontHasWhatIsWritten() {
    QVERIFY(KestrinFonts::hasAllWeights(KestrinFonts::family()));
    for (const auto weight : {KestrinWeight::Regular, KestrinWeight::Heavy}) {
        const QRawFont face = QRawFont::fromFont(KestrinFonts::font(13, weight));
        for (const QChar letter : u"Az09~|ÄßéŁșž\u00a0–’“…•€™→"_s)
            QVERIFY2(face.supportsCharacter(letter), QString(letter).toUtf8());
    }
    // Kerning is cut into the faces too: this pair stands closer than its letters do alone.
    const QFontMetricsF metrics(KestrinFonts::font(40, KestrinWeight::Regular));
    QVERIFY(metrics.horizontalAdvance(u"To"_s) <
            metrics.horizontalAdvance(u"T"_s) + metrics.horizontalAdvance(u"o"_s) - 1);
}

void DesignTest::textFits() {
    // Of the width that the text wants, whether it shrinks, and whether it is cut.
    const std::tuple<double, bool, bool> cases[] = {
        {1, false, false}, {0.97, false, false}, {0.69, true, false}, {0.6, true, true}};
    Stage stage("KestrinText { weight: KestrinWeight.Bold; minimumScale: 0.7; lineLimit: 1 }");
    QQuickItem &root = stage.root();
    for (const QString &text : {u"Shrinks to fit this"_s, u"Zoom"_s}) {
        root.setProperty("text", text);
        for (const auto &[share, shrinks, cut] : cases) {
            root.setWidth(root.property("naturalWidth").toDouble() * share);
            const QByteArray which = u"%1, %2"_s.arg(text).arg(share).toUtf8();
            const double scale = root.property("scaleFactor").toDouble();
            QVERIFY2(cut ? scale == 0.7 : scale >= 0.7 && (scale < 1) == shrinks, which);
            QVERIFY2(stage.find("QQuickText")->property("truncated").toBool() == cut, which);
        }
    }
    // On the left in any script, and with the space between lines for as long as that is wanted.
    root.setProperty("lineLimit", 0);
    root.setProperty("text", u"זום"_s);
    const QQuickItem *const shown = stage.find("QQuickText");
    QCOMPARE(shown->property("effectiveHorizontalAlignment").toInt(), int(Qt::AlignLeft));
    QVERIFY(!shown->property("text").toString().isRightToLeft());
    const qreal height = root.implicitHeight();
    root.setProperty("lineSpacing", 5);
    QVERIFY(root.implicitHeight() > height);
    root.setProperty("lineSpacing", 0);
    QCOMPARE(root.implicitHeight(), height);
    // One that becomes longer has the room that it asks for then.
    Stage longer("KestrinPrimaryButton { width: 400; title: 'Run Mac Check'; systemImage: 'shield' }");
    longer.root().setProperty("title", u"Turn on Privacy Mode"_s);
    QVERIFY(!longer.find("QQuickText")->property("truncated").toBool());
}

void DesignTest::strokeIsInsideAndSharp() {
    for (const int scale : {1, 2}) {
        const QColor glass(0, 0, 255, 51);
        const QImage image = SurfacePaint{{80, 80}, 14, false, glass, Qt::red, double(scale)}.paint();
        // A translucent fill does not let the stroke shine through.
        for (const int line : {0, 1, 2, 40})
            QCOMPARE(image.pixelColor(40, line), line < scale ? QColor(Qt::red) : glass);
    }
    // Nor are there gaps or specks between the two, where a corner covers its pixels in parts.
    const QColor ground(241, 244, 249);
    const QImage one = SurfacePaint{{80, 80}, 14, false, ground, ground, 0}.paint();
    for (const double stroke : {1.0, 1.5, 2.0}) {
        const QImage two = SurfacePaint{{80, 80}, 14, false, ground, ground, stroke}.paint();
        for (int i = 0; i < 14; ++i) {
            for (int j = 0; j < 14; ++j)
                QVERIFY(std::abs(qAlpha(two.pixel(i, j)) - qAlpha(one.pixel(i, j))) <= 3);
        }
    }
}

void DesignTest::stretchedAsPaintedWhole() {
    const QByteArray look =
        "width: 160; height: 120; radius: 14; color: '#dfe'; strokeColor: '#369'; strokeWidth: 1";
    Stage parts("KestrinSurface { " + look + " }");
    Stage whole("KestrinSurface { scales: true; " + look + " }");
    QCOMPARE(parts.picture(), whole.picture());
}

void DesignTest::shadowIsSoft() {
    Stage stage("Item { KestrinCard { x: 60; y: 40; width: 280 } }");
    // With room to stretch a picture of the shadow in one direction, and in both. Parts of it come and go.
    for (const int height : {60, 110}) {
        stage.root().childItems().constFirst()->setHeight(height);
        const QImage picture = stage.picture();
        const auto darkness = [&picture](int y) { return 255 - picture.pixelColor(200, y).red(); };
        // It falls down, and fades out without an edge.
        const int bottom = 40 + height;
        QVERIFY(darkness(bottom + 2) > darkness(38) && darkness(bottom + 2) >= 5);
        for (int y = bottom + 2; y < bottom + 40; ++y) {
            const int change = darkness(y - 1) - darkness(y);
            QVERIFY(change == 0 || change == 1);
        }
        QCOMPARE(darkness(bottom + 39), 0);
    }
}

void DesignTest::drawnOnWholePixels() {
    Stage stage("Item { KestrinSurface { x: 20.4; y: 10.6; width: 50; height: 30; color: 'black' } }");
    const auto isBlack = [&stage](const QRect &box) {
        QImage expected(400, 200, QImage::Format_RGB32);
        expected.fill(Qt::white);
        QPainter(&expected).fillRect(box, Qt::black);
        return stage.picture().convertToFormat(QImage::Format_RGB32) == expected;
    };
    QVERIFY(isBlack({20, 11, 50, 30}));
    // Also after only its ancestor has moved.
    stage.root().setX(0.4);
    QVERIFY(isBlack({21, 11, 50, 30}));
}

void DesignTest::symbols() {
    for (const SymbolDrawing &symbol : symbolTable()) {
        const auto inkOf = [&symbol](KestrinWeight weight) {
            const QImage alpha =
                symbolImage(symbol, 64, weight, Qt::red).convertToFormat(QImage::Format_Alpha8);
            return std::accumulate(alpha.constBits(), alpha.constBits() + alpha.sizeInBytes(), 0);
        };
        const int ink = inkOf(KestrinWeight::Semibold) / 255;
        QVERIFY2(ink > 64 * 64 / 20 && ink < 64 * 64 * 9 / 10, symbol.name);
        const int gain = inkOf(KestrinWeight::Bold) - inkOf(KestrinWeight::Regular);
        QVERIFY2(symbol.kind == SymbolDrawing::Kind::Lines ? gain > 0 : gain == 0, symbol.name);
    }
}

KESTRIN_TEST(DesignTest)

#include "tst_design.moc"
