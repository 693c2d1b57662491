#include "desktop/bus/OwnBusNames.h"

#include "desktop/bus/BusValues.h"

namespace kestrin::desktop {

using namespace foundation;

bool OwnBusNames::find(const Deadline &deadline) {
    m_questions.ask(methodOfBus("ListNames"),
                    [this](sd_bus_message *reply) { m_allNames = readTexts(reply); });
    if (!m_questions.waitForAll(deadline))
        return false;
    for (const QByteArray &name : std::as_const(m_allNames)) {
        if (name.startsWith(':'))
            askForProcess(name);
    }
    if (!m_questions.waitForAll(deadline) || m_uniqueNames.isEmpty())
        return false;
    for (const QByteArray &name : std::as_const(m_allNames)) {
        if (!name.startsWith(':'))
            askForOwner(name);
    }
    return m_questions.waitForAll(deadline);
}

void OwnBusNames::askForProcess(const QByteArray &uniqueName) {
    const auto answered = [this, uniqueName](sd_bus_message *reply) {
        quint32 process = 0;
        if (sd_bus_message_read_basic(reply, 'u', &process) > 0 && process == static_cast<quint32>(m_process))
            m_uniqueNames.append(uniqueName);
    };
    m_questions.ask(methodOfBus("GetConnectionUnixProcessID"), answered, "s", uniqueName.constData());
}

void OwnBusNames::askForOwner(const QByteArray &name) {
    const auto answered = [this, name](sd_bus_message *reply) { m_owners.insert(name, readText(reply)); };
    m_questions.ask(methodOfBus("GetNameOwner"), answered, "s", name.constData());
}

QHash<QByteArray, QByteArray> OwnBusNames::wellKnownNames() const {
    QHash<QByteArray, QByteArray> own = m_owners;
    own.removeIf([this](const auto &name) { return !m_uniqueNames.contains(name.value()); });
    return own;
}

QByteArray OwnBusNames::ownerIfOwn(const QByteArray &name) const {
    const QByteArray owner = name.startsWith(':') ? name : m_owners.value(name);
    return m_uniqueNames.contains(owner) ? owner : QByteArray();
}

} // namespace kestrin::desktop
