#include "desktop/wayland/WaylandWindowSource.h"

#include "desktop/wayland/WaylandConnection.h"

#include <QHash>

#include <wayland-client-core.h>

#include <algorithm>
#include <utility>

namespace kestrin::desktop {

using namespace foundation;

namespace {

constexpr std::size_t maximumWindows = 2000;
constexpr std::size_t maximumText = 1024;

} // namespace

QString waylandText(const wl_argument &argument) {
    return argument.s
               ? QString::fromUtf8(argument.s, static_cast<qsizetype>(qstrnlen(argument.s, maximumText)))
               : QString();
}

WaylandWindowSource::WaylandWindowSource(const QByteArray &display) : m_display(display) {}

WaylandWindowSource::~WaylandWindowSource() {
    drop();
}

bool WaylandWindowSource::isOpen() const {
    return m_manager && !m_hasEnded && !m_connection->isBroken();
}

/// Without a farewell: the objects go with the connection.
void WaylandWindowSource::drop() {
    for (const Followed &followed : m_windows)
        wl_proxy_destroy(followed.object);
    m_windows.clear();
    if (m_manager)
        wl_proxy_destroy(std::exchange(m_manager, nullptr));
    m_connection.reset();
    m_hasEnded = m_hasAsked = m_isBehind = m_willTellChange = false;
    ++m_conversation;
}

bool WaylandWindowSource::open(const Deadline &deadline) {
    if (isOpen())
        return true;
    const bool isKept = m_connection && !m_manager && !m_connection->isBroken();
    if (!isKept && !connect())
        return false;
    m_manager = bindManager(*m_connection, deadline);
    if (!m_manager) {
        if (!asksAgainInTheSameConversation())
            drop();
        return false;
    }
    wl_proxy_add_dispatcher(m_manager, managerSaid, this, nullptr);
    begun();
    return true;
}

bool WaylandWindowSource::connect() {
    drop();
    m_connection = WaylandConnection::connect(waylandSocketPath(m_display));
    if (!m_connection)
        return false;
    QObject::connect(m_connection.get(), &WaylandConnection::spoke, this, [this] {
        if (m_manager && !isOpen())
            noteLoss();
        else if (m_isBehind)
            noteChange();
    });
    return true;
}

std::optional<QList<SourceWindow>> WaylandWindowSource::windows(const Deadline &deadline) {
    if (!m_manager)
        return std::nullopt;
    m_hasAsked = true;
    // What was announced by the end of the first trip may be asked for in the second, and complete then.
    bool isAnswered = isOpen() && m_connection->roundTrip(deadline);
    for (int trip = 0; isAnswered && trip < 2 && !areComplete(); ++trip)
        isAnswered = m_connection->roundTrip(deadline);
    if (!isOpen())
        noteLoss();
    // Whoever did not get an answer asks again as soon as there is one.
    if (std::exchange(m_isBehind, !isAnswered) && isAnswered)
        noteChange();
    if (!isAnswered || !isOpen())
        return std::nullopt;
    QList<SourceWindow> windows;
    for (const Followed &followed : m_windows) {
        if (followed.isComplete)
            windows.append(followed.told);
    }
    return windows;
}

bool WaylandWindowSource::close(const QList<SourceWindow> &windows, const Deadline &deadline) {
    if (!isOpen())
        return false;
    bool isAsked = false;
    for (const Followed &followed : m_windows) {
        const auto isIt = [&followed](const SourceWindow &window) { return window.id == followed.told.id; };
        if (std::any_of(windows.cbegin(), windows.cend(), isIt)) {
            askToClose(followed.object);
            isAsked = true;
        }
    }
    // Only then is it certain that somebody has read the requests.
    const bool isDelivered = isAsked && m_connection->roundTrip(deadline);
    if (!isOpen())
        noteLoss();
    return isDelivered;
}

bool WaylandWindowSource::canFollow(const QByteArray &name) const {
    const auto hasName = [&name](const Followed &followed) { return followed.name == name; };
    return m_windows.size() < maximumWindows &&
           (name.isEmpty() || std::none_of(m_windows.cbegin(), m_windows.cend(), hasName));
}

void WaylandWindowSource::follow(wl_proxy *window, const QByteArray &name) {
    if (!window)
        return;
    if (!canFollow(name)) {
        letGo(window);
        return;
    }
    SourceWindow facts;
    facts.id = ++m_lastId;
    Followed &followed = m_windows.emplace_back(Followed{this, window, name, facts, facts});
    wl_proxy_add_dispatcher(window, windowSaid, &followed, nullptr);
}

// By the names of the events and not by a table of functions: whoever described the protocol may know of more
// of them than we do, and libwayland aborts where a compositor sends one that nobody has a function for.
int WaylandWindowSource::managerSaid(const void *source, void *object, unsigned /*opcode*/,
                                     const wl_message *message, wl_argument *arguments) {
    auto *const self = const_cast<WaylandWindowSource *>(static_cast<const WaylandWindowSource *>(source));
    self->takeManagerEvent(static_cast<wl_proxy *>(object), message->name, arguments);
    return 0;
}

int WaylandWindowSource::windowSaid(const void *followed, void * /*object*/, unsigned /*opcode*/,
                                    const wl_message *message, wl_argument *arguments) {
    auto &window = *const_cast<Followed *>(static_cast<const Followed *>(followed));
    window.source->take(window, window.source->takeWindowEvent(message->name, arguments, window.next));
    return 0;
}

void WaylandWindowSource::take(Followed &followed, WindowNews news) {
    if (news == WindowNews::gone) {
        const bool wasTold = followed.isComplete;
        letGo(followed.object);
        m_windows.remove_if([&followed](const Followed &other) { return &other == &followed; });
        if (wasTold)
            noteChange();
        return;
    }
    const bool counts = news == WindowNews::complete || (news == WindowNews::fact && followed.isComplete);
    if (!counts || (followed.isComplete && followed.told == followed.next))
        return;
    followed.told = followed.next;
    followed.isComplete = true;
    noteChange();
}

bool WaylandWindowSource::areComplete() const {
    return std::all_of(m_windows.cbegin(), m_windows.cend(),
                       [](const Followed &followed) { return followed.isComplete; });
}

void WaylandWindowSource::noteChange() {
    if (!m_hasAsked || std::exchange(m_willTellChange, true))
        return;
    const auto tell = [this, conversation = m_conversation] {
        if (conversation != m_conversation)
            return;
        m_willTellChange = false;
        Q_EMIT changed();
    };
    QMetaObject::invokeMethod(this, tell, Qt::QueuedConnection);
}

void WaylandWindowSource::noteLoss() {
    const auto tell = [this, conversation = m_conversation] {
        if (conversation != m_conversation)
            return;
        drop();
        Q_EMIT lost();
    };
    QMetaObject::invokeMethod(this, tell, Qt::QueuedConnection);
}

} // namespace kestrin::desktop
