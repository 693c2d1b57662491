// A connection to the user's message bus (D-Bus), whose members may be silent.
#pragma once

#include "foundation/Deadline.h"

#include <QByteArray>

#include <systemd/sd-bus.h>

#include <functional>
#include <list>
#include <memory>

namespace kestrin::desktop {

/// A method of an object of a member of the bus.
struct BusMethod {
    /// A unique name (":1.42") says exactly whom; another name never starts a service here.
    QByteArray destination;
    QByteArray path;
    QByteArray interface;
    const char *member;
};

/// A method of the bus itself.
inline BusMethod methodOfBus(const char *member) {
    return {"org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", member};
}

/// Owns the connection. Questions are asked without waiting, any number of them at once, and answered while
/// somebody waits with a deadline. Main thread only.
class SessionBus {
  public:
    /// With the reply, which may be an error and lasts as long as the call.
    using Answer = std::function<void(sd_bus_message *)>;
    using Writer = std::function<bool(sd_bus_message *)>;

    /// Begins to connect, which takes no time; null when there is no bus.
    static std::unique_ptr<SessionBus> connect();

    SessionBus(const SessionBus &) = delete;
    SessionBus &operator=(const SessionBus &) = delete;
    /// Unanswered questions stay so.
    ~SessionBus();

    /// `write` appends what is asked, and says whether it could. Whether it was sent: only then is `answer`
    /// called, once, at the earliest by waitUntil.
    bool callWith(const BusMethod &method, Answer answer, const Writer &write);
    /// `types` and what follows are those of sd_bus_message_append.
    template <typename... Arguments>
    bool call(const BusMethod &method, const Answer &answer, const char *types = "", Arguments... arguments) {
        return callWith(method, answer, [&](sd_bus_message *message) {
            return sd_bus_message_append(message, types, arguments...) >= 0;
        });
    }

    static bool isError(sd_bus_message *reply) { return sd_bus_message_is_method_error(reply, nullptr) != 0; }
    /// Whether whoever was asked left the bus instead of answering.
    bool tellsOfLeaving(sd_bus_message *reply) const;

    /// Whenever a signal comes that fits, such as "type='signal',member='Changed'", `heard` is called with
    /// it. Whether that was asked of the bus.
    bool hear(const QByteArray &rule, Answer heard);

    /// Hands out answers and signals as they come. False when that was not enough by the deadline, or the bus
    /// has gone.
    bool waitUntil(const std::function<bool()> &isDone, const foundation::Deadline &deadline);
    /// Hands out some of what is there, without waiting. False when the bus has gone.
    bool handOut();
    /// Whether something is here that was not handed out.
    bool hasMore() const;
    /// Readable when more has arrived.
    int descriptor() const { return sd_bus_get_fd(m_bus); }

  private:
    struct Unref {
        void operator()(sd_bus_message *message) const { sd_bus_message_unref(message); }
    };
    using Message = std::unique_ptr<sd_bus_message, Unref>;
    struct Pending {
        SessionBus *bus;
        Answer answer;
        std::list<Pending>::iterator self;
    };

    explicit SessionBus(sd_bus *bus) : m_bus(bus) {}

    Message newCall(const BusMethod &method);
    bool send(sd_bus_message *message, Answer answer);
    static int answered(sd_bus_message *reply, void *pending, sd_bus_error *error);
    static int heard(sd_bus_message *signal, void *answer, sd_bus_error *error);

    sd_bus *m_bus;
    std::list<Pending> m_pending;
    std::list<Answer> m_listeners;
};

} // namespace kestrin::desktop
