#include "desktop/gnome/ShellConversation.h"

#include "desktop/bus/BusValues.h"
#include "desktop/wayland/WaylandConnection.h"

#include <optional>
#include <utility>

namespace kestrin::desktop {

using namespace foundation;

bool ShellConversation::open(const QList<QByteArray> &names, const Deadline &deadline) {
    close();
    m_bus = SessionBus::connect();
    if (!m_bus)
        return false;
    for (const QByteArray &name : names) {
        // Before the question, so that no change comes between the two.
        m_bus->hear("type='signal',sender='org.freedesktop.DBus',member='NameOwnerChanged',arg0='" + name +
                        '\'',
                    [this](sd_bus_message * /*signal*/) { tellSoon(m_hasLeft); });
        const QByteArray owner = ownerOf(name, deadline);
        if (!m_bus)
            return false;
        if (owner.isEmpty() || (!m_owner.isEmpty() && owner != m_owner)) {
            close();
            return false;
        }
        m_owner = owner;
    }
    if (!isOwnerHere(deadline)) {
        close();
        return false;
    }
    m_readable = std::make_unique<QSocketNotifier>(m_bus->descriptor(), QSocketNotifier::Read);
    connect(m_readable.get(), &QSocketNotifier::activated, this, &ShellConversation::handOut);
    return true;
}

QByteArray ShellConversation::ownerOf(const QByteArray &name, const Deadline &deadline) {
    QByteArray owner;
    askMember(
        methodOfBus("GetNameOwner"), deadline, [&owner](sd_bus_message *reply) { owner = readText(reply); },
        [&name](sd_bus_message *message) {
            return sd_bus_message_append(message, "s", name.constData()) >= 0;
        });
    return owner;
}

bool ShellConversation::isOwnerHere(const Deadline &deadline) {
    quint32 process = 0;
    const auto read = [&process](sd_bus_message *reply) { sd_bus_message_read_basic(reply, 'u', &process); };
    const auto write = [this](sd_bus_message *message) {
        return sd_bus_message_append(message, "s", m_owner.constData()) >= 0;
    };
    return askMember(methodOfBus("GetConnectionUnixProcessID"), deadline, read, write) &&
           mayBeCompositorHere(static_cast<qint32>(process));
}

bool ShellConversation::ask(const ShellMethod &method, const Deadline &deadline, const Reader &read,
                            const Writer &write) {
    if (!m_bus)
        return false;
    const bool isAnswered =
        askMember({m_owner, method.path, method.interface, method.member}, deadline, read, write);
    if (!m_bus)
        giveUp();
    return isAnswered;
}

bool ShellConversation::askMember(const BusMethod &method, const Deadline &deadline, const Reader &read,
                                  const Writer &write) {
    std::optional<bool> answer;
    const auto answered = [&answer, &read](sd_bus_message *reply) {
        answer = !SessionBus::isError(reply);
        if (*answer)
            read(reply);
    };
    if (m_bus->callWith(method, answered, write))
        m_bus->waitUntil([&answer] { return answer.has_value(); }, deadline);
    lookSoonForMore();
    // Takes the question along, which knows what is here.
    if (!answer)
        close();
    return answer.value_or(false);
}

void ShellConversation::close() {
    m_readable.reset();
    m_bus.reset();
    m_owner.clear();
    m_isFollowed = m_hasTold = m_hasLeft = false;
}

void ShellConversation::giveUp() {
    close();
    tellSoon(m_hasLeft);
}

void ShellConversation::hear(const QByteArray &interfaceName) {
    m_bus->hear("type='signal',sender='" + m_owner + "',interface='" + interfaceName + '\'',
                [this](sd_bus_message * /*signal*/) { tellSoon(m_hasTold); });
}

void ShellConversation::handOut() {
    if (!m_bus)
        return;
    if (!m_bus->handOut())
        tellSoon(m_hasLeft);
    else
        lookSoonForMore();
}

/// What arrived together with an answer wakes nobody up.
void ShellConversation::lookSoonForMore() {
    if (m_bus->hasMore())
        QMetaObject::invokeMethod(this, &ShellConversation::handOut, Qt::QueuedConnection);
}

void ShellConversation::tellSoon(bool &what) {
    what = true;
    QMetaObject::invokeMethod(this, &ShellConversation::tell, Qt::QueuedConnection);
}

void ShellConversation::tell() {
    const bool hasTold = std::exchange(m_hasTold, false);
    if (m_hasLeft) {
        close();
        Q_EMIT left();
    } else if (hasTold && m_isFollowed) {
        Q_EMIT told();
    }
}

} // namespace kestrin::desktop
