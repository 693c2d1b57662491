#pragma once

#include "desktop/bus/BusQuestions.h"
#include "desktop/bus/OwnBusNames.h"
#include "desktop/quitting/QuitCommands.h"

#include <functional>
#include <utility>

namespace kestrin::desktop {

/// Sends a command to quit. Whether it could: only then is what it is given called with the answer.
using QuitCommand = std::function<bool(SessionBus::Answer)>;

/// One way in which applications offer their own Quit on the bus. Outlives its questions and commands.
class QuitProtocol {
  public:
    explicit QuitProtocol(SessionBus &bus) : m_bus(bus), m_questions(bus) {}
    QuitProtocol(const QuitProtocol &) = delete;
    QuitProtocol &operator=(const QuitProtocol &) = delete;
    virtual ~QuitProtocol() = default;

    /// Begins to ask the application for what it offers; the answers arrive while somebody waits for the bus.
    /// Both arguments outlive the protocol. Only the process's own objects may be asked to quit.
    virtual void search(const QuitTarget &target, const OwnBusNames &names) = 0;

    bool isSearching() const { return !m_questions.areAnswered(); }
    bool hasCommand() const { return !m_commands.isEmpty(); }
    /// The best command that was found and not yet taken; there is one.
    QuitCommand takeCommand() { return m_commands.takeFirst(); }

  protected:
    template <typename... Arguments>
    void ask(const BusMethod &method, SessionBus::Answer answer, const char *types = "",
             Arguments... arguments) {
        m_questions.ask(method, std::move(answer), types, arguments...);
    }
    template <typename... Arguments>
    void offer(const BusMethod &method, const char *types = "", Arguments... arguments) {
        m_commands.append([=, this](const SessionBus::Answer &answer) {
            return m_bus.call(method, answer, types, arguments...);
        });
    }

  private:
    SessionBus &m_bus;
    BusQuestions m_questions;
    QList<QuitCommand> m_commands;
};

} // namespace kestrin::desktop
