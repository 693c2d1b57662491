// Making objects that the QML module describes.
#pragma once

#include <QString>
#include <QVariantMap>

#include <memory>

class QObject;
class QQmlEngine;

namespace kestrin::app {

/// An engine that knows the modules and whose Qt.quit() ends the program.
std::unique_ptr<QQmlEngine> makeEngine();

/// Makes what a file of the module describes; null, and a warning, when something that it needs is not
/// installed.
std::unique_ptr<QObject> makeObject(QQmlEngine &engine, const QString &file, const QVariantMap &properties);

} // namespace kestrin::app
