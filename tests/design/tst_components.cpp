// The components: metrics, what a press does, by mouse, keyboard and assistive technology, and how texts fit.

#include "design/KestrinAppearance.h"
#include "design/KestrinColors.h"
#include "design/KestrinFonts.h"
#include "tests/design/Stage.h"

#include <QAccessible>
#include <QSignalSpy>

#include <QFontDatabase>

using namespace Qt::StringLiterals;
using namespace kestrin;

class ComponentsTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase() { QAccessible::setActive(true); }
    void init() { KestrinAppearance::shared().setPreference(KestrinAppearance::Light); }
    void sizes_data();
    void sizes();
    void buttonLooks_data();
    void buttonLooks();
    void pressFeedback();
    void buttonActs();
    void toggleAsksItsOwner();
    void textFits_data();
    void textFits();
    void textGetsRoom();
    void titlesAreWhole();
    void wrappedText();
    void weightsDiffer();
    void assistiveNames_data();
    void assistiveNames();
};

void ComponentsTest::sizes_data() {
    QTest::addColumn<QByteArray>("qml");
    QTest::addColumn<double>("width");
    QTest::addColumn<double>("height");
    const double any = -1;
    QTest::newRow("pill with one letter")
        << QByteArray("KestrinStatusPill { title: 'i'; tone: KestrinTone.Link }") << 72.0 << 32.0;
    QTest::newRow("tile with a short value")
        << QByteArray("KestrinMetricTile { title: 'a'; value: '1'; tone: 0; systemImage: 'clock.fill' }")
        << any << 112.0 + 32;
    QTest::newRow("card") << QByteArray("KestrinCard { Item { implicitWidth: 100; implicitHeight: 50 } }")
                          << 132.0 << 82.0;
    QTest::newRow("primary button") << QByteArray("KestrinPrimaryButton { title: 'Go' }") << any << 52.0;
    QTest::newRow("secondary button") << QByteArray("KestrinSecondaryButton { title: 'Go' }") << any << 50.0;
    QTest::newRow("toggle without a label") << QByteArray("KestrinToggle { on: true }") << 64.0 << 30.0;
    QTest::newRow("toggle with a label")
        << QByteArray("KestrinToggle { on: true; Item { implicitWidth: 40; implicitHeight: 44 } }") << 104.0
        << 44.0;
    QTest::newRow("divider") << QByteArray("KestrinDivider {}") << any << 1.0;
}

void ComponentsTest::sizes() {
    QFETCH(const QByteArray, qml);
    QFETCH(const double, width);
    QFETCH(const double, height);
    Stage stage(qml);
    if (width >= 0)
        QCOMPARE(stage.root().implicitWidth(), width);
    QCOMPARE(stage.root().implicitHeight(), height);
}

void ComponentsTest::buttonLooks_data() {
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<int>("size");
    QTest::addColumn<int>("weight");
    QTest::addColumn<QString>("foreground");
    QTest::newRow("primary") << QByteArray("KestrinPrimaryButton") << 19 << 800 << u"primaryActionText"_s;
    QTest::newRow("secondary") << QByteArray("KestrinSecondaryButton") << 18 << 700 << u"deepGreen"_s;
}

void ComponentsTest::buttonLooks() {
    QFETCH(const QByteArray, type);
    QFETCH(const int, size);
    QFETCH(const int, weight);
    QFETCH(const QString, foreground);
    Stage stage(type + " { width: 300; height: implicitHeight; title: 'Go' }");
    const QQuickItem *const label = stage.find("KestrinText");
    QVERIFY(label);
    QCOMPARE(label->property("fittedFont").value<QFont>().pixelSize(), size);
    QCOMPARE(label->property("fittedFont").value<QFont>().weight(), weight);
    QCOMPARE(label->property("minimumScale").toDouble(), 0.82);
    QCOMPARE(label->property("color"), KestrinColors::shared().property(foreground.toLatin1().constData()));
    // Without an icon, the title is in the middle.
    const double middle = label->mapToItem(&stage.root(), label->boundingRect().center()).x();
    QVERIFY2(std::abs(middle - 150) <= 0.5, qPrintable(QString::number(middle)));
}

void ComponentsTest::pressFeedback() {
    Stage stage("KestrinPrimaryButton { width: 200; height: 52; title: 'Go' }");
    QVERIFY(stage.isShown());
    const QQuickItem *const label = stage.find("KestrinPressableButtonStyle");
    QVERIFY(label);
    QTest::mousePress(&stage.window(), Qt::LeftButton, Qt::NoModifier, {100, 26});
    QVERIFY(label->opacity() > 0.88);
    QTRY_COMPARE(label->opacity(), 0.88);
    QCOMPARE(label->scale(), 0.98);
    // Who lets go elsewhere did not mean it.
    QSignalSpy clicks(&stage.root(), SIGNAL(clicked()));
    QTest::mouseMove(&stage.window(), {300, 150});
    QTRY_COMPARE(label->opacity(), 1.0);
    QCOMPARE(label->scale(), 1.0);
    QTest::mouseRelease(&stage.window(), Qt::LeftButton, Qt::NoModifier, {300, 150});
    QCOMPARE(clicks.size(), 0);
}

void ComponentsTest::buttonActs() {
    Stage stage(R"(Column {
        property int clicks: 0
        KestrinPrimaryButton { width: 200; title: 'Go'; onClicked: parent.clicks += 1 }
        KestrinSecondaryButton { width: 200; title: 'Stop'; onClicked: parent.clicks += 100 }
    })");
    QVERIFY(stage.isShown());
    stage.click({10, 10});
    QCOMPARE(stage.value("clicks").toInt(), 1);
    QVERIFY(!stage.find("KestrinPrimaryButton")->hasActiveFocus());
    stage.window().requestActivate();
    QTest::keyClick(&stage.window(), Qt::Key_Tab);
    QTRY_VERIFY(stage.find("KestrinPrimaryButton")->hasActiveFocus());
    QVERIFY(stage.find("KestrinFocusRing")->isVisible());
    QTest::keyClick(&stage.window(), Qt::Key_Space);
    QTest::keyClick(&stage.window(), Qt::Key_Return);
    QCOMPARE(stage.value("clicks").toInt(), 3);
    QTest::keyClick(&stage.window(), Qt::Key_Tab);
    QTest::keyClick(&stage.window(), Qt::Key_Space);
    QCOMPARE(stage.value("clicks").toInt(), 103);

    QAccessibleInterface *const first =
        QAccessible::queryAccessibleInterface(stage.find("KestrinPrimaryButton"));
    QVERIFY(first && first->actionInterface());
    first->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QCOMPARE(stage.value("clicks").toInt(), 104);
}

void ComponentsTest::toggleAsksItsOwner() {
    Stage stage(R"(KestrinToggle {
        property bool obeys: true
        property int asked: 0
        width: 300
        on: false
        onFlipped: value => { asked += 1; if (obeys) on = value }
        KestrinText { text: 'Keep selected apps closed' }
    })");
    QVERIFY(stage.isShown());
    const double middle = stage.root().height() / 2;
    stage.click({20, middle});
    QCOMPARE(stage.value("on").toBool(), true);
    stage.click({280, middle});
    QCOMPARE(stage.value("on").toBool(), false);
    stage.root().setProperty("obeys", false);
    stage.click({280, middle});
    QCOMPARE(stage.value("on").toBool(), false);
    QCOMPARE(stage.value("asked").toInt(), 3);

    const QImage off = stage.picture();
    QCOMPARE(off.pixelColor(300 - 15, qRound(middle)).rgb(), KestrinColors::shared().offGraySoft().rgb());
    QCOMPARE(off.pixelColor(300 - 52 + 15, qRound(middle)).rgb(), QColor(Qt::white).rgb());
    stage.root().setProperty("on", true);
    const QImage on = stage.picture();
    QCOMPARE(on.pixelColor(300 - 52 + 15, qRound(middle)).rgb(), KestrinColors::shared().freshGreen().rgb());
    QCOMPARE(on.pixelColor(300 - 15, qRound(middle)).rgb(), QColor(Qt::white).rgb());

    QAccessibleInterface *const toggle = QAccessible::queryAccessibleInterface(&stage.root());
    QVERIFY(toggle->state().checkable && toggle->state().checked);
}

void ComponentsTest::textFits_data() {
    QTest::addColumn<double>("share"); // of the width that the text wants
    QTest::addColumn<bool>("shrinks");
    QTest::addColumn<bool>("cut");
    QTest::newRow("all of it") << 1.0 << false << false;
    QTest::newRow("tightened") << 0.97 << false << false;
    QTest::newRow("shrunk") << 0.85 << true << false;
    QTest::newRow("just shrunk") << 0.69 << true << false;
    QTest::newRow("cut") << 0.6 << true << true;
}

void ComponentsTest::textFits() {
    QFETCH(const double, share);
    QFETCH(const bool, shrinks);
    QFETCH(const bool, cut);
    const QStringList texts{u"Run Preview"_s, u"Apply Recommended"_s, u"Shrinks to fit this"_s, u"Zoom"_s};
    for (const QString &text : texts) {
        for (const int size : {13, 32}) {
            Stage stage("KestrinText { weight: KestrinWeight.Bold; minimumScale: 0.7; lineLimit: 1 }");
            stage.root().setProperty("text", text);
            stage.root().setProperty("size", size);
            stage.root().setWidth(stage.value("naturalWidth").toDouble() * share);
            const QByteArray which = (text + u' ' + QString::number(size)).toUtf8();
            QVERIFY2(stage.value("scaleFactor").toDouble() >= 0.7, which);
            QVERIFY2((stage.value("scaleFactor").toDouble() < 1) == shrinks, which);
            const QQuickItem *const label = stage.find("QQuickText");
            QVERIFY2(label->property("truncated").toBool() == cut, which);
            if (cut)
                QCOMPARE(stage.value("scaleFactor").toDouble(), 0.7);
        }
    }
}

// A text that had too little room at first is as good as new when it gets some.
void ComponentsTest::textGetsRoom() {
    const auto tile = [](const QByteArray &width) {
        return "KestrinMetricTile { " + width +
               "title: 'Running apps'; value: '12'; tone: 0; systemImage: 'clock.fill' }";
    };
    Stage early(tile("width: 300; "));
    const QImage expected = early.picture();
    Stage late(tile("width: 0; "));
    for (const int width : {0, 40, 60, 300}) {
        late.root().setWidth(width);
        late.picture();
    }
    QCOMPARE(late.picture(), expected);
    const QByteArray shared = tile("Layout.fillWidth: true; Layout.preferredWidth: 1; ");
    Stage layouts("Item { width: 400; ColumnLayout { anchors.left: parent.left; anchors.right: parent.right; "
                  "RowLayout { " +
                  shared + shared + "} } }");
    const QQuickItem *const label = layouts.find("QQuickText");
    QTRY_COMPARE(label->width(), label->parentItem()->width());
    QVERIFY(label->width() > 0);
}

// The narrowest buttons there are, with their longest titles.
void ComponentsTest::titlesAreWhole() {
    const QList<std::pair<int, QByteArray>> narrow{
        {190,
         "KestrinSecondaryButton { width: 190; systemImage: 'wand.and.stars'; title: 'Apply Recommended' }"},
        {170,
         "KestrinSecondaryButton { width: 170; systemImage: 'arrow.clockwise'; title: 'Run Live Check' }"},
        {150, "KestrinPrimaryButton { width: 150; systemImage: 'shield.checkered'; title: 'Run Preview' }"},
    };
    for (const auto &[width, qml] : narrow) {
        Stage stage(qml);
        const QQuickItem *const label = stage.find("QQuickText");
        QVERIFY2(!label->property("truncated").toBool(), qml);
        const QRectF place = label->mapRectToItem(&stage.root(), label->boundingRect());
        QVERIFY2(place.right() <= width - 3.5, qml);
    }
}

void ComponentsTest::wrappedText() {
    Stage stage(
        "KestrinText { width: 120; lineLimit: 2; text: 'Protects your quiet hours, and some more words' }");
    const double line = stage.value("naturalHeight").toDouble();
    QCOMPARE(stage.root().implicitHeight(), 2 * line);
    stage.root().setProperty("lineLimit", 0);
    QVERIFY(stage.root().implicitHeight() > 2 * line);
    // A text that has the width it asked for needs no second line.
    stage.root().setProperty("text", u"Browser"_s);
    stage.root().setWidth(stage.root().implicitWidth());
    QCOMPARE(stage.root().implicitHeight(), line);
}

void ComponentsTest::weightsDiffer() {
    QVERIFY(KestrinFonts::hasAllWeights(KestrinFonts::family()));
    QImage previous;
    for (const int weight : {400, 500, 600, 700, 800}) {
        Stage stage("KestrinText { text: 'Kestrin'; size: 30 }");
        stage.root().setProperty("weight", weight);
        const QImage picture = stage.picture();
        QVERIFY(picture != previous);
        previous = picture;
    }
}

void ComponentsTest::assistiveNames_data() {
    QTest::addColumn<QByteArray>("qml");
    QTest::addColumn<QAccessible::Role>("role");
    QTest::addColumn<QString>("name");
    QTest::newRow("tile") << QByteArray("KestrinMetricTile { title: 'Running apps'; value: '12'; tone: 0; "
                                        "systemImage: 'macwindow' }")
                          << QAccessible::StaticText << u"Running apps, 12"_s;
    QTest::newRow("pill") << QByteArray("KestrinStatusPill { title: 'Enforcing'; tone: 2 }")
                          << QAccessible::StaticText << u"Enforcing"_s;
    QTest::newRow("button") << QByteArray("KestrinPrimaryButton { title: 'Go'; systemImage: 'link' }")
                            << QAccessible::Button << u"Go"_s;
    QTest::newRow("toggle") << QByteArray("KestrinToggle { on: true; Accessible.name: 'Protect Zoom' }")
                            << QAccessible::CheckBox << u"Protect Zoom"_s;
    QTest::newRow("heading") << QByteArray("KestrinText { text: 'Apps'; heading: true }")
                             << QAccessible::Heading << u"Apps"_s;
}

void ComponentsTest::assistiveNames() {
    QFETCH(const QByteArray, qml);
    QFETCH(const QAccessible::Role, role);
    QFETCH(const QString, name);
    Stage stage(qml);
    QAccessibleInterface *const item = QAccessible::queryAccessibleInterface(&stage.root());
    QVERIFY(item);
    QCOMPARE(item->role(), role);
    QCOMPARE(item->text(QAccessible::Name), name);
    // What it is made of is not said a second time.
    QCOMPARE(item->childCount(), 0);
}

QTEST_MAIN(ComponentsTest)

#include "tst_components.moc"
