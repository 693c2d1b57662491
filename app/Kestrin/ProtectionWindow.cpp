#include "app/Kestrin/ProtectionWindow.h"

#include "app/Kestrin/MacProtectionState.h"
#include "design/DesignSystem.h"

#include <QQmlApplicationEngine>
#include <QQuickWindow>

using namespace Qt::StringLiterals;

// Generated with the module.
extern void qml_register_types_Kestrin();

namespace kestrin {

ProtectionWindow::ProtectionWindow(UserDefaults &defaults, MacProtectionSurroundings surroundings)
    : m_runtime(std::make_unique<MacProtectionRuntime>(defaults, std::move(surroundings)))
    , m_privacyMode(std::make_unique<PrivacyModeFlag>(defaults, *m_runtime))
    , m_state(std::make_unique<MacProtectionState>(*m_runtime, *m_privacyMode)) {
    registerDesignSystem();
    qml_register_types_Kestrin();
    m_engine = std::make_unique<QQmlApplicationEngine>();
    m_engine->setInitialProperties({{u"protection"_s, QVariant::fromValue(m_state.get())}});
    m_engine->load(QUrl(u"qrc:/qt-project.org/imports/Kestrin/MacWindow.qml"_s));
    m_window = qobject_cast<QQuickWindow *>(m_engine->rootObjects().value(0));
    if (!m_window)
        qFatal("The window's own description does not load.");
}

ProtectionWindow::~ProtectionWindow() = default;

} // namespace kestrin
