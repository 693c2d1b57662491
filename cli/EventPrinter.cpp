#include "cli/EventPrinter.h"

#include "cli/HumanOutput.h"

#include <QCoreApplication>

namespace kestrin::cli {

using namespace engine;
using namespace runtime;

QByteArray lineOf(const MacProtectionEvent &event, LogFormat format, const Palette &palette) {
    return runtime::lineOf(event, format, paintOf(event.kind, palette));
}

void EventPrinter::print(const QList<MacProtectionEvent> &events) {
    // One flush an event: who reads a line at a time is not kept waiting for the next.
    for (const MacProtectionEvent &event : events) {
        m_out.write(lineOf(event, m_format, m_palette));
        if (!m_out.flush())
            return QCoreApplication::quit();
    }
}

} // namespace kestrin::cli
