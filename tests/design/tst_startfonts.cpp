// What can be written before the desktop's fonts are taken in, and afterwards.

#include "design/DesignSystem.h"
#include "design/KestrinFonts.h"

#include <QDir>
#include <QFontInfo>
#include <QGlyphRun>
#include <QGuiApplication>
#include <QTemporaryDir>
#include <QTest>
#include <QTextLayout>

using namespace Qt::StringLiterals;
using namespace kestrin;

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
    const QString family = KestrinFonts::family();
    QVERIFY(canWrite(ours) && !canWrite(theirs));
    KestrinFonts::complete();
    QVERIFY(canWrite(ours) && canWrite(theirs));
    QCOMPARE(KestrinFonts::family(), family);
    QCOMPARE(QFontInfo(KestrinFonts::font(13, KestrinWeight::Bold)).family(), family);
}

int main(int argc, char **argv) {
    const QTemporaryDir cache;
    qputenv("XDG_CACHE_HOME", cache.path().toLocal8Bit());
    QCoreApplication::setApplicationName(u"Kestrin"_s);
    // As a former start has left it.
    QDir(cache.path()).mkpath(u"Kestrin/own-faces"_s);
    KestrinFonts::begin();
    const QGuiApplication application(argc, argv);
    registerDesignSystem();
    StartFontsTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_startfonts.moc"
