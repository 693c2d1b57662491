// The colours in both appearances, the tones, and where the appearance comes from.

#include "design/KestrinAppearance.h"
#include "design/KestrinColors.h"
#include "design/platform/DesktopPreferences.h"
#include "tests/design/Stage.h"

#include <QGuiApplication>
#include <QPalette>
#include <QSignalSpy>

using namespace Qt::StringLiterals;
using namespace kestrin;

namespace {

/// A desktop whose preferences are set by hand.
class Desktop : public DesktopPreferences {
  public:
    void say(std::optional<bool> dark, std::optional<bool> animations = {},
             std::optional<bool> contrast = {}) {
        m_prefersDark = dark;
        m_animations = animations;
        m_highContrast = contrast;
        Q_EMIT changed();
    }
};

struct Triple {
    double red;
    double green;
    double blue;
};

// Exact to the sixteen bits that a colour holds.
bool isColor(const QColor &color, const Triple &expected, double alpha = 1) {
    const QColor wanted =
        QColor::fromRgbF(static_cast<float>(expected.red), static_cast<float>(expected.green),
                         static_cast<float>(expected.blue), static_cast<float>(alpha));
    return color.rgba64() == wanted.rgba64();
}

} // namespace

Q_DECLARE_METATYPE(Triple)

class PaletteTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void init() { KestrinAppearance::shared().setPreference(KestrinAppearance::Light); }
    void colors_data();
    void colors();
    void tones();
    void desktopDecides();
    void preferenceOverrides();
    void openWindowIsRecoloured();
};

void PaletteTest::colors_data() {
    QTest::addColumn<Triple>("light");
    QTest::addColumn<Triple>("dark");
    const auto row = [](const char *name, Triple light, Triple dark) {
        QTest::newRow(name) << light << dark;
    };
    row("deepGreen", {0.004, 0.102, 0.286}, {0.82, 0.88, 0.98});
    row("freshGreen", {0.082, 0.54, 0.345}, {0.5, 0.82, 0.62});
    row("warmIvory", {0.957, 0.965, 0.98}, {0.045, 0.06, 0.09});
    row("softIvory", {0.99, 0.994, 1.0}, {0.07, 0.09, 0.13});
    row("textPrimary", {0.055, 0.063, 0.086}, {0.925, 0.94, 0.97});
    row("textSecondary", {0.43, 0.455, 0.5}, {0.68, 0.71, 0.76});
    row("textMuted", {0.61, 0.635, 0.685}, {0.56, 0.595, 0.65});
    row("border", {0.875, 0.89, 0.925}, {0.17, 0.2, 0.26});
    row("divider", {0.9, 0.91, 0.935}, {0.165, 0.19, 0.245});
    row("surface", {1.0, 1.0, 1.0}, {0.07, 0.09, 0.13});
    row("surfaceMuted", {0.945, 0.955, 0.975}, {0.095, 0.12, 0.17});
    row("primaryAction", {0.004, 0.102, 0.286}, {0.59, 0.71, 1.0});
    row("primaryActionText", {1.0, 1.0, 1.0}, {0.04, 0.09, 0.06});
    row("protected", {0.12, 0.62, 0.35}, {0.55, 0.82, 0.64});
    row("attention", {0.788, 0.522, 0.141}, {0.96, 0.71, 0.32});
    row("attentionSoft", {0.973, 0.922, 0.847}, {0.26, 0.18, 0.09});
    row("offGray", {0.463, 0.49, 0.471}, {0.62, 0.66, 0.63});
    row("offGraySoft", {0.925, 0.93, 0.94}, {0.15, 0.17, 0.21});
    row("risk", {0.851, 0.29, 0.29}, {1.0, 0.45, 0.37});
    row("riskSoft", {0.992, 0.925, 0.925}, {0.28, 0.11, 0.11});
    row("link", {0.082, 0.356, 0.82}, {0.48, 0.72, 1.0});
    row("linkSoft", {0.915, 0.94, 0.995}, {0.08, 0.145, 0.275});
    row("softGreen", {0.895, 0.96, 0.92}, {0.075, 0.18, 0.12});
}

void PaletteTest::colors() {
    QFETCH(const Triple, light);
    QFETCH(const Triple, dark);
    KestrinColors &colors = KestrinColors::shared();
    QVERIFY(isColor(colors.property(QTest::currentDataTag()).value<QColor>(), light));
    KestrinAppearance::shared().setPreference(KestrinAppearance::Dark);
    QVERIFY(isColor(colors.property(QTest::currentDataTag()).value<QColor>(), dark));
}

void PaletteTest::tones() {
    const KestrinColors &colors = KestrinColors::shared();
    QCOMPARE(colors.color(KestrinTone::Neutral), colors.textSecondary());
    QVERIFY(isColor(colors.softBackground(KestrinTone::Risk), {0.851, 0.29, 0.29}, 0.12));
    Stage stage(R"(Item {
        property color neutral: KestrinTones.color(KestrinTone.Neutral)
        property color good: KestrinTones.color(KestrinTone.Protected)
        property color sameGood: KestrinColors.protected
        property color soft: KestrinTones.softBackground(KestrinTone.Attention)
    })");
    QCOMPARE(stage.value("neutral"), QVariant(colors.textSecondary()));
    QCOMPARE(stage.value("good"), stage.value("sameGood"));
    QVERIFY(isColor(stage.value("soft").value<QColor>(), {0.788, 0.522, 0.141}, 0.12));
    KestrinAppearance::shared().setPreference(KestrinAppearance::Dark);
    QVERIFY(isColor(stage.value("soft").value<QColor>(), {0.96, 0.71, 0.32}, 0.12));

    const QList<std::pair<ProtectionTone, QColor>> shared{
        {ProtectionTone::protected_, colors.protected_()},
        {ProtectionTone::attention, colors.attention()},
        {ProtectionTone::risk, colors.risk()},
        {ProtectionTone::link, colors.link()},
        {ProtectionTone::neutral, colors.textSecondary()},
    };
    for (const auto &[tone, color] : shared)
        QCOMPARE(colors.color(toneFor(tone)), color);
}

void PaletteTest::desktopDecides() {
    auto owned = std::make_unique<Desktop>();
    Desktop &desktop = *owned;
    KestrinAppearance appearance(std::move(owned));
    const QSignalSpy changes(&appearance, &KestrinAppearance::darkChanged);
    QVERIFY(!appearance.isDark());
    desktop.say(true, false, true);
    QVERIFY(appearance.isDark());
    QVERIFY(appearance.reducedMotion());
    QVERIFY(appearance.highContrast());
    desktop.say(true);
    QVERIFY(!appearance.reducedMotion());
    QCOMPARE(changes.size(), 1);

    // Without an answer of the desktop it is the palette, also when that changes.
    desktop.say({});
    QVERIFY(!appearance.isDark());
    const QPalette former = QGuiApplication::palette();
    QGuiApplication::setPalette(QPalette(Qt::white, Qt::black, Qt::gray, Qt::darkGray, Qt::gray, Qt::white,
                                         Qt::white, Qt::black, Qt::black));
    QTRY_VERIFY(appearance.isDark());
    desktop.say(false);
    QVERIFY(!appearance.isDark());
    QGuiApplication::setPalette(former);
}

void PaletteTest::preferenceOverrides() {
    auto owned = std::make_unique<Desktop>();
    Desktop &desktop = *owned;
    KestrinAppearance appearance(std::move(owned));
    appearance.setPreference(KestrinAppearance::Dark);
    desktop.say(false);
    QVERIFY(appearance.isDark());
    appearance.setPreference(KestrinAppearance::System);
    QVERIFY(!appearance.isDark());
    QCOMPARE(KestrinAppearance::preferenceFromText(u"dark"), KestrinAppearance::Dark);
    QCOMPARE(KestrinAppearance::preferenceFromText(u"Dark"), std::nullopt);
}

void PaletteTest::openWindowIsRecoloured() {
    Stage stage(R"(KestrinCard {
        width: 200
        height: 100
        KestrinPrimaryButton { title: "Go"; width: parent.width }
    })");
    QVERIFY(stage.isShown());
    QQuickItem *const button = stage.find("KestrinPrimaryButton");
    QVERIFY(button);
    const QPoint ground(100, 8);
    QCOMPARE(stage.picture().pixelColor(ground).rgb(), QColor(Qt::white).rgb());
    KestrinAppearance::shared().setPreference(KestrinAppearance::Dark);
    QCOMPARE(stage.picture().pixelColor(ground).rgb(), KestrinColors::shared().surface().rgb());
    QCOMPARE(stage.picture().pixelColor(30, 40).rgb(), KestrinColors::shared().primaryAction().rgb());
    QCOMPARE(stage.find("KestrinPrimaryButton"), button);
}

QTEST_MAIN(PaletteTest)

#include "tst_palette.moc"
