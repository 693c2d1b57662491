#include "app/Kestrin/program/ProtectionWindow.h"

#include "app/Kestrin/pages/MacProtectionState.h"
#include "app/Kestrin/program/ModuleObjects.h"
#include "design/KestrinColors.h"
#include "design/KestrinFonts.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>

#include <array>

#ifdef __GLIBC__
#include <malloc.h>
#endif

using namespace Qt::StringLiterals;

namespace kestrin::app {

using namespace design;

namespace {

constexpr double bodySize = 13;

struct TextFont {
    int size;
    KestrinWeight weight;
};

// And of the sidebar.
constexpr std::array fontsOfHome{
    TextFont{11, KestrinWeight::Regular},  TextFont{12, KestrinWeight::Regular},
    TextFont{13, KestrinWeight::Regular},  TextFont{14, KestrinWeight::Regular},
    TextFont{13, KestrinWeight::Semibold}, TextFont{15, KestrinWeight::Semibold},
    TextFont{13, KestrinWeight::Bold},     TextFont{14, KestrinWeight::Bold},
    TextFont{15, KestrinWeight::Bold},     TextFont{17, KestrinWeight::Bold},
    TextFont{18, KestrinWeight::Bold},     TextFont{20, KestrinWeight::Bold},
    TextFont{30, KestrinWeight::Bold},     TextFont{19, KestrinWeight::Heavy},
    TextFont{30, KestrinWeight::Heavy},
};

constexpr std::chrono::milliseconds restDelay{100};

/// A page that was left leaves holes, in all a tenth of the heap, which glibc keeps unless it is told not to.
void handBackMemory() {
#ifdef __GLIBC__
    malloc_trim(0);
#endif
}

/// Qt measures a text before it is told the text's font; with the desktop's, that one would be loaded for
/// nothing. Needs the modules.
void useBodyFont() {
    QGuiApplication::setFont(KestrinFonts::font(bodySize, KestrinWeight::Regular));
}

/// Their metrics are the first thing that a text asks for.
void prepare(const QList<QFont> &fonts) {
    for (const QFont &font : fonts)
        QFontMetricsF(font).height();
}

std::unique_ptr<QQuickWindow> makeWindow() {
    auto window = std::make_unique<QQuickWindow>();
    window->resize(1180, 760);
    // It would learn of its size by an event, when all has been laid out already.
    window->contentItem()->setSize(window->size());
    window->setMinimumSize({1040, 680});
    window->setTitle(QGuiApplication::applicationDisplayName());
    const auto paint = [&window = *window] { window.setColor(KestrinColors::shared().warmIvory()); };
    QObject::connect(&KestrinColors::shared(), &KestrinColors::changed, window.get(), paint);
    paint();
    return window;
}

} // namespace

ProtectionWindow::ProtectionWindow(QQmlEngine &engine)
    : m_description(describe(engine, u"MacRootView.qml"_s))
    , m_firstPage(describe(engine, u"MacHomeView.qml"_s)) {
    m_rest.setSingleShot(true);
    m_rest.setInterval(restDelay);
    m_rest.callOnTimeout(handBackMemory);
    useBodyFont();
    prepare(firstFonts());
}

ProtectionWindow::~ProtectionWindow() = default;

QList<QFont> ProtectionWindow::firstFonts() {
    QList<QFont> fonts;
    for (const TextFont &each : fontsOfHome)
        fonts.append(KestrinFonts::font(each.size, each.weight));
    return fonts;
}

void ProtectionWindow::open(MacProtectionState &state) {
    // It finds its place on the desktop while it is filled.
    m_window = makeWindow();
    m_window->show();
    m_content = makeObject(*m_description, {{u"protection"_s, QVariant::fromValue(&state)},
                                            {u"parent"_s, QVariant::fromValue(m_window->contentItem())}});
    if (!m_content)
        qFatal("The window cannot be made; is everything installed that it needs?");
    QObject::connect(m_window.get(), &QQuickWindow::frameSwapped, &m_rest, qOverload<>(&QTimer::start));
}

void showNotice(const QString &text) {
    const std::unique_ptr<QQmlEngine> engine = makeEngine();
    useBodyFont();
    const std::unique_ptr<QObject> notice = makeObject(*engine, u"MacNotice.qml"_s, {{u"text"_s, text}});
    if (notice)
        QGuiApplication::exec();
}

} // namespace kestrin::app
