#include "app/Kestrin/ProtectionWindow.h"

#include "app/Kestrin/MacProtectionState.h"
#include "app/Kestrin/ModuleObjects.h"

#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>

using namespace Qt::StringLiterals;

namespace kestrin {

ProtectionWindow::ProtectionWindow(QQmlEngine &engine)
    : m_description(describe(engine, u"MacWindow.qml"_s)) {}

ProtectionWindow::~ProtectionWindow() = default;

void ProtectionWindow::open(MacProtectionState &state) {
    m_made = makeObject(*m_description, {{u"protection"_s, QVariant::fromValue(&state)}});
    m_window = qobject_cast<QQuickWindow *>(m_made.get());
    if (!m_window)
        qFatal("The window cannot be made; is everything installed that it needs?");
}

void showNotice(const QString &text) {
    const std::unique_ptr<QQmlEngine> engine = makeEngine();
    const std::unique_ptr<QObject> notice = makeObject(*engine, u"MacNotice.qml"_s, {{u"text"_s, text}});
    if (notice)
        QGuiApplication::exec();
}

} // namespace kestrin
