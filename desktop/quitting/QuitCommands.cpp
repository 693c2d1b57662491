#include "desktop/quitting/QuitCommands.h"

#include "desktop/bus/OwnBusNames.h"
#include "desktop/bus/SessionBus.h"
#include "desktop/quitting/GtkQuit.h"
#include "desktop/quitting/QtQuit.h"
#include "desktop/quitting/TrayQuit.h"

#include <algorithm>
#include <array>
#include <memory>

namespace kestrin::desktop {

using namespace foundation;

namespace {

/// The conversation with one application, from its names to a command that it accepts.
class QuitConversation {
  public:
    QuitConversation(SessionBus &bus, const QuitTarget &target, std::chrono::milliseconds patience)
        : m_bus(bus)
        , m_target(target)
        , m_patience(patience)
        , m_start(std::chrono::steady_clock::now())
        , m_names(bus, target.process)
        , m_gtk(bus)
        , m_qt(bus)
        , m_tray(bus) {}

    bool reachesAcceptance();

  private:
    Deadline share(std::size_t count) const;
    bool acceptsWithin(std::size_t step);
    QuitProtocol *firstWithCommand(std::size_t step) const;
    bool isAcceptance(sd_bus_message *reply) const;

    SessionBus &m_bus;
    const QuitTarget &m_target;
    const std::chrono::milliseconds m_patience;
    const std::chrono::steady_clock::time_point m_start;
    OwnBusNames m_names;
    GtkQuit m_gtk;
    QtQuit m_qt;
    TrayQuit m_tray;
    /// In the order of preference, each a step.
    const std::array<QuitProtocol *, 3> m_protocols{&m_gtk, &m_qt, &m_tray};
    bool m_isAccepted = false;
};

/// The point in time by which so many of the steps' equal shares of the patience are used up.
Deadline QuitConversation::share(std::size_t count) const {
    const auto end = m_start + m_patience * static_cast<int>(count) / static_cast<int>(m_protocols.size());
    return Deadline(std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now()));
}

bool QuitConversation::reachesAcceptance() {
    if (!m_names.find(share(m_protocols.size())))
        return false;
    // What each of them needs to know is asked for at the same time.
    for (QuitProtocol *protocol : m_protocols)
        protocol->search(m_target, m_names);
    for (std::size_t step = 0; step < m_protocols.size(); ++step) {
        if (acceptsWithin(step))
            return true;
    }
    return false;
}

/// Waits for what the step is still looking for, and gives commands until one is accepted. A command of an
/// earlier step that was found or answered late counts too.
bool QuitConversation::acceptsWithin(std::size_t step) {
    const Deadline deadline = share(step + 1);
    const QuitProtocol &current = *m_protocols[step];
    do {
        const auto hasSomething = [&] {
            return m_isAccepted || firstWithCommand(step) || !current.isSearching();
        };
        m_bus.waitUntil(hasSomething, deadline);
        QuitProtocol *const offering = firstWithCommand(step);
        if (m_isAccepted || !offering)
            break;
        const auto isSettled = std::make_shared<bool>(false);
        const auto answered = [this, isSettled](sd_bus_message *reply) {
            m_isAccepted = m_isAccepted || isAcceptance(reply);
            *isSettled = true;
        };
        if (offering->takeCommand()(answered))
            m_bus.waitUntil([&] { return m_isAccepted || *isSettled; }, deadline);
    } while (!m_isAccepted && deadline.remaining().count() > 0);
    return m_isAccepted;
}

/// Null when none of the steps until this one has found a command that was not yet given.
QuitProtocol *QuitConversation::firstWithCommand(std::size_t step) const {
    const auto *const end = m_protocols.data() + step + 1;
    const auto *const found = std::find_if(
        m_protocols.data(), end, [](const QuitProtocol *protocol) { return protocol->hasCommand(); });
    return found == end ? nullptr : *found;
}

bool QuitConversation::isAcceptance(sd_bus_message *reply) const {
    // Some end before their answer is on its way.
    if (SessionBus::isError(reply))
        return m_bus.tellsOfLeaving(reply);
    // Some say in their answer whether they did it.
    int did = 1;
    if (sd_bus_message_has_signature(reply, "b") > 0)
        sd_bus_message_read_basic(reply, 'b', &did);
    return did != 0;
}

} // namespace

QuitTarget QuitTarget::of(const engine::WorkspaceApplication &application) {
    const QString executable = application.executablePath.value_or(QString());
    return {
        application.processIdentifier,
        {executable.sliced(executable.lastIndexOf(u'/') + 1), application.localizedName.value_or(QString())},
        {}};
}

bool acceptsQuitCommand(const QuitTarget &target, std::chrono::milliseconds patience) {
    const auto bus = SessionBus::connect();
    return bus && QuitConversation(*bus, target, patience).reachesAcceptance();
}

} // namespace kestrin::desktop
