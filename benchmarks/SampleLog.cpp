#include "benchmarks/SampleLog.h"

#include "benchmarks/Run.h"
#include "foundation/PrivateFile.h"

using namespace Qt::StringLiterals;

namespace kestrin::bench {

using namespace foundation;
using namespace engine;

MacProtectionEvent sampleEvent(int number) {
    using Kind = MacProtectionEventKind;
    const bool detected = number % 2 == 0;
    return MacProtectionEvent::create(
        QDateTime::currentDateTimeUtc(), detected ? Kind::relaunchDetected : Kind::quitRequested,
        detected ? u"Zoom relaunched while Privacy Mode is on."_s : u"Asked Zoom to quit."_s, u"Zoom"_s,
        u"us.zoom.xos"_s);
}

void writeLog(const QString &path, int count) {
    QList<MacProtectionEvent> events;
    for (int i = 0; i < count; ++i)
        events.append(sampleEvent(i));
    const QByteArray text = encodeJson(events);
    if (!replacePrivateFile(path, {{text.constData(), static_cast<std::size_t>(text.size())}}))
        giveUp("there is no room for a log.");
}

} // namespace kestrin::bench
