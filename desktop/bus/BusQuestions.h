#pragma once

#include "desktop/bus/SessionBus.h"

#include <utility>

namespace kestrin::desktop {

/// Questions to members of the bus that belong together: all may be under way at once, and whoever waits
/// wants to know when the last one is answered. Outlives its questions.
class BusQuestions {
  public:
    explicit BusQuestions(SessionBus &bus) : m_bus(bus) {}

    /// As SessionBus::call does it. An error is an answer that tells nothing, and not handed on.
    template <typename... Arguments>
    void ask(const BusMethod &method, SessionBus::Answer answer, const char *types = "",
             Arguments... arguments) {
        const auto answered = [this, answer = std::move(answer)](sd_bus_message *reply) {
            if (!SessionBus::isError(reply))
                answer(reply);
            --m_open;
        };
        if (m_bus.call(method, answered, types, arguments...))
            ++m_open;
    }

    bool areAnswered() const { return m_open == 0; }
    bool waitForAll(const foundation::Deadline &deadline) {
        return m_bus.waitUntil([this] { return areAnswered(); }, deadline);
    }

  private:
    SessionBus &m_bus;
    int m_open = 0;
};

} // namespace kestrin::desktop
