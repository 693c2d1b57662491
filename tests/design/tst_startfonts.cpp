// What can be written before the desktop's fonts are taken in, and afterwards.

#include "design/DesignSystem.h"
#include "design/DesktopFonts.h"
#include "design/KestrinFonts.h"
#include "tests/support/Files.h"

#include <QFontInfo>
#include <QGlyphRun>
#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QTextLayout>

#include <algorithm>
#include <memory>

using namespace Qt::StringLiterals;
using namespace kestrin;
using namespace kestrin::design;

namespace {

/// Of the letters that no font has, the first glyph of a font is drawn.
bool canWrite(const QString &text) {
    QTextLayout layout(text, KestrinFonts::font(13, KestrinWeight::Bold));
    layout.beginLayout();
    layout.createLine();
    layout.endLayout();
    const QList<QGlyphRun> runs = layout.glyphRuns();
    return !runs.isEmpty() &&
           std::ranges::none_of(runs, [](const QGlyphRun &run) { return run.glyphIndexes().contains(0); });
}

} // namespace

class StartFontsTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void desktopsComeLater();
};

void StartFontsTest::desktopsComeLater() {
    const QString ours = u"Privacy Mode"_s;
    const QString theirs = u"ზუმი"_s;
    const QString desktops = QGuiApplication::font().family();
    const QString family = KestrinFonts::family();
    QVERIFY(canWrite(ours) && !canWrite(theirs));
    QQmlEngine engine;
    QQmlComponent component(&engine);
    component.setData(u"import KestrinDesignSystem\nKestrinText { text: '%1' }"_s.arg(theirs).toUtf8(), {});
    const std::unique_ptr<QObject> shown(component.create());

    KestrinFonts::complete();
    QVERIFY(canWrite(ours) && canWrite(theirs));
    QCOMPARE(KestrinFonts::family(), family);
    QCOMPARE(QFontInfo(KestrinFonts::font(13, KestrinWeight::Bold)).family(), family);
    // What is shown already is as good as new.
    const std::unique_ptr<QObject> fresh(component.create());
    QCOMPARE(shown->property("naturalWidth"), fresh->property("naturalWidth"));

    const QString memory = QStandardPaths::writableLocation(QStandardPaths::CacheLocation) + u"/own-faces"_s;
    QVERIFY(QFile::remove(memory));
    KestrinFonts::complete();
    QCOMPARE(samples::isOwnersAlone(memory), !KestrinFonts::hasAllWeights(realFamily(desktops)));
}

int main(int argc, char **argv) {
    const QTemporaryDir cache;
    qputenv("XDG_CACHE_HOME", cache.path().toLocal8Bit());
    QCoreApplication::setApplicationName(u"Kestrin"_s);
    // As a former start has left it.
    samples::write(cache.filePath(u"Kestrin/own-faces"_s), {});
    KestrinFonts::begin();
    const QGuiApplication application(argc, argv);
    registerDesignSystem();
    StartFontsTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_startfonts.moc"
