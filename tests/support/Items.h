// What is in a window.
#pragma once

#include <QByteArray>
#include <QList>
#include <QQuickItem>

namespace kestrin::samples {

/// Appends the visible items of a QML type, in the order they were made.
inline void collect(QQuickItem *item, const QByteArray &type, QList<QQuickItem *> &found) {
    if (!item->isVisible())
        return;
    const QByteArray name = item->metaObject()->className();
    if (name == type || name.startsWith(type + "_QML"))
        found.append(item);
    const QList<QQuickItem *> children = item->childItems();
    for (QQuickItem *const child : children)
        collect(child, type, found);
}

} // namespace kestrin::samples
