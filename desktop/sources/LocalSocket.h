#pragma once

#include <QByteArray>

namespace kestrin::desktop {

/// A connection to a socket of this machine, which never waits. Closed with the object.
class LocalSocket {
  public:
    LocalSocket() = default;
    LocalSocket(const LocalSocket &) = delete;
    LocalSocket &operator=(const LocalSocket &) = delete;
    ~LocalSocket() { close(); }

    /// Closes the connection that there is. False when nobody listens at this path, or whoever does has not
    /// taken a call for long.
    bool connect(const QByteArray &path);
    void close();
    bool isConnected() const { return m_descriptor >= 0; }
    int descriptor() const { return m_descriptor; }
    /// Whoever gets it closes it.
    int handOn();

    /// The process that listens there; 0 when it cannot be told.
    qint32 server() const;
    /// The path that it gave to the socket itself.
    QByteArray address() const;

  private:
    int m_descriptor = -1;
};

} // namespace kestrin::desktop
