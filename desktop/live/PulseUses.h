#pragma once

#include "desktop/live/UseSource.h"

#include <memory>

namespace kestrin::desktop {

class SocketWatch;

/// Who listens to the microphones of this user's PulseAudio server. It does not open where PipeWire serves
/// PulseAudio's clients, because PipeWire tells more about them. Not of servers on other machines.
class PulseUses final : public UseSource {
    Q_OBJECT

  public:
    PulseUses();
    ~PulseUses() override;

    bool open(const foundation::Deadline &deadline) override;
    bool isOpen() const override { return m_isOpen; }
    void close() override;
    std::optional<QList<SourceUse>> uses(const foundation::Deadline &deadline) override;

  private:
    class Connection;

    void watch();
    void hear();

    /// Also while it is not open, to a server that has not answered yet.
    std::unique_ptr<Connection> m_connection;
    /// While it is not open but is to be.
    std::unique_ptr<SocketWatch> m_watch;
    bool m_isOpen = false;
};

} // namespace kestrin::desktop
