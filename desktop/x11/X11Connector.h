// Getting hold of an X server without getting stuck at it.
#pragma once

#include "desktop/x11/X11Connection.h"

#include <QByteArray>

#include <chrono>
#include <memory>

namespace kestrin::desktop {

/// Connects to one display. A server that accepts a connection and then says nothing would block xcb forever,
/// so the attempt is made on a thread of its own, which is left behind when it takes too long. The next calls
/// do not wait for it again, and use its late success. Main thread only.
class X11Connector {
  public:
    /// `display` names the X display, "" the one in the environment (DISPLAY).
    explicit X11Connector(const QByteArray &display) : m_display(display) {}

    /// A new connection; none when there is no such display, or no answer by the deadline.
    std::unique_ptr<X11Connection> connect(const foundation::Deadline &deadline);

  private:
    struct Attempt;

    void begin();

    QByteArray m_display;
    /// Present while its thread has not answered.
    std::shared_ptr<Attempt> m_attempt;
    /// For it, in vain.
    std::chrono::milliseconds m_waited{};
};

} // namespace kestrin::desktop
