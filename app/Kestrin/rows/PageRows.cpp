#include "app/Kestrin/rows/PageRows.h"

#include "app/Kestrin/rows/ShownText.h"
#include "design/KestrinTone.h"
#include "engine/live/DeviceUse.h"
#include "runtime/StatusSummaries.h"

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace kestrin::app {

using namespace shared;
using namespace engine;
using namespace runtime;
using namespace design;

namespace {

struct ActionLook {
    QString icon;
    KestrinTone tone;
};

ActionLook lookOf(RiskAppAction action) {
    switch (action) {
    case RiskAppAction::allow:
        return {u"eye.fill"_s, KestrinTone::Neutral};
    case RiskAppAction::quit:
        return {u"xmark.circle.fill"_s, KestrinTone::Attention};
    case RiskAppAction::keepClosed:
        break;
    }
    return {u"lock.fill"_s, KestrinTone::Risk};
}

/// The most telling of the categories decides.
QString iconOf(const QList<MacRiskCategory> &categories) {
    using enum MacRiskCategory;
    static const std::initializer_list<std::pair<MacRiskCategory, QString>> telling{
        {videoCall, u"video.fill"_s}, {screenCapture, u"rectangle.on.rectangle"_s},
        {aiTool, u"sparkles"_s},      {browser, u"globe"_s},
        {camera, u"camera.fill"_s},
    };
    for (const auto &[category, icon] : telling) {
        if (categories.contains(category))
            return icon;
    }
    return u"mic.fill"_s;
}

QString labelsOf(const QList<MacRiskCategory> &categories) {
    return userLabels(categories, u" / "_s);
}

struct EventLook {
    QString icon;
    KestrinTone tone;
    QString title;
};

EventLook lookOf(LogKind kind) {
    switch (kind) {
    case LogKind::privacyModeOn:
        return {u"checkmark.shield.fill"_s, KestrinTone::Protected, u"Privacy Mode On"_s};
    case LogKind::privacyModeOff:
        return {u"pause.circle.fill"_s, KestrinTone::Attention, u"Privacy Mode Off"_s};
    case LogKind::riskAppMatched:
        return {u"scope"_s, KestrinTone::Protected, u"Protected app matched"_s};
    case LogKind::relaunchDetected:
        return {u"arrow.clockwise.circle.fill"_s, KestrinTone::Link, u"Relaunch detected"_s};
    case LogKind::quitRequested:
        return {u"xmark.circle.fill"_s, KestrinTone::Risk, u"Quit requested"_s};
    case LogKind::dryRun:
        return {u"eye.fill"_s, KestrinTone::Link, u"Preview"_s};
    case LogKind::deviceUse:
        return {u"mic.fill"_s, KestrinTone::Link, u"Microphone, camera and screen"_s};
    case LogKind::actionFailed:
        break;
    }
    return {u"exclamationmark.triangle.fill"_s, KestrinTone::Attention, u"Action failed"_s};
}

} // namespace

PageRow rowOf(const ProtectionDevice &device) {
    return {.id = device.id,
            .title = device.name,
            .subtitle = device.detail,
            .status = device.status,
            .icon = device.icon,
            .tone = static_cast<int>(toneFor(device.tone))};
}

PageRow rowOf(const RiskAppDefinition &definition, bool selected, bool own) {
    return {.id = definition.id,
            .title = shownName(definition.displayName),
            .subtitle = labelsOf(definition.categories),
            .status = userLabel(definition.defaultAction),
            .icon = iconOf(definition.categories),
            .tone = static_cast<int>(lookOf(definition.defaultAction).tone),
            .on = selected,
            .own = own};
}

PageRow rowOf(const RiskAppMatch &match) {
    const RiskAppAction action = match.definition.defaultAction;
    const ActionLook look = lookOf(action);
    return {.id = match.id(),
            .title = shownName(match.app.localizedName),
            .subtitle = labelsOf(match.definition.categories),
            .status = userLabel(action),
            .icon = look.icon,
            .tone = static_cast<int>(look.tone)};
}

PageRow rowOf(const ModePreset &preset) {
    return {.id = preset.id,
            .title = preset.name,
            .subtitle = preset.detail,
            .status = preset.schedule,
            .icon = preset.icon,
            .on = preset.enabled};
}

PageRow rowOf(const MacProtectionEvent &event) {
    const EventLook look = lookOf(logKindOf(event));
    const auto used = usedCategory(event);
    return {.id = event.id.toString(QUuid::WithoutBraces),
            .title = event.appName ? shownName(*event.appName) : look.title,
            .subtitle = shownMessage(event),
            .status = timeOfDayLabelFor(event.date),
            .icon = used ? iconOf({*used}) : look.icon,
            .tone = static_cast<int>(look.tone)};
}

QString kindTitle(LogKind kind) {
    return lookOf(kind).title;
}

QString kindTitle(const MacProtectionEvent &event) {
    const auto used = usedCategory(event);
    return used ? userLabel(*used) : kindTitle(logKindOf(event));
}

int actionCountOf(const QList<RiskAppMatch> &matches) {
    return static_cast<int>(std::count_if(matches.cbegin(), matches.cend(), [](const RiskAppMatch &match) {
        return match.definition.defaultAction != RiskAppAction::allow;
    }));
}

} // namespace kestrin::app
