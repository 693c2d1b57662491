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

MacProtectionEvent eventOfYears(int number) {
    using Kind = MacProtectionEventKind;
    const QString name = u"Application %1"_s.arg(number * 7 % 40);
    constexpr int secondsBetween = 1000;
    return MacProtectionEvent::create(
        QDateTime::currentDateTimeUtc().addSecs(-static_cast<qint64>(number) * secondsBetween),
        static_cast<Kind>(number % 7),
        u"%1 relaunched while Privacy Mode is on, for the %2. time."_s.arg(name).arg(number), name,
        u"org.example.application%1"_s.arg(number * 7 % 40));
}

void writeLog(const QString &path, int count, const std::function<MacProtectionEvent(int)> &make) {
    QList<MacProtectionEvent> events;
    for (int i = 0; i < count; ++i)
        events.append(make(i));
    const QByteArray text = encodeJson(events);
    if (!replacePrivateFile(path, {{text.constData(), static_cast<std::size_t>(text.size())}}))
        giveUp("there is no room for a log.");
}

} // namespace kestrin::bench
