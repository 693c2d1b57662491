#include "runtime/LogCsv.h"

#include "foundation/VisibleText.h"

using namespace Qt::StringLiterals;

namespace kestrin::runtime {

using namespace foundation;
using namespace engine;

namespace {

/// Some spreadsheets take away spaces in front before they look, and take the wide forms for the narrow ones.
bool isTakenForFormula(const QString &text) {
    const QString start = text.trimmed().first(std::min<qsizetype>(text.trimmed().size(), 1));
    return !start.isEmpty() && u"=+-@\uff1d\uff0b\uff0d\uff20"_s.contains(start);
}

QString cell(const QString &text) {
    QString shown = visibleText(text);
    if (isTakenForFormula(shown))
        shown.prepend(u'\'');
    return u'"' + shown.replace(u'"', u"\"\""_s) + u'"';
}

QByteArray line(const QStringList &cells) {
    return cells.join(u',').toUtf8() + "\r\n";
}

} // namespace

QByteArray csvHeading() {
    return line({u"date"_s, u"kind"_s, u"application"_s, u"identifier"_s, u"message"_s, u"id"_s});
}

QByteArray csvLine(const MacProtectionEvent &event) {
    return line({cell(event.date.toUTC().toString(Qt::ISODate)), cell(rawValue(event.kind)),
                 cell(event.appName.value_or(QString())), cell(event.bundleIdentifier.value_or(QString())),
                 cell(event.message), cell(event.id.toString(QUuid::WithoutBraces))});
}

} // namespace kestrin::runtime
