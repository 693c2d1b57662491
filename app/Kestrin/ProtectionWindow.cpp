#include "app/Kestrin/ProtectionWindow.h"

#include "app/Kestrin/MacProtectionState.h"
#include "app/Kestrin/ModuleObjects.h"

#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>

#ifdef __GLIBC__
#include <malloc.h>
#endif

using namespace Qt::StringLiterals;

namespace kestrin {

namespace {

constexpr std::chrono::milliseconds restDelay{100};

/// A page that was left leaves holes, in all a tenth of the heap, which glibc keeps unless it is told not to.
void handBackMemory() {
#ifdef __GLIBC__
    malloc_trim(0);
#endif
}

} // namespace

ProtectionWindow::ProtectionWindow(QQmlEngine &engine) : m_description(describe(engine, u"MacWindow.qml"_s)) {
    m_rest.setSingleShot(true);
    m_rest.setInterval(restDelay);
    m_rest.callOnTimeout(handBackMemory);
}

ProtectionWindow::~ProtectionWindow() = default;

void ProtectionWindow::open(MacProtectionState &state) {
    m_made = makeObject(*m_description, {{u"protection"_s, QVariant::fromValue(&state)}});
    m_window = qobject_cast<QQuickWindow *>(m_made.get());
    if (!m_window)
        qFatal("The window cannot be made; is everything installed that it needs?");
    QObject::connect(m_window, &QQuickWindow::frameSwapped, &m_rest, qOverload<>(&QTimer::start));
}

void showNotice(const QString &text) {
    const std::unique_ptr<QQmlEngine> engine = makeEngine();
    const std::unique_ptr<QObject> notice = makeObject(*engine, u"MacNotice.qml"_s, {{u"text"_s, text}});
    if (notice)
        QGuiApplication::exec();
}

} // namespace kestrin
