#include "runtime/LogText.h"

#include "foundation/JsonEncoding.h"
#include "foundation/VisibleText.h"
#include "runtime/LogCsv.h"

using namespace Qt::StringLiterals;

namespace kestrin::runtime {

using namespace foundation;
using namespace engine;

namespace {

QString peoplesLine(const MacProtectionEvent &event, const LogLinePaint &paint) {
    const QString time = paint.time(event.date.toLocalTime().toString(u"yyyy-MM-dd HH:mm:ss"_s));
    const QString message = visibleText(event.message);
    return message.isEmpty() ? time + u'\n' : time + u"  "_s + paint.message(message) + u'\n';
}

/// As an element of an array that is laid out for people.
QByteArray jsonElement(const MacProtectionEvent &event) {
    const QByteArray object = visibleJson(jsonText(toJsonValue(event), JsonLayout::pretty)).trimmed();
    return "    " + QByteArray(object).replace("\n", "\n    ");
}

} // namespace

QByteArray headingOf(LogFormat format) {
    return format == LogFormat::csv ? csvHeading() : QByteArray();
}

QByteArray lineOf(const MacProtectionEvent &event, LogFormat format, const LogLinePaint &paint) {
    switch (format) {
    case LogFormat::text:
        return peoplesLine(event, paint).toUtf8();
    case LogFormat::json:
    case LogFormat::jsonl:
        return visibleJson(jsonText(toJsonValue(event))) + '\n';
    case LogFormat::csv:
        return csvLine(event);
    }
    return {};
}

QByteArray logText(qsizetype count, const std::function<MacProtectionEvent(qsizetype)> &eventAt,
                   LogFormat format) {
    if (format == LogFormat::json) {
        QByteArray text = "[\n";
        for (qsizetype i = 0; i < count; ++i)
            text += jsonElement(eventAt(i)) + (i + 1 < count ? ",\n" : "\n");
        return text + "]\n";
    }
    QByteArray text = headingOf(format);
    for (qsizetype i = 0; i < count; ++i)
        text += lineOf(eventAt(i), format);
    return text;
}

} // namespace kestrin::runtime
