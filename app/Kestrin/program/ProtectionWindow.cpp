#include "app/Kestrin/program/ProtectionWindow.h"

#include "app/Kestrin/pages/MacProtectionState.h"
#include "app/Kestrin/program/FramedWindow.h"
#include "app/Kestrin/program/ModuleObjects.h"
#include "app/Kestrin/program/TrayCommands.h"

#include <QGuiApplication>
#include <QQmlEngine>
#include <QQuickItem>

using namespace Qt::StringLiterals;

namespace kestrin::app {

namespace {

constexpr QSize least(1040, 680);
constexpr QSize usual(1180, 760);

} // namespace

ProtectionWindow::ProtectionWindow(QQmlEngine &engine, MacProtectionState &state) {
    // It finds its place on the desktop while it is filled.
    m_window = makeFramedWindow(least, usual, QGuiApplication::applicationDisplayName());
    // Long lists are filled between its frames.
    engine.setIncubationController(m_window->incubationController());
    showFramed(*m_window);
    m_content = makeObject(engine, u"MacRootView.qml"_s,
                           {{u"protection"_s, QVariant::fromValue(&state)},
                            {u"parent"_s, QVariant::fromValue(m_window->contentItem())}});
    if (!m_content)
        qFatal("The window cannot be made; is everything installed that it needs?");
}

ProtectionWindow::~ProtectionWindow() = default;

void ProtectionWindow::explainFirstStart(TrayCommands &commands) {
    QMetaObject::invokeMethod(m_content.get(), "explainFirstStart",
                              Q_ARG(kestrin::app::TrayCommands *, &commands));
}

void ProtectionWindow::protectApp(const QString &name, const QString &identifier,
                                  const QList<engine::MacRiskCategory> &categories) {
    QVariantList places;
    for (const engine::MacRiskCategory category : categories)
        places.append(static_cast<int>(category));
    QMetaObject::invokeMethod(m_content.get(), "protectApp", Q_ARG(QString, name), Q_ARG(QString, identifier),
                              Q_ARG(QVariant, places));
}

void showNotice(const QString &text) {
    const std::unique_ptr<QQmlEngine> engine = makeEngine();
    const std::unique_ptr<QObject> notice = makeObject(*engine, u"MacNotice.qml"_s, {{u"text"_s, text}});
    // Also where the program was to go on in the background.
    QGuiApplication::setQuitOnLastWindowClosed(true);
    if (notice)
        QGuiApplication::exec();
}

} // namespace kestrin::app
