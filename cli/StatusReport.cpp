#include "cli/StatusReport.h"

#include "foundation/JsonEncoding.h"
#include "runtime/StatusSummaries.h"

using namespace Qt::StringLiterals;

namespace kestrin::cli {

using namespace foundation;
using namespace engine;
using namespace shared;
using namespace runtime;

QString StatusReport::monitorLabel() const {
    return monitorLabelFor(monitor.isThere(), enforceActions);
}

QStringList StatusReport::enabledModeIDs() const {
    QStringList ids;
    for (const ModePreset &mode : modes) {
        if (mode.enabled)
            ids.append(mode.id);
    }
    return ids;
}

namespace {

QJsonObject toJsonObject(const Sight &sight) {
    static constexpr const char *extents[] = {"full", "partial", "none"};
    return {
        {u"extent"_s, QLatin1StringView(extents[static_cast<int>(sight.extent)])},
        {u"reason"_s, sight.reason},
        {u"remedy"_s, sight.remedy},
    };
}

} // namespace

QJsonObject StatusReport::toJson() const {
    return {
        {u"privacyModeOn"_s, privacyModeOn},
        {u"pausedUntil"_s, pausedUntil ? toJsonValue(*pausedUntil) : QJsonValue(QJsonValue::Null)},
        {u"enforceActions"_s, enforceActions},
        {u"monitorLabel"_s, monitorLabel()},
        {u"protectedDefinitionIDs"_s, toJsonValue(protectedDefinitionIDs)},
        {u"runningAppCount"_s, runningAppCount},
        {u"sight"_s, toJsonObject(sight)},
        {u"matches"_s, toJsonValue(matches)},
        {u"live"_s, QJsonObject{{u"on"_s, live.isOn},
                                {u"uses"_s, toJsonValue(live.uses)},
                                {u"sight"_s, toJsonObject(live.sight)}}},
        {u"enabledModeIDs"_s, toJsonValue(enabledModeIDs())},
        // "No opinion" is an answer; the key is always there.
        {u"scheduledPrivacyModeState"_s,
         scheduledPrivacyModeState ? QJsonValue(*scheduledPrivacyModeState) : QJsonValue(QJsonValue::Null)},
        {u"devices"_s, toJsonValue(devices)},
        {u"activityLogBytes"_s, logBytes},
    };
}

} // namespace kestrin::cli
