#include "app/Kestrin/ModuleObjects.h"

#include "design/DesignSystem.h"

#include <QCoreApplication>
#include <QQmlComponent>
#include <QQmlEngine>

using namespace Qt::StringLiterals;

// Generated with the module.
extern void qml_register_types_Kestrin();

namespace kestrin {

std::unique_ptr<QQmlEngine> makeEngine() {
    registerDesignSystem();
    qml_register_types_Kestrin();
    auto engine = std::make_unique<QQmlEngine>();
    QObject::connect(engine.get(), &QQmlEngine::quit, qApp, &QCoreApplication::quit, Qt::QueuedConnection);
    return engine;
}

std::unique_ptr<QQmlComponent> describe(QQmlEngine &engine, const QString &file) {
    return std::make_unique<QQmlComponent>(&engine, QUrl(u"qrc:/qt-project.org/imports/Kestrin/"_s + file),
                                           QQmlComponent::Asynchronous);
}

std::unique_ptr<QObject> makeObject(QQmlComponent &description, const QVariantMap &properties) {
    while (description.isLoading())
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents | QEventLoop::WaitForMoreEvents);
    std::unique_ptr<QObject> made(description.createWithInitialProperties(properties));
    if (!made)
        qWarning("%s", qPrintable(description.errorString()));
    return made;
}

std::unique_ptr<QObject> makeObject(QQmlEngine &engine, const QString &file, const QVariantMap &properties) {
    return makeObject(*describe(engine, file), properties);
}

} // namespace kestrin
