// What an object of the bus offers, as it says itself when it is introspected.
#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

namespace kestrin::desktop {

struct BusObject {
    /// By interface, the methods that take no argument.
    QHash<QString, QStringList> plainMethods;
    QStringList interfaces;
    /// Names, each one step of a path.
    QStringList children;

    /// What is wrong with the text ends it; what was understood until then counts.
    static BusObject fromIntrospection(const QString &xml);
};

} // namespace kestrin::desktop
