#include "desktop/sway/SwayWindows.h"

#include "desktop/sway/SwayTree.h"
#include "desktop/wayland/WaylandConnection.h"

#include <QSocketNotifier>

#include <utility>

namespace kestrin::desktop {

using namespace foundation;

using Message = SwayConnection::Message;

SwayWindows::SwayWindows(const QByteArray &path)
    : m_path(path)
    , m_connection([this](const QByteArray &event) { m_hasNews = mayBeSwayLaunch(event) || m_hasNews; }) {}

SwayWindows::~SwayWindows() {
    dropNotifier();
}

bool SwayWindows::open(const Deadline &deadline) {
    if (m_connection.isOpen())
        return true;
    if (!m_connection.open(m_path))
        return false;
    // What this session inherited from another one, in which it runs, is left to that.
    if (!mayBeCompositorHere(m_connection.server())) {
        m_connection.close();
        return false;
    }
    m_hasNews = false;
    // The events come first, so that nothing happens between the windows and them.
    const auto answer = m_connection.ask(Message::subscribe, R"(["window"])", deadline);
    if (!answer)
        return false;
    dropNotifier();
    m_notifier = new QSocketNotifier(m_connection.descriptor(), QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, &SwayWindows::takeEvents);
    return true;
}

std::optional<QByteArray> SwayWindows::ask(Message message, const QByteArray &payload,
                                           const Deadline &deadline) {
    auto answer = m_connection.ask(message, payload, deadline);
    // What came along with the answer is behind us, and no socket tells of it any more.
    if (m_hasNews)
        QMetaObject::invokeMethod(this, &SwayWindows::tellNews, Qt::QueuedConnection);
    if (!answer && m_notifier) {
        // Its socket is closed, and the number of it may soon be another one's.
        m_notifier->setEnabled(false);
        QMetaObject::invokeMethod(this, &SwayWindows::endIfLost, Qt::QueuedConnection);
    }
    return answer;
}

std::optional<QList<SourceWindow>> SwayWindows::windows(const Deadline &deadline) {
    const auto tree = ask(Message::getTree, {}, deadline);
    return tree ? windowsOfSwayTree(*tree) : std::nullopt;
}

bool SwayWindows::close(const QList<SourceWindow> &windows, const Deadline &deadline) {
    QByteArray commands;
    for (const SourceWindow &window : windows)
        commands += "[con_id=" + QByteArray::number(window.id) + "] kill;";
    const auto answer = ask(Message::runCommand, commands, deadline);
    return answer && isSwayCommandDone(*answer);
}

void SwayWindows::takeEvents() {
    m_connection.takeEvents();
    tellNews();
    endIfLost();
}

void SwayWindows::tellNews() {
    if (std::exchange(m_hasNews, false))
        Q_EMIT changed();
}

void SwayWindows::dropNotifier() {
    if (!m_notifier)
        return;
    // Perhaps in the middle of its own signal.
    m_notifier->setEnabled(false);
    std::exchange(m_notifier, nullptr)->deleteLater();
}

void SwayWindows::endIfLost() {
    if (m_connection.isOpen() || !m_notifier)
        return;
    dropNotifier();
    // Sway hangs up on whoever is slow to read, so that a flood of windows would leave us deaf.
    const qint32 sway = m_connection.server();
    if (m_connection.wasHungUp() && open(Deadline(desktopPatience)) && m_connection.server() == sway)
        Q_EMIT changed();
    else
        Q_EMIT lost();
}

} // namespace kestrin::desktop
