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
#include "tests/support/TestClass.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPainter>
#include <QPalette>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QRawFont>
#include <QSignalSpy>

#include <memory>
#include <numeric>

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
    QVariant value(const char *property) const { return m_root->property(property); }

    /// The first item below the root whose type, in C++ or in QML, begins with `type`.
    QQuickItem *find(const char *type, QQuickItem *below = nullptr) const {
        const auto children = (below ? below : m_root.get())->childItems();
        for (QQuickItem *const child : children) {
            if (QByteArray(child->metaObject()->className()).startsWith(type))
                return child;
            if (QQuickItem *const found = find(type, child))
                return found;
        }
        return nullptr;
    }

    QImage picture() { return m_window.grabWindow(); }

  private:
    QQuickWindow m_window;
    QQmlEngine m_engine;
    std::unique_ptr<QQuickItem> m_root;
};

int coverage(const QImage &image) {
    const QImage alpha = image.convertToFormat(QImage::Format_Alpha8);
    int sum = 0;
    for (int y = 0; y < alpha.height(); ++y)
        sum = std::accumulate(alpha.constScanLine(y), alpha.constScanLine(y) + alpha.width(), sum);
    return sum;
}

} // namespace

class DesignTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase() { registerDesignSystem(); }
    void init() { KestrinAppearance::shared().setPreference(KestrinAppearance::Light); }
    void appearanceIsAsWished();
    void openWindowIsRecoloured();
    void pressIsClickWhenLetGoOnIt();
    void toggleAsksItsOwner();
    void fontHasWhatIsWritten();
    void textFits();
    void textGrows();
    void strokeIsInsideAndSharp();
    void stretchedAsPaintedWhole();
    void shadowIsSoft();
    void drawnOnWholePixels();
    void symbols();
};

void DesignTest::appearanceIsAsWished() {
    KestrinAppearance appearance(nullptr);
    auto owned = std::make_unique<InMemoryDesktopPreferences>();
    InMemoryDesktopPreferences &desktop = *owned;
    appearance.follow(std::move(owned));
    const QPalette usual = QGuiApplication::palette();
    const auto paletteOf = [](const QColor &text, const QColor &ground) {
        return QPalette(text, ground, Qt::gray, Qt::darkGray, Qt::gray, text, text, ground, ground);
    };
    struct Case {
        std::optional<bool> desktop;
        bool palette;
        KestrinAppearance::Preference user;
        bool isDark;
    };
    // The user's wish comes before the desktop's, and that before the palette.
    using enum KestrinAppearance::Preference;
    for (const Case &each :
         {Case{{}, false, System, false}, Case{{}, true, System, true}, Case{false, true, System, false},
          Case{true, false, System, true}, Case{true, true, Light, false}, Case{false, false, Dark, true}}) {
        desktop.say(each.desktop);
        QGuiApplication::setPalette(each.palette ? paletteOf(Qt::white, Qt::black)
                                                 : paletteOf(Qt::black, Qt::white));
        appearance.setPreference(each.user);
        QTRY_COMPARE(appearance.isDark(), each.isDark);
    }
    QGuiApplication::setPalette(usual);
}

void DesignTest::openWindowIsRecoloured() {
    Stage stage(R"(KestrinCard {
        width: 200
        height: 100
        KestrinPrimaryButton { title: "Go"; width: parent.width }
    })");
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
    struct Case {
        double share; // of the width that the text wants
        bool shrinks;
        bool cut;
    };
    Stage stage("KestrinText { weight: KestrinWeight.Bold; minimumScale: 0.7; lineLimit: 1 }");
    for (const QString &text : {u"Shrinks to fit this"_s, u"Zoom"_s}) {
        stage.root().setProperty("text", text);
        for (const Case &each : {Case{1, false, false}, Case{0.97, false, false}, Case{0.69, true, false},
                                 Case{0.6, true, true}}) {
            stage.root().setWidth(stage.value("naturalWidth").toDouble() * each.share);
            const QByteArray which = u"%1, %2"_s.arg(text).arg(each.share).toUtf8();
            const double scale = stage.value("scaleFactor").toDouble();
            QVERIFY2(each.cut ? scale == 0.7 : scale >= 0.7 && (scale < 1) == each.shrinks, which);
            QVERIFY2(stage.find("QQuickText")->property("truncated").toBool() == each.cut, which);
        }
    }
    // On the left in any script, and with the space between lines for as long as that is wanted.
    stage.root().setProperty("lineLimit", 0);
    stage.root().setProperty("text", u"זום"_s);
    QCOMPARE(stage.find("QQuickText")->property("effectiveHorizontalAlignment").toInt(), int(Qt::AlignLeft));
    QVERIFY(!stage.find("QQuickText")->property("text").toString().isRightToLeft());
    const qreal height = stage.root().implicitHeight();
    stage.root().setProperty("lineSpacing", 5);
    QVERIFY(stage.root().implicitHeight() > height);
    stage.root().setProperty("lineSpacing", 0);
    QCOMPARE(stage.root().implicitHeight(), height);
}

// A text that becomes longer has the room that it asks for then.
void DesignTest::textGrows() {
    Stage stage("KestrinPrimaryButton { width: 400; title: 'Run Mac Check'; systemImage: 'shield' }");
    stage.root().setProperty("title", u"Turn on Privacy Mode"_s);
    QVERIFY(!stage.find("QQuickText")->property("truncated").toBool());
}

void DesignTest::strokeIsInsideAndSharp() {
    for (const int scale : {1, 2}) {
        const double stroke = scale;
        const QColor glass(0, 0, 255, 51);
        const QImage image = SurfacePaint{{80, 80}, 14, false, glass, Qt::red, stroke}.paint();
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
        QVERIFY(darkness(bottom + 2) > darkness(38));
        QVERIFY(darkness(bottom + 2) >= 5);
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
            return coverage(symbolImage(symbol, 64, weight, Qt::red));
        };
        const int ink = inkOf(KestrinWeight::Semibold) / 255;
        QVERIFY2(ink > 64 * 64 / 20 && ink < 64 * 64 * 9 / 10, symbol.name);
        const int gain = inkOf(KestrinWeight::Bold) - inkOf(KestrinWeight::Regular);
        QVERIFY2(symbol.kind == SymbolDrawing::Kind::Lines ? gain > 0 : gain == 0, symbol.name);
    }
}

KESTRIN_TEST(DesignTest)

#include "tst_design.moc"
