#include "app/Kestrin/program/ProtectionWindow.h"

#include "app/Kestrin/pages/MacProtectionState.h"
#include "app/Kestrin/program/ModuleObjects.h"
#include "app/Kestrin/program/TrayCommands.h"
#include "design/KestrinColors.h"

#include <QGuiApplication>
#include <QLibraryInfo>
#include <QPalette>
#include <QQmlEngine>
#include <QQuickItem>
#include <QScreen>
#include <QVersionNumber>

using namespace Qt::StringLiterals;

namespace kestrin::app {

using namespace design;

namespace {

constexpr QSize least(1040, 680);
constexpr QSize usual(1180, 760);
// What the desktop will put around the window is not known before it is shown; few title bars are higher.
constexpr QSize frame(2, 40);

QSize fitted(const QScreen &screen) {
    return usual.boundedTo(screen.availableSize() - frame).expandedTo(least);
}

/// Where the desktop leaves the frame to the program, as GNOME does, Qt draws it in the colours that the
/// palette has at the moment when the frame is made. Otherwise the palette is the desktop's, and may be all
/// that tells of a dark one.
class FrameColors {
  public:
    FrameColors() {
        const KestrinColors &colors = KestrinColors::shared();
        QPalette palette;
        palette.setColor(QPalette::Window, colors.surfaceMuted());
        palette.setColor(QPalette::WindowText, colors.textPrimary());
        palette.setColor(QPalette::Disabled, QPalette::WindowText, colors.textSecondary());
        QGuiApplication::setPalette(palette);
    }
    ~FrameColors() { QGuiApplication::setPalette(QPalette()); }
    Q_DISABLE_COPY_MOVE(FrameColors)
};

/// From Qt 6.8 on the frame follows the desktop, and one that is made anew stays black.
bool framesFollow() {
    return QLibraryInfo::version() >= QVersionNumber(6, 8);
}

void renewFrame(QQuickWindow &window) {
    if (framesFollow() || QGuiApplication::platformName() != "wayland"_L1 || window.frameMargins().isNull())
        return;
    const FrameColors colors;
    window.setFlag(Qt::FramelessWindowHint);
    window.setFlag(Qt::FramelessWindowHint, false);
}

std::unique_ptr<QQuickWindow> makeWindow() {
    auto window = std::make_unique<QQuickWindow>();
    window->setMinimumSize(least);
    window->resize(fitted(*window->screen()));
    window->setTitle(QGuiApplication::applicationDisplayName());
    const auto paint = [&window = *window] { window.setColor(KestrinColors::shared().warmIvory()); };
    QObject::connect(&KestrinColors::shared(), &KestrinColors::changed, window.get(), paint);
    paint();
    return window;
}

} // namespace

ProtectionWindow::ProtectionWindow(QQmlEngine &engine, MacProtectionState &state) {
    // It finds its place on the desktop while it is filled.
    m_window = makeWindow();
    // Long lists are filled between its frames.
    engine.setIncubationController(m_window->incubationController());
    m_window->show();
    renewFrame(*m_window);
    QObject::connect(&KestrinColors::shared(), &KestrinColors::changed, m_window.get(),
                     [&window = *m_window] { renewFrame(window); });
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

void showNotice(const QString &text) {
    const std::unique_ptr<QQmlEngine> engine = makeEngine();
    const std::unique_ptr<QObject> notice = makeObject(*engine, u"MacNotice.qml"_s, {{u"text"_s, text}});
    // Also where the program was to go on in the background.
    QGuiApplication::setQuitOnLastWindowClosed(true);
    if (notice)
        QGuiApplication::exec();
}

} // namespace kestrin::app
