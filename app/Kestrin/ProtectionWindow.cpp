#include "app/Kestrin/ProtectionWindow.h"

#include "app/Kestrin/MacProtectionState.h"
#include "design/DesignSystem.h"

#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>

using namespace Qt::StringLiterals;

// Generated with the module.
extern void qml_register_types_Kestrin();

namespace kestrin {

namespace {

std::unique_ptr<QQmlEngine> makeEngine() {
    registerDesignSystem();
    qml_register_types_Kestrin();
    auto engine = std::make_unique<QQmlEngine>();
    QObject::connect(engine.get(), &QQmlEngine::quit, qApp, &QCoreApplication::quit, Qt::QueuedConnection);
    return engine;
}

/// Begins to read a window of the module.
std::unique_ptr<QQmlComponent> describe(QQmlEngine &engine, const QString &name) {
    return std::make_unique<QQmlComponent>(&engine, QUrl(u"qrc:/qt-project.org/imports/Kestrin/"_s + name),
                                           QQmlComponent::Asynchronous);
}

std::unique_ptr<QQuickWindow> make(QQmlComponent &description, const QVariantMap &properties) {
    while (description.isLoading())
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents | QEventLoop::WaitForMoreEvents);
    QObject *const made = description.createWithInitialProperties(properties);
    std::unique_ptr<QQuickWindow> window(qobject_cast<QQuickWindow *>(made));
    if (!window)
        qFatal("A window's own description does not load: %s", qPrintable(description.errorString()));
    return window;
}

} // namespace

ProtectionWindow::ProtectionWindow()
    : m_engine(makeEngine())
    , m_description(describe(*m_engine, u"MacWindow.qml"_s)) {}

ProtectionWindow::~ProtectionWindow() = default;

void ProtectionWindow::open(MacProtectionState &state) {
    m_window = make(*m_description, {{u"protection"_s, QVariant::fromValue(&state)}});
}

void showNotice(const QString &text) {
    const std::unique_ptr<QQmlEngine> engine = makeEngine();
    const std::unique_ptr<QQuickWindow> window =
        make(*describe(*engine, u"MacNotice.qml"_s), {{u"text"_s, text}});
    QGuiApplication::exec();
}

} // namespace kestrin
