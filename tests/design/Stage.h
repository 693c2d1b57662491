#pragma once

#include "design/DesignSystem.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

#include <memory>

namespace kestrin {

/// A shown window with a piece of QML in it, over white. What follows the imports is the root item.
class Stage {
  public:
    explicit Stage(const QByteArray &qml, QSize size = {400, 200}) {
        registerDesignSystem();
        m_window.setColor(Qt::white);
        m_window.resize(size);
        QQmlComponent component(&m_engine);
        component.setData("import QtQuick\nimport QtQuick.Layouts\nimport KestrinDesignSystem\n" + qml, {});
        m_root.reset(qobject_cast<QQuickItem *>(component.create()));
        if (!m_root)
            qFatal("%s", qPrintable(component.errorString()));
        m_root->setParentItem(m_window.contentItem());
        m_window.show();
        m_shown = QTest::qWaitForWindowExposed(&m_window);
    }

    bool isShown() const { return m_shown; }
    QQuickWindow &window() { return m_window; }
    QQuickItem &root() { return *m_root; }
    QVariant value(const char *property) const { return m_root->property(property); }

    /// The first item below the root whose type, in C++ or in QML, begins with `type`.
    QQuickItem *find(const char *type) const { return find(m_root.get(), QByteArray(type)); }

    void click(QPointF at) { QTest::mouseClick(&m_window, Qt::LeftButton, Qt::NoModifier, at.toPoint()); }

    QImage picture() { return m_window.grabWindow(); }

  private:
    static QQuickItem *find(QQuickItem *item, const QByteArray &type) {
        const auto children = item->childItems();
        for (QQuickItem *const child : children) {
            const QByteArray name = child->metaObject()->className();
            if (name.startsWith(type) || name.startsWith("kestrin::" + type))
                return child;
            if (QQuickItem *const found = find(child, type))
                return found;
        }
        return nullptr;
    }

    QQuickWindow m_window;
    QQmlEngine m_engine;
    std::unique_ptr<QQuickItem> m_root;
    bool m_shown = false;
};

} // namespace kestrin
