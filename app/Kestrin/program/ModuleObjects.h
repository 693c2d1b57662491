// Making objects that the QML module describes.
#pragma once

#include <QString>
#include <QVariantMap>

#include <memory>

class QObject;
class QQmlComponent;
class QQmlEngine;

namespace kestrin::app {

/// An engine that knows the modules and whose Qt.quit() ends the program.
std::unique_ptr<QQmlEngine> makeEngine();

/// Begins to read a file of the module, on a thread of the engine's.
std::unique_ptr<QQmlComponent> describe(QQmlEngine &engine, const QString &file);

/// Makes what is described, once it has been read; null, and a warning, when something that it needs is not
/// installed.
std::unique_ptr<QObject> makeObject(QQmlComponent &description, const QVariantMap &properties);
std::unique_ptr<QObject> makeObject(QQmlEngine &engine, const QString &file, const QVariantMap &properties);

} // namespace kestrin::app
