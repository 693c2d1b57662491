#pragma once

#include "desktop/live/UseSource.h"

#include <memory>

class QSocketNotifier;

namespace kestrin::desktop {

class SocketWatch;

/// Who reads from the microphones, cameras and screen casts of this user's PipeWire server, PulseAudio's
/// clients included where it serves them. It follows the server's list of objects, from the event loop and
/// without a thread.
class PipeWireUses final : public UseSource {
    Q_OBJECT

  public:
    PipeWireUses();
    ~PipeWireUses() override;

    bool open(const foundation::Deadline &deadline) override;
    bool isOpen() const override { return m_isOpen; }
    void close() override;
    std::optional<QList<SourceUse>> uses(const foundation::Deadline &deadline) override;
    engine::Sight sight() override;
    bool isSoundServer() const override;

  private:
    class Connection;

    bool connectToServer();
    void watch();
    void listen();
    void hear();
    void disconnectFromServer();

    /// Also while it is not open, to a server that has not answered yet.
    std::unique_ptr<Connection> m_connection;
    QSocketNotifier *m_notifier = nullptr;
    /// While it is not open but is to be.
    std::unique_ptr<SocketWatch> m_watch;
    bool m_isOpen = false;
    bool m_lacksLibrary = false;
};

} // namespace kestrin::desktop
