// What is painted: corners, strokes, shadows at every scale factor; symbols and their table.

#include "design/ContinuousRectangle.h"
#include "design/SymbolImage.h"
#include "design/SymbolTable.h"
#include "shared/KestrinSeedData.h"
#include "tests/design/Stage.h"

#include <QDirIterator>
#include <QPainter>
#include <QRegularExpression>

#include <cmath>

using namespace Qt::StringLiterals;
using namespace kestrin;

class DrawingTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void cornerIsContinuous();
    void cornerWithoutRoom_data();
    void cornerWithoutRoom();
    void strokeIsInsideAndSharp_data();
    void strokeIsInsideAndSharp();
    void stretchedAsPaintedWhole();
    void shadowIsSoft_data();
    void shadowIsSoft();
    void drawnOnWholePixels();
    void symbolsAreSorted();
    void symbolsAreDrawn();
    void symbolsGrowHeavier();
    void everyUsedSymbolIsInTheTable();
};

namespace {

int coverage(const QImage &image) {
    int sum = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            sum += qAlpha(image.pixel(x, y));
    }
    return sum;
}

// Where the outline is left of the straight part, seen along the top edge: its depth below that edge.
double depthAt(const QPainterPath &path, double x) {
    for (double y = 0; y < 200; y += 0.005) {
        if (path.contains(QPointF(x, y)))
            return y;
    }
    return 200;
}

} // namespace

void DrawingTest::cornerIsContinuous() {
    const double radius = 20;
    const QPainterPath path = ContinuousRectangle{{200, 200}, radius}.path();
    // On the diagonal it is where the circle is.
    const double cut = radius * (1 - std::sqrt(0.5));
    QVERIFY(!path.contains(QPointF(cut - 0.1, cut - 0.1)));
    QVERIFY(path.contains(QPointF(cut + 0.1, cut + 0.1)));
    // Where a circle would have begun, this one has left the edge long ago.
    QVERIFY(depthAt(path, radius) > 0.2);
    QVERIFY(depthAt(path, 1.4 * radius) < 0.1);
    // The curvature grows from nothing, so that the outline leaves the edge more slowly than a circle, whose
    // depth is a square: at half of the way to the edge's end it is far less than a quarter as deep.
    const double end = ContinuousRectangle::reach(radius);
    QVERIFY(depthAt(path, end - 6) < depthAt(path, end - 12) / 6);
}

void DrawingTest::cornerWithoutRoom_data() {
    QTest::addColumn<QSizeF>("size");
    QTest::newRow("capsule") << QSizeF(72, 32);
    QTest::newRow("track") << QSizeF(52, 30);
    QTest::newRow("circle") << QSizeF(40, 40);
}

void DrawingTest::cornerWithoutRoom() {
    QFETCH(const QSizeF, size);
    const double half = size.height() / 2;
    const QPainterPath path = ContinuousRectangle{size, 1000}.path();
    QCOMPARE(path.boundingRect().size(), size);
    const double cut = half * (1 - std::sqrt(0.5));
    QVERIFY(!path.contains(QPointF(cut - 0.1, cut - 0.1)));
    QVERIFY(path.contains(QPointF(cut + 0.1, cut + 0.1)));
    // The ends are round, not pointed.
    QVERIFY(path.contains(QPointF(0.1 * half, half * 0.7)));
    QVERIFY(!path.contains(QPointF(0.1 * half, half * 0.4)));
}

void DrawingTest::strokeIsInsideAndSharp_data() {
    QTest::addColumn<double>("scale");
    QTest::newRow("1") << 1.0;
    QTest::newRow("2") << 2.0;
}

void DrawingTest::strokeIsInsideAndSharp() {
    QFETCH(const double, scale);
    const SurfacePaint paint{QSizeF(80, 80) * scale, 14 * scale, false, Qt::white, Qt::red, scale};
    const QImage image = paint.paint();
    const int middle = image.width() / 2;
    for (int line = 0; line < 4; ++line)
        QCOMPARE(image.pixelColor(middle, line), QColor(line < scale ? Qt::red : Qt::white));
    // A translucent fill does not let the stroke shine through.
    const QImage glass = SurfacePaint{{80, 80}, 14, false, QColor(0, 0, 255, 51), Qt::red, 1}.paint();
    QCOMPARE(glass.pixelColor(40, 40), QColor(0, 0, 255, 51));
}

void DrawingTest::stretchedAsPaintedWhole() {
    // The same surface by parts and in one piece.
    const QByteArray look =
        "width: 160; height: 120; radius: 14; color: '#dfe'; strokeColor: '#369'; strokeWidth: 1";
    Stage parts("KestrinSurface { " + look + " }");
    Stage whole("KestrinSurface { scales: true; " + look + " }");
    QVERIFY(parts.isShown() && whole.isShown());
    QCOMPARE(parts.picture(), whole.picture());
}

void DrawingTest::shadowIsSoft_data() {
    QTest::addColumn<int>("height");
    // Whether there is room to stretch a picture of the shadow in one direction or in both.
    QTest::newRow("low") << 60;
    QTest::newRow("high") << 110;
}

void DrawingTest::shadowIsSoft() {
    QFETCH(int, height);
    Stage stage("Item { KestrinCard { x: 60; y: 40; width: 280; height: " + QByteArray::number(height) +
                " } }");
    const QImage picture = stage.picture();
    const auto darkness = [&picture](int x, int y) { return 255 - picture.pixelColor(x, y).red(); };
    // It falls down, and fades out without an edge.
    const int bottom = 40 + height;
    QVERIFY(darkness(200, bottom + 2) > darkness(200, 38));
    QVERIFY(darkness(200, bottom + 2) >= 5);
    int previous = darkness(200, bottom + 1);
    for (int y = bottom + 2; y < bottom + 40; ++y) {
        QVERIFY(darkness(200, y) <= previous);
        QVERIFY(previous - darkness(200, y) <= 1);
        previous = darkness(200, y);
    }
    QCOMPARE(previous, 0);
}

void DrawingTest::drawnOnWholePixels() {
    Stage stage("Item { KestrinSurface { objectName: 'box'; x: 20.4; y: 10.6; width: 50; height: 30; color: "
                "'black' } }");
    const QImage picture = stage.picture();
    QCOMPARE(picture.pixelColor(19, 20), QColor(Qt::white));
    QCOMPARE(picture.pixelColor(20, 20), QColor(Qt::black));
    QCOMPARE(picture.pixelColor(69, 20), QColor(Qt::black));
    QCOMPARE(picture.pixelColor(70, 20), QColor(Qt::white));
    QCOMPARE(picture.pixelColor(40, 10), QColor(Qt::white));
    QCOMPARE(picture.pixelColor(40, 11), QColor(Qt::black));
    // Also after only its ancestor has moved.
    stage.root().setX(0.4);
    QCOMPARE(stage.picture().pixelColor(20, 20), QColor(Qt::white));
    QCOMPARE(stage.picture().pixelColor(21, 20), QColor(Qt::black));
}

void DrawingTest::symbolsAreSorted() {
    const auto table = symbolTable();
    for (size_t row = 1; row < table.size(); ++row)
        QVERIFY(qstrcmp(table[row - 1].name, table[row].name) < 0);
}

void DrawingTest::symbolsAreDrawn() {
    registerDesignSystem();
    for (const SymbolDrawing &symbol : symbolTable()) {
        const QImage image = symbolImage(symbol, 64, KestrinWeight::Semibold, Qt::red);
        const int ink = coverage(image) / 255;
        QVERIFY2(ink > 64 * 64 / 20 && ink < 64 * 64 * 9 / 10, symbol.name);
        for (int y = 0; y < 64; ++y) {
            for (int x = 0; x < 64; ++x)
                QVERIFY2(qGreen(image.pixel(x, y)) == 0, symbol.name);
        }
    }
}

void DrawingTest::symbolsGrowHeavier() {
    registerDesignSystem();
    for (const SymbolDrawing &symbol : symbolTable()) {
        const int regular = coverage(symbolImage(symbol, 64, KestrinWeight::Regular, Qt::black));
        const int bold = coverage(symbolImage(symbol, 64, KestrinWeight::Bold, Qt::black));
        QVERIFY2(symbol.kind == SymbolDrawing::Kind::Lines ? bold > regular : bold == regular, symbol.name);
    }
}

// Symbols are named in records, in models and on pages. Names of one word are found where a symbol is
// expected.
void DrawingTest::everyUsedSymbolIsInTheTable() {
    static const QRegularExpression dotted(
        u"\"([a-z]+(?:\\.[a-z]+)*\\.(?:fill|circle|right|rectangle|clockwise|checkered|stars|below)(?:\\.[a-z]+)*)\""_s);
    static const QRegularExpression expected(u"\\b(?:systemImage|icon|symbol): .*"_s);
    static const QRegularExpression quoted(u"\"([a-z]+(?:\\.[a-z]+)*)\""_s);
    QSet<QString> names;
    const auto collect = [&names](const QRegularExpression &pattern, const QString &text) {
        for (auto matches = pattern.globalMatch(text); matches.hasNext();)
            names.insert(matches.next().captured(1));
    };
    int files = 0;
    for (const char *const folder : {"shared", "runtime", "design", "app"}) {
        QDirIterator sources(QStringLiteral(KESTRIN_SOURCE_FOLDER "/") + QLatin1StringView(folder),
                             {u"*.cpp"_s, u"*.h"_s, u"*.qml"_s}, QDir::Files, QDirIterator::Subdirectories);
        while (sources.hasNext()) {
            QFile file(sources.next());
            QVERIFY(file.open(QIODevice::ReadOnly));
            const QString text = QString::fromUtf8(file.readAll());
            ++files;
            collect(dotted, text);
            for (auto lines = expected.globalMatch(text); lines.hasNext();)
                collect(quoted, lines.next().captured());
        }
    }
    for (const ProtectionDevice &device : KestrinSeedData::devices())
        names.insert(device.icon);
    for (const ModePreset &mode : KestrinSeedData::modes())
        names.insert(mode.icon);
    for (const ActivityEvent &event : KestrinSeedData::activity())
        names.insert(event.icon);
    QVERIFY(files > 20);
    QVERIFY(names.contains(u"moon.fill"_s) && names.contains(u"shield.checkered"_s));
    for (const QString &name : names)
        QVERIFY2(findSymbol(name), qPrintable(name));
}

QTEST_MAIN(DrawingTest)

#include "tst_drawing.moc"
