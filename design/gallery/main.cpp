// Pictures of every component, for people to look at: kestrin-design-gallery light|dark FILE.png

#include "design/DesignSystem.h"
#include "design/KestrinAppearance.h"
#include "design/SymbolTable.h"

#include <QGuiApplication>
#include <QQmlContext>
#include <QQuickView>
#include <QTextStream>
#include <QTimer>

using namespace Qt::StringLiterals;
using namespace kestrin;
using namespace kestrin::design;

namespace {

QStringList symbolNames() {
    QStringList names;
    for (const SymbolDrawing &symbol : symbolTable())
        names.append(QLatin1StringView(symbol.name));
    return names;
}

} // namespace

int main(int argc, char **argv) {
    QGuiApplication application(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    const auto preference =
        arguments.size() == 3 ? KestrinAppearance::preferenceFromText(arguments.at(1)) : std::nullopt;
    if (!preference) {
        QTextStream(stderr) << "usage: kestrin-design-gallery light|dark FILE.png\n";
        return 2;
    }
    registerDesignSystem();
    KestrinAppearance::shared().setPreference(*preference);

    QQuickView view;
    view.rootContext()->setContextProperty(u"symbolNames"_s, symbolNames());
    view.setSource(QUrl(u"qrc:/gallery/Gallery.qml"_s));
    if (view.status() != QQuickView::Ready)
        return 1;
    view.show();
    bool saved = false;
    // The first frame may be drawn before the window has its size.
    QTimer::singleShot(300, &view, [&] {
        saved = view.grabWindow().save(arguments.at(2));
        QGuiApplication::quit();
    });
    QGuiApplication::exec();
    return saved ? 0 : 1;
}
