#pragma once

#include "desktop/live/UseSource.h"

#include <memory>

namespace kestrin::desktop {

class SocketWatch;

/// Who listens to the microphones of this user's PulseAudio server. Where PipeWire serves PulseAudio's
/// clients it tells of them itself, and more; then this is open without a connection, until another server
/// comes. Servers on other machines are none of ours.
class PulseUses final : public UseSource {
    Q_OBJECT

  public:
    PulseUses();
    ~PulseUses() override;

    bool open(const foundation::Deadline &deadline) override;
    bool isOpen() const override { return m_isOpen; }
    void close() override;
    std::optional<QList<SourceUse>> uses(const foundation::Deadline &deadline) override;
    engine::Sight sight() override;
    bool isSoundServer() const override { return m_connection != nullptr || m_lacksLibrary; }

  private:
    class Connection;

    bool connectTo(const QByteArray &socket);
    void watch();
    void hear();

    /// Also while it is not open, to a server that has not answered yet.
    std::unique_ptr<Connection> m_connection;
    /// While it is not connected but is to be.
    std::unique_ptr<SocketWatch> m_watch;
    bool m_isOpen = false;
    bool m_lacksLibrary = false;
};

} // namespace kestrin::desktop
