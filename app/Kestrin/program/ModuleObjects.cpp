#include "app/Kestrin/program/ModuleObjects.h"

#include "design/DesignSystem.h"

#include <QCoreApplication>
#include <QQmlComponent>
#include <QQmlEngine>

using namespace Qt::StringLiterals;

// Generated with the module.
extern void qml_register_types_Kestrin();
// Qt's own.
extern void qml_register_types_QtQml_WorkerScript();

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
    // QtQuick asks for it. Where it is not in the program, the thread that reads descriptions loads a plugin
    // and then waits for the main thread. The name alone keeps it in.
    [[maybe_unused]] const volatile auto workers = &qml_register_types_QtQml_WorkerScript;
    auto engine = std::make_unique<QQmlEngine>();
    QObject::connect(engine.get(), &QQmlEngine::quit, qApp, &QCoreApplication::quit, Qt::QueuedConnection);
    return engine;
}

std::unique_ptr<QQmlComponent> describe(QQmlEngine &engine, const QString &file) {
    return std::make_unique<QQmlComponent>(&engine, QUrl(u"qrc:/qt-project.org/imports/Kestrin/"_s + file),
                                           QQmlComponent::Asynchronous);
}

std::unique_ptr<QObject> makeObject(QQmlComponent &description, const QVariantMap &properties) {
    // Waits without the event loop, which would take a round for each message of the engine's thread.
    QQmlComponent ready(description.engine(), description.url());
    std::unique_ptr<QObject> made(ready.createWithInitialProperties(properties));
    if (!made)
        qWarning("%s", qPrintable(ready.errorString()));
    return made;
}

std::unique_ptr<QObject> makeObject(QQmlEngine &engine, const QString &file, const QVariantMap &properties) {
    return makeObject(*describe(engine, file), properties);
}

} // namespace kestrin::app
