#include "desktop/bus/SessionBus.h"

#include <cerrno>
#include <cstdint>

namespace kestrin::desktop {

using namespace foundation;

std::unique_ptr<SessionBus> SessionBus::connect() {
    sd_bus *bus = nullptr;
    if (sd_bus_open_user(&bus) < 0)
        return nullptr;
    return std::unique_ptr<SessionBus>(new SessionBus(bus));
}

SessionBus::~SessionBus() {
    // Not flushed: that could wait for the bus without end.
    sd_bus_close(m_bus);
    sd_bus_unref(m_bus);
}

bool SessionBus::callWith(const BusMethod &method, Answer answer, const Writer &write) {
    const Message message = newCall(method);
    return message && write(message.get()) && send(message.get(), std::move(answer));
}

SessionBus::Message SessionBus::newCall(const BusMethod &method) {
    sd_bus_message *message = nullptr;
    if (sd_bus_message_new_method_call(m_bus, &message, method.destination.constData(),
                                       method.path.constData(), method.interface.constData(),
                                       method.member) < 0)
        return nullptr;
    Message owned(message);
    return sd_bus_message_set_auto_start(message, 0) < 0 ? nullptr : std::move(owned);
}

bool SessionBus::send(sd_bus_message *message, Answer answer) {
    const auto pending = m_pending.insert(m_pending.end(), {this, std::move(answer), {}});
    pending->self = pending;
    // Patience is a matter of whoever waits.
    constexpr std::uint64_t forever = UINT64_MAX;
    if (sd_bus_call_async(m_bus, nullptr, message, answered, &*pending, forever) >= 0)
        return true;
    m_pending.erase(pending);
    return false;
}

int SessionBus::answered(sd_bus_message *reply, void *pending, sd_bus_error * /*error*/) {
    auto *const question = static_cast<Pending *>(pending);
    const Answer answer = std::move(question->answer);
    question->bus->m_pending.erase(question->self);
    answer(reply);
    return 0;
}

bool SessionBus::hear(const QByteArray &rule, Answer answer) {
    m_listeners.push_back(std::move(answer));
    return sd_bus_add_match_async(m_bus, nullptr, rule.constData(), heard, nullptr, &m_listeners.back()) >= 0;
}

int SessionBus::heard(sd_bus_message *signal, void *answer, sd_bus_error * /*error*/) {
    (*static_cast<const Answer *>(answer))(signal);
    return 0;
}

bool SessionBus::tellsOfLeaving(sd_bus_message *reply) const {
    // As nothing here gives up waiting, this error comes from the bus; or from sd-bus when the bus has gone.
    return sd_bus_is_open(m_bus) > 0 && sd_bus_message_is_method_error(reply, SD_BUS_ERROR_NO_REPLY) > 0;
}

bool SessionBus::waitUntil(const std::function<bool()> &isDone, const Deadline &deadline) {
    while (!isDone()) {
        const std::chrono::microseconds remaining = deadline.remaining();
        if (remaining.count() == 0)
            return false;
        const int processed = sd_bus_process(m_bus, nullptr);
        if (processed < 0)
            return false;
        if (processed > 0)
            continue;
        const int waited = sd_bus_wait(m_bus, static_cast<std::uint64_t>(remaining.count()));
        if (waited < 0 && waited != -EINTR)
            return false;
    }
    return true;
}

bool SessionBus::handOut() {
    // Whoever floods the bus does not get hold of the event loop.
    for (int left = 100; left > 0; --left) {
        const int processed = sd_bus_process(m_bus, nullptr);
        if (processed < 0 || sd_bus_is_open(m_bus) <= 0)
            return false;
        if (processed == 0)
            break;
    }
    return true;
}

bool SessionBus::hasMore() const {
    std::uint64_t due = 0;
    return sd_bus_get_timeout(m_bus, &due) > 0 && due == 0;
}

} // namespace kestrin::desktop
