#pragma once

#include "cli/Output.h"
#include "cli/TerminalText.h"
#include "engine/MacProtectionEvent.h"
#include "runtime/LogFormat.h"

namespace kestrin::cli {

/// One event, in the colours of the palette where it is for people.
QByteArray lineOf(const engine::MacProtectionEvent &event, runtime::LogFormat format, const Palette &palette);

/// Prints events as they come. Nothing is printed any more once the reader has gone, and the event loop ends
/// then.
class EventPrinter {
  public:
    EventPrinter(Output &out, const Palette &palette, runtime::LogFormat format)
        : m_out(out)
        , m_palette(palette)
        , m_format(format) {}

    void print(const QList<engine::MacProtectionEvent> &events);

  private:
    Output &m_out;
    const Palette m_palette;
    const runtime::LogFormat m_format;
};

} // namespace kestrin::cli
