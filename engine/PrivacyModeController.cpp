#include "engine/PrivacyModeController.h"

using namespace Qt::StringLiterals;

namespace kestrin::engine {

using namespace foundation;

namespace {

QString matchMessage(const RiskAppMatch &match) {
    return match.app.localizedName + u" matches "_s + match.definition.displayName + u" risk categories: "_s +
           userLabels(match.definition.categories, u", "_s) + u'.';
}

} // namespace

PrivacyModeController::PrivacyModeController(RiskAppMatcher matcher,
                                             std::shared_ptr<MacAppInventoryService> inventoryService,
                                             std::shared_ptr<RiskAppActionPerforming> actionPerformer,
                                             std::shared_ptr<MacActivityLogStoring> logStore, Clock clock)
    : m_matcher(std::move(matcher))
    , m_inventoryService(std::move(inventoryService))
    , m_actionPerformer(std::move(actionPerformer))
    , m_logStore(std::move(logStore))
    , m_clock(std::move(clock)) {}

PrivacyModeCheck PrivacyModeController::check(const PrivacyModeSettings &settings, bool dryRun) {
    if (!settings.isEnabled) {
        const QList<MacProtectionEvent> events{
            MacProtectionEvent::create(m_clock(), MacProtectionEventKind::privacyModeOff,
                                       u"Privacy Mode is off. No Mac app actions were taken."_s),
        };
        return {{{}, events}, record(events)};
    }

    QList<RiskAppMatch> matches = m_matcher.matches(m_inventoryService->runningApps());
    matches.removeIf([&](const RiskAppMatch &match) { return !settings.protects(match.definition); });

    QList<MacProtectionEvent> events{
        MacProtectionEvent::create(m_clock(), MacProtectionEventKind::privacyModeOn,
                                   u"Privacy Mode is on. Evaluating Mac protected apps."_s),
    };
    for (const RiskAppMatch &match : std::as_const(matches))
        appendMatchEvents(match, dryRun, events);
    return {{matches, events}, record(events)};
}

QList<MacProtectionEvent> PrivacyModeController::checkOne(const RunningMacApp &app,
                                                          const PrivacyModeSettings &settings, bool dryRun) {
    const RiskAppDefinition *const definition = m_matcher.definition(app);
    QList<MacProtectionEvent> events;
    if (!definition || !settings.asksToQuit(*definition))
        return events;
    appendMatchEvents({app, *definition}, dryRun, events);
    record(events);
    return events;
}

StoreResult PrivacyModeController::record(const QList<MacProtectionEvent> &events) {
    StoreResult recorded;
    for (const MacProtectionEvent &event : events)
        recorded &= m_logStore->tryAppend(event);
    return recorded;
}

void PrivacyModeController::appendMatchEvents(const RiskAppMatch &match, bool dryRun,
                                              QList<MacProtectionEvent> &events) {
    const QString &name = match.app.localizedName;
    const auto record = [&](MacProtectionEventKind kind, const QString &message) {
        events.append(MacProtectionEvent::create(m_clock(), kind, message, name, match.app.bundleIdentifier));
    };

    record(MacProtectionEventKind::riskAppMatched, matchMessage(match));
    if (match.definition.defaultAction == RiskAppAction::allow)
        return;
    if (dryRun) {
        record(MacProtectionEventKind::dryRun,
               u"Preview: Kestrin would ask "_s + name + u" to quit while Privacy Mode is on."_s);
        return;
    }
    const RiskAppActionResult result = m_actionPerformer->requestQuit(match.app);
    record(result.status == RiskAppActionStatus::requested ? MacProtectionEventKind::quitRequested
                                                           : MacProtectionEventKind::actionFailed,
           result.message);
}

} // namespace kestrin::engine
