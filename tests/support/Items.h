// What is in a window, and keys for it.
#pragma once

#include <QByteArray>
#include <QList>
#include <QQuickItem>
#include <QTest>

namespace kestrin::samples {

/// The visible items of a QML type, in the order they were made.
inline QList<QQuickItem *> itemsOf(const QByteArray &type, QQuickItem *item) {
    if (!item->isVisible())
        return {};
    const QByteArray name = item->metaObject()->className();
    QList<QQuickItem *> found;
    if (name == type || name.startsWith(type + "_QML"))
        found.append(item);
    for (QQuickItem *const child : item->childItems())
        found += itemsOf(type, child);
    return found;
}

/// One after the other.
inline void pressKeys(QWindow &window, const QList<QKeyCombination> &keys) {
    for (const QKeyCombination key : keys)
        QTest::keyClick(&window, key.key(), key.keyboardModifiers());
}
inline void typeText(QWindow &window, const QByteArray &text) {
    for (const char letter : text)
        QTest::keyClick(&window, letter);
}

} // namespace kestrin::samples
