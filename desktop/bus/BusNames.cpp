#include "desktop/bus/BusNames.h"

#include "desktop/bus/BusQuestions.h"
#include "desktop/bus/BusValues.h"

namespace kestrin::desktop {

using namespace foundation;

BusNames BusNames::all(const Deadline &deadline) {
    BusNames result;
    QList<QByteArray> names;
    const auto bus = SessionBus::connect();
    if (!bus)
        return result;
    BusQuestions questions(*bus);
    questions.ask(methodOfBus("ListNames"), [&names](sd_bus_message *reply) { names = readTexts(reply); });
    questions.waitForAll(deadline);
    for (const QByteArray &name : std::as_const(names)) {
        if (name.startsWith(':'))
            continue;
        const auto answered = [&result, name](sd_bus_message *reply) {
            quint32 process = 0;
            if (sd_bus_message_read_basic(reply, 'u', &process) > 0)
                result.m_names.insert(static_cast<qint32>(process), QString::fromUtf8(name));
        };
        questions.ask(methodOfBus("GetConnectionUnixProcessID"), answered, "s", name.constData());
    }
    questions.waitForAll(deadline);
    return result;
}

QHash<QString, qint32> BusNames::owners(const QStringList &names, const Deadline &deadline) {
    QHash<QString, qint32> owners;
    const auto bus = names.isEmpty() ? nullptr : SessionBus::connect();
    if (!bus)
        return owners;
    BusQuestions questions(*bus);
    for (const QString &name : names) {
        const auto answered = [&owners, name](sd_bus_message *reply) {
            quint32 process = 0;
            if (sd_bus_message_read_basic(reply, 'u', &process) > 0)
                owners.insert(name, static_cast<qint32>(process));
        };
        questions.ask(methodOfBus("GetConnectionUnixProcessID"), answered, "s", name.toLatin1().constData());
    }
    questions.waitForAll(deadline);
    return owners;
}

QStringList BusNames::of(qint32 process) const {
    QStringList names = m_names.values(process);
    names.sort();
    return names;
}

} // namespace kestrin::desktop
