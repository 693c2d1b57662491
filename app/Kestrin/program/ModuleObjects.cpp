#include "app/Kestrin/program/ModuleObjects.h"

#include "app/Kestrin/program/ApplicationIcons.h"
#include "design/DesignSystem.h"

#include <QCoreApplication>
#include <QQmlComponent>
#include <QQmlEngine>

using namespace Qt::StringLiterals;

// Generated with the module.
extern void qml_register_types_Kestrin();

// Resources of a static library are there only once somebody asks for them; the macro works in the global
// namespace only. Without the last one, Qt 6.8 compiles every view at the first start.
static void initializeResources() {
    Q_INIT_RESOURCE(KestrinApp_raw_qml_0);
    Q_INIT_RESOURCE(qmake_Kestrin);
    Q_INIT_RESOURCE(qmlcache_KestrinApp);
}

namespace kestrin::app {

using namespace design;

std::unique_ptr<QQmlEngine> makeEngine() {
    registerDesignSystem();
    initializeResources();
    qml_register_types_Kestrin();
    auto engine = std::make_unique<QQmlEngine>();
    // The engine owns it.
    engine->addImageProvider(u"application"_s, new ApplicationIcons);
    QObject::connect(engine.get(), &QQmlEngine::quit, qApp, &QCoreApplication::quit, Qt::QueuedConnection);
    return engine;
}

std::unique_ptr<QObject> makeObject(QQmlEngine &engine, const QString &file, const QVariantMap &properties) {
    QQmlComponent description(&engine, QUrl(u"qrc:/qt-project.org/imports/Kestrin/"_s + file));
    std::unique_ptr<QObject> made(description.createWithInitialProperties(properties));
    if (!made)
        qWarning("%s", qPrintable(description.errorString()));
    return made;
}

} // namespace kestrin::app
