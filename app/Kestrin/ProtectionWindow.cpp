#include "app/Kestrin/ProtectionWindow.h"

#include "app/Kestrin/MacProtectionState.h"
#include "design/DesignSystem.h"

#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QQuickWindow>

using namespace Qt::StringLiterals;

// Generated with the module.
extern void qml_register_types_Kestrin();

namespace kestrin {

namespace {

/// Loads a window of the module; null when its description is broken.
QQuickWindow *loadWindow(QQmlApplicationEngine &engine, const QString &name, const QVariantMap &properties) {
    registerDesignSystem();
    qml_register_types_Kestrin();
    engine.setInitialProperties(properties);
    engine.load(QUrl(u"qrc:/qt-project.org/imports/Kestrin/"_s + name));
    return qobject_cast<QQuickWindow *>(engine.rootObjects().value(0));
}

} // namespace

ProtectionWindow::ProtectionWindow(UserDefaults &defaults, MacProtectionSurroundings surroundings)
    : m_runtime(std::make_unique<MacProtectionRuntime>(defaults, std::move(surroundings)))
    , m_privacyMode(std::make_unique<PrivacyModeFlag>(defaults, *m_runtime))
    , m_state(std::make_unique<MacProtectionState>(*m_runtime, *m_privacyMode))
    , m_engine(std::make_unique<QQmlApplicationEngine>()) {
    m_window =
        loadWindow(*m_engine, u"MacWindow.qml"_s, {{u"protection"_s, QVariant::fromValue(m_state.get())}});
    if (!m_window)
        qFatal("The window's own description does not load.");
}

ProtectionWindow::~ProtectionWindow() = default;

void showNotice(const QString &text) {
    QQmlApplicationEngine engine;
    if (loadWindow(engine, u"MacNotice.qml"_s, {{u"text"_s, text}}))
        QGuiApplication::exec();
}

} // namespace kestrin
