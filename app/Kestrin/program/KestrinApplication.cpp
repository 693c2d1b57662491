#include "app/Kestrin/program/KestrinApplication.h"

#include "app/Kestrin/program/FramedWindow.h"
#include "app/Kestrin/program/ModuleObjects.h"
#include "app/Kestrin/rows/ShownText.h"
#include "app/Kestrin/rows/UseTexts.h"
#include "design/KestrinIconMark.h"
#include "foundation/FreedMemory.h"
#include "foundation/VisibleText.h"

#include <QGuiApplication>
#include <QQuickWindow>

using namespace Qt::StringLiterals;

namespace kestrin::app {

using namespace foundation;
using namespace engine;
using namespace runtime;
using namespace design;
using namespace desktop;

namespace {

const QString howToSee =
    u"Most of today's desktops tell a program what runs only where their user says so.\n\n"
    "GNOME: install Kestrin's package, choose Enable here, and log in again if you are told to.\n\n"
    "KDE Plasma: install Kestrin's package, or choose Enable here.\n\n"
    "sway, Hyprland, labwc, niri, river, Wayfire: there is nothing to do.\n\n"
    "Elsewhere: choose an X11 or Xorg session where you log in, if there is one. Until then look yourself "
    "for applications that should not run."_s;

// In one line, because desktops cut it.
const QString endSentence = u"Protection ends with Kestrin's window."_s;
const QString endToldKey = u"kestrin.mac.endOfProtectionTold"_s;

// A server of notices may have to be started, or be silent, and a notice is to be read.
constexpr std::chrono::seconds answerTime(2);
constexpr std::chrono::seconds readingTime(6);

} // namespace

KestrinApplication::KestrinApplication(Start start, UserDefaults &defaults, DeviceUses &deviceUses,
                                       LoginItem &loginItem, DesktopPermission &permission,
                                       InstalledApplications &installed)
    : m_start(start)
    , m_defaults(defaults)
    , m_deviceUses(deviceUses)
    , m_permission(permission)
    , m_installed(installed)
    , m_commands(loginItem, defaults)
    , m_engine(makeEngine()) {
    // For desktops that do not know the desktop file.
    QGuiApplication::setWindowIcon(KestrinIconMark::icon());
    QGuiApplication::setQuitOnLastWindowClosed(false);
    qApp->installEventFilter(this);
    m_end.setSingleShot(true);
    connect(&m_end, &QTimer::timeout, qApp, &QCoreApplication::quit);
}

KestrinApplication::~KestrinApplication() {
    // A window that is taken down is not one that somebody closed.
    if (m_window)
        m_window->window().disconnect(this);
    if (m_log)
        m_log->window().disconnect(this);
}

bool KestrinApplication::eventFilter(QObject *watched, QEvent *event) {
    // Windows are closed then too, by the session's end as well, and nobody is there to answer a question.
    if (event->type() == QEvent::Quit)
        m_isQuitting = true;
    return QObject::eventFilter(watched, event);
}

void KestrinApplication::protect(const QString &supportFolder, MacProtectionSurroundings surroundings) {
    m_firstStart.emplace(m_defaults, supportFolder);
    m_protection.emplace(m_defaults, m_deviceUses, std::move(surroundings), m_installed);
    connect(&m_protection->runtime, &MacProtectionRuntime::quitRequested, this, &KestrinApplication::tell);
    connect(&m_protection->runtime, &MacProtectionRuntime::scheduleSwitched, this,
            &KestrinApplication::tellSwitch);
    // These name files.
    const auto showVisibly = [this](const QString &sentence) { showSentence(visibleText(sentence)); };
    connect(&m_protection->runtime, &MacProtectionRuntime::fileSetAside, this, showVisibly);
    connect(&m_protection->runtime, &MacProtectionRuntime::storageFailed, this, showVisibly);
    connect(&m_protection->state, &MacProtectionState::sightHelpWanted, this, &KestrinApplication::helpSight);
    connect(&m_commands, &TrayCommands::storageFailed, this, showVisibly);
    connect(&m_commands, &TrayCommands::windowWanted, this, [this] { openWindow({}); });
    connect(&m_commands, &TrayCommands::logWanted, this, &KestrinApplication::openLog);
    connect(&m_protection->state, &MacProtectionState::logWanted, this, &KestrinApplication::openLog);
    connect(&m_commands, &TrayCommands::quitWanted, qApp, &QCoreApplication::quit, Qt::QueuedConnection);
    if (m_start == Start::withWindow) {
        openWindow({});
    } else {
        m_firstStart->putOff();
        m_protection->privacyMode.startRuntime();
        startLiveUse();
    }
    joinDesktop();
}

void KestrinApplication::joinDesktop() {
    connect(&m_instance, &RunningInstance::activated, this, &KestrinApplication::openWindow);
    const bool isReachable = m_instance.claim();
    m_commands.setReachable(isReachable);
    notices();
    connect(&m_trayHost.emplace(), &TrayHost::changed, this, &KestrinApplication::followTray);
    // Without a bus there is neither a tray nor a second start that would bring the window.
    if (m_start == Start::inBackground && !isReachable)
        openWindow({});
}

void KestrinApplication::openWindow(const QString &activationToken) {
    m_end.stop();
    m_closingQuestion.reset();
    if (m_window) {
        bringToFront(m_window->window(), activationToken);
        return;
    }
    m_window = std::make_unique<ProtectionWindow>(*m_engine, m_protection->state);
    QQuickWindow &window = m_window->window();
    connect(&window, &QWindow::visibleChanged, this, &KestrinApplication::takeWindowClosed);
    // Nobody waits for the window because of these.
    connect(&window, &QQuickWindow::frameSwapped, this, &KestrinApplication::startLiveUse,
            Qt::SingleShotConnection);
    if (m_firstStart->isDue())
        connect(&window, &QQuickWindow::frameSwapped, this, &KestrinApplication::explainFirstStart,
                Qt::SingleShotConnection);
    if (m_start == Start::inBackground)
        bringToFront(window, activationToken);
}

void KestrinApplication::startLiveUse() {
    if (m_useNotices)
        return;
    UseNotices &notices = m_useNotices.emplace(*m_protection);
    connect(&notices, &UseNotices::began, this, &KestrinApplication::tellBegun);
    connect(&notices, &UseNotices::goingOn, this, &KestrinApplication::tellGoingOn);
    m_protection->liveUse.start();
}

void KestrinApplication::explainFirstStart() {
    if (m_firstStart->begin())
        m_window->explainFirstStart(m_commands);
}

void KestrinApplication::takeWindowClosed() {
    if (m_window->window().isVisible() || m_isQuitting)
        return;
    if (!m_tray)
        endTelling();
    else if (m_commands.isAskedWhenClosed())
        m_closingQuestion = makeObject(*m_engine, u"MacClosingQuestion.qml"_s,
                                       {{u"commands"_s, QVariant::fromValue(&m_commands)}});
    else if (!m_commands.staysWhenClosed())
        QCoreApplication::quit();
}

void KestrinApplication::endTelling() {
    // Nothing is recorded any more, and its window is not to hide that.
    m_log.reset();
    using Fate = DesktopNotices::Fate;
    const auto told = [this](Fate fate) {
        if (fate != Fate::notShown)
            m_defaults.setBoolean(endToldKey, true);
        // Unless the window was wanted again meanwhile.
        if (m_end.isActive())
            m_end.start(fate == Fate::shownWhileWeRun ? readingTime : std::chrono::seconds(0));
    };
    if (m_defaults.boolean(endToldKey).value_or(false) || !notices().show(endSentence, {}, told))
        QCoreApplication::quit();
    else
        m_end.start(answerTime);
}

void KestrinApplication::openLog() {
    if (!m_log) {
        m_log = std::make_unique<LogWindow>(*m_engine, m_protection->runtime, m_installed, m_defaults);
        // It is closed from within.
        connect(&m_log->window(), &QWindow::visibleChanged, this, &KestrinApplication::closeLog,
                Qt::QueuedConnection);
        connect(&m_log->log(), &MacLog::fileDialogWanted, this, &KestrinApplication::offerFileDialog);
    }
    bringToFront(m_log->window(), {});
}

void KestrinApplication::offerFileDialog() {
    SaveDialog &dialog = m_saveDialog.emplace();
    MacLog &log = m_log->log();
    connect(&dialog, &SaveDialog::found, &log, &MacLog::setHasFileDialog);
    connect(&dialog, &SaveDialog::chosen, &log, &MacLog::fileChosen);
    connect(&log, &MacLog::fileWanted, &dialog,
            [this, &dialog](const QString &file) { dialog.open(file, m_log->window().winId()); });
    dialog.look();
}

void KestrinApplication::closeLog() {
    if (!m_log || m_log->window().isVisible())
        return;
    m_log.reset();
    // The lines that were shown leave when the event loop has time, and are the engine's garbage then.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    m_engine->collectGarbage();
    giveBackFreedMemory();
}

void KestrinApplication::followTray() {
    if (m_trayHost->isPresent())
        m_tray = makeObject(*m_engine, u"MacTray.qml"_s,
                            {{u"protection"_s, QVariant::fromValue(&m_protection->state)},
                             {u"commands"_s, QVariant::fromValue(&m_commands)}});
    else
        m_tray.reset();
    m_commands.setTray(m_tray != nullptr);
}

void KestrinApplication::tell(const MacProtectionEvent &event) {
    if (isLookedAt() || !m_notices || !m_quitNotices.isDue(event, std::chrono::steady_clock::now()))
        return;
    showSentence(shownMessage(event));
}

void KestrinApplication::tellSwitch(bool privacyModeOn, const QString &message) {
    showSentence(message, {privacyModeOn ? u"Keep it off"_s : u"Keep it on"_s,
                           [this, kept = !privacyModeOn](const QString &) {
                               m_protection->runtime.disableModesAgainst(kept);
                               m_protection->privacyMode.setOn(kept);
                           }});
}

void KestrinApplication::tellBegun(const DeviceUse &use) {
    const QString sentence = startedSentence(shownUse(use));
    if (m_useNotices->isUnknown(use))
        showSentence(sentence,
                     {u"Protect this app…"_s, [this, use](const QString &token) { protectApp(use, token); }});
    // The line above the page says it, and there is nothing to choose.
    else if (!isLookedAt())
        showSentence(sentence);
}

void KestrinApplication::tellGoingOn(const DeviceUse &use) {
    showSentence(goingOnSentence(shownUse(use)), {u"Ask again"_s, [this, use](const QString &) {
                                                      const QString answer = m_useNotices->askAgain(use);
                                                      if (!answer.isEmpty())
                                                          showSentence(answer);
                                                  }});
}

void KestrinApplication::protectApp(const DeviceUse &use, const QString &activationToken) {
    openWindow(activationToken);
    // Another notice may have led to it already.
    if (m_useNotices->isUnknown(use))
        m_window->protectApp(use.localizedName, use.bundleIdentifier.value_or(QString()),
                             m_useNotices->categoriesOf(use));
}

void KestrinApplication::helpSight() {
    if (m_protection->runtime.sight().help == Sight::Help::read) {
        showNotice(howToSee);
        return;
    }
    const DesktopPermission::Answer answer = m_permission.enable();
    m_protection->runtime.refreshSight();
    if (!m_protection->runtime.sight().isFull())
        showNotice(visibleText(answer.sentence));
}

void KestrinApplication::showNotice(const QString &text) {
    m_notice = makeObject(*m_engine, u"MacNotice.qml"_s, {{u"text"_s, text}});
}

DesktopNotices &KestrinApplication::notices() {
    if (!m_notices)
        connect(&m_notices.emplace(), &DesktopNotices::clicked, this, &KestrinApplication::openWindow);
    return *m_notices;
}

void KestrinApplication::showSentence(const QString &sentence, const DesktopNotices::Offer &offer) {
    if (!notices().show(sentence, offer) && m_tray)
        QMetaObject::invokeMethod(m_tray.get(), "showMessage", Q_ARG(QString, u"Kestrin"_s),
                                  Q_ARG(QString, sentence));
}

} // namespace kestrin::app
