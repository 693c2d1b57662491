#pragma once

#include "cli/Output.h"
#include "cli/TerminationSignals.h"

namespace kestrin::cli {

/// The event loop of a call that goes on until somebody ends it: a signal, or the reader of its output who
/// went away. One at a time.
class UntilEnded {
  public:
    explicit UntilEnded(Output &out);

    void end();
    /// Returns at once when it was ended before, or when what was written cannot be handed over.
    void run();

  private:
    Output &m_out;
    bool m_isEnded = false;
    TerminationSignals m_signals;
    /// A pipe whose reader has gone says so at once; without this it would be noticed at the next event.
    QSocketNotifier m_readerLeft;
};

} // namespace kestrin::cli
