#include "app/Kestrin/rows/PageRows.h"

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

constexpr int toneOf(KestrinTone tone) {
    return static_cast<int>(tone);
}

int toneOf(RiskAppAction action) {
    switch (action) {
    case RiskAppAction::allow:
        return toneOf(KestrinTone::Neutral);
    case RiskAppAction::quit:
        return toneOf(KestrinTone::Attention);
    case RiskAppAction::keepClosed:
        break;
    }
    return toneOf(KestrinTone::Risk);
}

QString iconOf(RiskAppAction action) {
    switch (action) {
    case RiskAppAction::allow:
        return u"eye.fill"_s;
    case RiskAppAction::quit:
        return u"xmark.circle.fill"_s;
    case RiskAppAction::keepClosed:
        break;
    }
    return u"lock.fill"_s;
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

EventLook lookOf(MacProtectionEventKind kind) {
    switch (kind) {
    case MacProtectionEventKind::privacyModeOn:
        return {u"checkmark.shield.fill"_s, KestrinTone::Protected, u"Privacy Mode On"_s};
    case MacProtectionEventKind::privacyModeOff:
        return {u"pause.circle.fill"_s, KestrinTone::Attention, u"Privacy Mode Off"_s};
    case MacProtectionEventKind::riskAppMatched:
        return {u"scope"_s, KestrinTone::Protected, u"Protected app matched"_s};
    case MacProtectionEventKind::relaunchDetected:
        return {u"arrow.clockwise.circle.fill"_s, KestrinTone::Link, u"Relaunch detected"_s};
    case MacProtectionEventKind::quitRequested:
        return {u"xmark.circle.fill"_s, KestrinTone::Risk, u"Quit requested"_s};
    case MacProtectionEventKind::dryRun:
        return {u"eye.fill"_s, KestrinTone::Link, u"Preview"_s};
    case MacProtectionEventKind::actionFailed:
        break;
    }
    return {u"exclamationmark.triangle.fill"_s, KestrinTone::Attention, u"Action failed"_s};
}

} // namespace

DeviceRow DeviceRow::from(const ProtectionDevice &device) {
    return {device.id, device.name, device.detail, device.icon, device.status, toneOf(toneFor(device.tone))};
}

DefinitionRow DefinitionRow::from(const RiskAppDefinition &definition, bool selected) {
    return {definition.id,
            definition.displayName,
            labelsOf(definition.categories),
            iconOf(definition.categories),
            userLabel(definition.defaultAction),
            toneOf(definition.defaultAction),
            selected};
}

MatchRow MatchRow::from(const RiskAppMatch &match) {
    const RiskAppAction action = match.definition.defaultAction;
    return {match.id(),     match.app.localizedName, labelsOf(match.definition.categories),
            iconOf(action), userLabel(action),       toneOf(action)};
}

PresetRow PresetRow::from(const ModePreset &preset) {
    return {preset.id, preset.name, preset.detail, preset.schedule, preset.icon, preset.enabled};
}

EventRow EventRow::from(const MacProtectionEvent &event) {
    const EventLook look = lookOf(event.kind);
    return {event.id.toString(QUuid::WithoutBraces),
            event.appName.value_or(look.title),
            event.message,
            timeOfDayLabelFor(event.date),
            look.icon,
            toneOf(look.tone)};
}

int actionCountOf(const QList<RiskAppMatch> &matches) {
    return static_cast<int>(std::count_if(matches.cbegin(), matches.cend(), [](const RiskAppMatch &match) {
        return match.definition.defaultAction != RiskAppAction::allow;
    }));
}

} // namespace kestrin::app
