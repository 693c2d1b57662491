#include "cli/EventPrinter.h"

#include "cli/HumanOutput.h"
#include "foundation/JsonEncoding.h"
#include "runtime/LogCsv.h"

#include <QCoreApplication>

namespace kestrin::cli {

using namespace foundation;
using namespace engine;
using namespace runtime;

QByteArray headingOf(LogFormat format) {
    return format == LogFormat::csv ? csvHeading() : QByteArray();
}

QByteArray lineOf(const MacProtectionEvent &event, LogFormat format, const Palette &palette) {
    switch (format) {
    case LogFormat::text:
        return eventsText({event}, palette).toUtf8();
    case LogFormat::json:
    case LogFormat::jsonl:
        return visibleJson(jsonText(toJsonValue(event))) + '\n';
    case LogFormat::csv:
        return csvLine(event);
    }
    return {};
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
