#pragma once

#include <QSocketNotifier>

#include <array>
#include <csignal>

namespace kestrin::cli {

/// Turns SIGINT, SIGTERM and SIGHUP into a Qt signal on the main thread, for as long as the object lives. One
/// object at a time. A SIGHUP that was ignored when the process started (nohup) stays ignored.
class TerminationSignals : public QObject {
    Q_OBJECT

  public:
    TerminationSignals();
    ~TerminationSignals() override;

    /// Becomes readable, and stays so, when one of them has come; -1 while there is no object.
    static int descriptor();

  Q_SIGNALS:
    void received();

  private:
    /// A handler may do next to nothing, but it may write to a pipe, which wakes the event loop.
    int m_pipe[2] = {-1, -1};
    QSocketNotifier m_notifier;
};

/// While it lives these signals end nothing; one that has come takes effect when it is gone.
class HeldBackSignals {
  public:
    HeldBackSignals();
    HeldBackSignals(const HeldBackSignals &) = delete;
    HeldBackSignals &operator=(const HeldBackSignals &) = delete;
    ~HeldBackSignals();

  private:
    std::array<struct sigaction, 3> m_before{};
};

} // namespace kestrin::cli
