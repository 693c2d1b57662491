#include "app/Kestrin/program/LogWindow.h"

#include "app/Kestrin/program/FramedWindow.h"
#include "app/Kestrin/program/ModuleObjects.h"

#include <QQmlEngine>
#include <QQuickItem>

using namespace Qt::StringLiterals;

namespace kestrin::app {

using namespace runtime;

namespace {

constexpr QSize leastOfLog(720, 480);
constexpr QSize usualOfLog(960, 720);

// Width and height.
const QString sizeKey = u"kestrin.mac.logWindowSize"_s;

QSize rememberedSize(const UserDefaults &defaults) {
    const QStringList stored = defaults.stringArray(sizeKey).value_or(QStringList());
    return stored.size() == 2 ? QSize(stored.at(0).toInt(), stored.at(1).toInt()) : usualOfLog;
}

} // namespace

LogWindow::LogWindow(QQmlEngine &engine, MacProtectionRuntime &runtime, InstalledApplications &installed,
                     UserDefaults &defaults)
    : m_defaults(defaults)
    , m_log(runtime, installed)
    , m_window(makeFramedWindow(leastOfLog, rememberedSize(defaults), u"Activity Log"_s))
    , m_size(m_window->size()) {
    // It finds its place on the desktop while it is filled.
    showFramed(*m_window);
    m_content = makeObject(engine, u"MacLogView.qml"_s,
                           {{u"log"_s, QVariant::fromValue(&m_log)},
                            {u"parent"_s, QVariant::fromValue(m_window->contentItem())}});
    if (!m_content)
        qFatal("The log window cannot be made; is everything installed that it needs?");
}

LogWindow::~LogWindow() {
    rememberSize();
}

void LogWindow::rememberSize() {
    const bool isOwnSize = (m_window->windowStates() & (Qt::WindowMaximized | Qt::WindowFullScreen)) == 0;
    if (!isOwnSize || m_window->size() == m_size)
        return;
    // Where that cannot be stored it is the usual one the next time.
    static_cast<void>(m_defaults.setStringArray(
        sizeKey, {QString::number(m_window->width()), QString::number(m_window->height())}));
}

} // namespace kestrin::app
