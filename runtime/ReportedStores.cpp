#include "runtime/ReportedStores.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace kestrin::runtime {

using namespace foundation;
using namespace engine;

ReportedLog::ReportedLog(std::shared_ptr<MacActivityLogStoring> log, StoreReport report)
    : m_log(std::move(log))
    , m_report(std::move(report)) {}

StoreResult ReportedLog::tryAppend(const MacProtectionEvent &event) {
    StoreResult result = m_log->tryAppend(event);
    m_report(result);
    return result;
}

RememberedSettings::RememberedSettings(std::shared_ptr<PrivacyModeSettingsStoring> settings,
                                       StoreReport loaded, StoreReport saved,
                                       std::function<QSet<QString>()> everything)
    : m_settings(std::move(settings))
    , m_loaded(std::move(loaded))
    , m_saved(std::move(saved))
    , m_everything(std::move(everything)) {}

PrivacyModeSettings RememberedSettings::withEverything(PrivacyModeSettings fallback) const {
    if (!fallback.protectedDefinitionIDs.isEmpty())
        fallback.protectedDefinitionIDs.unite(m_everything());
    return fallback;
}

PrivacyModeSettings RememberedSettings::load() {
    auto stored = m_settings->stored();
    const QString problem = stored ? QString() : m_settings->problem();
    // What was in the way may have gone by now.
    if (!stored && problem.isEmpty())
        stored = m_settings->stored();
    if (stored)
        m_last = stored;
    m_areChosen = m_last || problem.isEmpty();
    m_loaded({problem, {}});
    return m_last ? *m_last : withEverything(m_settings->load());
}

StoreResult RememberedSettings::update(const Change &change) {
    PrivacyModeSettings changed;
    StoreResult result = m_settings->update([&](PrivacyModeSettings &settings, bool areStored) {
        if (!areStored)
            settings = m_last ? *m_last : withEverything(settings);
        change(settings, areStored);
        changed = settings;
    });
    if (result.isKept()) {
        m_last = changed;
        m_areChosen = true;
    }
    m_saved(result);
    return result;
}

CarefulPerformer::CarefulPerformer(std::shared_ptr<RiskAppActionPerforming> performer,
                                   std::shared_ptr<const RememberedSettings> settings)
    : m_performer(std::move(performer))
    , m_settings(std::move(settings)) {}

RiskAppActionResult CarefulPerformer::requestQuit(const RunningMacApp &app) {
    if (m_settings->areChosen())
        return m_performer->requestQuit(app);
    return {RiskAppActionStatus::failed,
            app.localizedName + u" was not asked to quit, because the settings cannot be read."_s};
}

} // namespace kestrin::runtime
