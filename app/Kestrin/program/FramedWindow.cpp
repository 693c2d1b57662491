#include "app/Kestrin/program/FramedWindow.h"

#include "design/KestrinColors.h"

#include <QGuiApplication>
#include <QLibraryInfo>
#include <QPalette>
#include <QScreen>
#include <QVersionNumber>

using namespace Qt::StringLiterals;

namespace kestrin::app {

using namespace design;

namespace {

// What the desktop will put around the window is not known before it is shown; few title bars are higher.
constexpr QSize frame(2, 40);

QSize fitted(QSize least, QSize usual, const QScreen &screen) {
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

} // namespace

std::unique_ptr<QQuickWindow> makeFramedWindow(QSize least, QSize usual, const QString &title) {
    auto window = std::make_unique<QQuickWindow>();
    window->setMinimumSize(least);
    window->resize(fitted(least, usual, *window->screen()));
    window->setTitle(title);
    const auto paint = [&window = *window] { window.setColor(KestrinColors::shared().warmIvory()); };
    QObject::connect(&KestrinColors::shared(), &KestrinColors::changed, window.get(), paint);
    paint();
    return window;
}

void showFramed(QQuickWindow &window) {
    window.show();
    renewFrame(window);
    QObject::connect(&KestrinColors::shared(), &KestrinColors::changed, &window,
                     [&window] { renewFrame(window); });
}

void bringToFront(QQuickWindow &window, const QString &activationToken) {
    // Where Qt's plugin for Wayland looks for it.
    if (!activationToken.isEmpty())
        qputenv("XDG_ACTIVATION_TOKEN", activationToken.toUtf8());
    if ((window.windowStates() & Qt::WindowMinimized) != 0)
        window.setWindowStates(window.windowStates() & ~Qt::WindowMinimized);
    window.show();
    window.raise();
    window.requestActivate();
}

} // namespace kestrin::app
